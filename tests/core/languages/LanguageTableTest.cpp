// The built-in table: every language compiles, capture groups line up with rules, sample is valid.
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <QRandomGenerator>

#include <unicode/regex.h>

#include <gtest/gtest.h>

using namespace mirtex;

TEST(LanguageTable, EveryLanguageCompilesWithOneGroupPerRule)
{
    const QList<LanguagePtr> &all = Language::all();
    ASSERT_EQ(all.size(), 34);
    EXPECT_EQ(all.first(), Language::text());
    for (const LanguagePtr &language : all) {
        SCOPED_TRACE(language->id().toStdString());
        if (language->rules().isEmpty()) {
            EXPECT_EQ(language->regex(), nullptr);
            continue;
        }
        const icu::RegexPattern *pattern = language->regex();
        ASSERT_NE(pattern, nullptr);
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(status));
        EXPECT_EQ(matcher->groupCount(), language->rules().size());
        const QString sample = mixedSampleText();
        const QList<Token> tokens = tokenize(*language, sample);
        EXPECT_TRUE(tokensAreValid(tokens, sample.size()));
    }
}

// The rule-by-rule scan must pick exactly what the joined alternation picks, in every language,
// on text dense with openers, closers, words and empty-match bait.
TEST(LanguageTable, RuleByRuleScanAgreesWithTheJoinedExpression)
{
    const QStringList pieces
        = {"/*",     "*/",        "//",          "#",          "\"",     "'",         "`",
           "\"\"\"", "'''",       "\n",          " ",          "\t",     "0x1F",      "1.5",
           "_",      "$",         "@",           "<",          ">",      "/",         "=",
           ":",      "-",         "--",          "[[",         "]]",     "{",         "}",
           "!",      "%",         "if",          "int",        "def",    "end",       "true",
           "echo",   "SELECT",    "\\",          "r\"",        "<!--",   "-->",       "---",
           "```",    "**",        "é",           "\U0001F600", "x",      "Rem",       "@@",
           "#!",     "cla\u00df", "\u017felect", "\u212aey",   "\u0301", "\u00e9lse", "els\u00e9",
           "$x"};
    QRandomGenerator random(17);
    for (int round = 0; round < 40; ++round) {
        QString text = round == 0 ? mixedSampleText() : QString();
        for (int i = 0, n = random.bounded(20, 200); i < n; ++i)
            text += pieces[random.bounded(pieces.size())];
        for (const LanguagePtr &language : Language::all()) {
            ASSERT_EQ(tokenize(*language, text), tokenizeWithJoinedExpression(*language, text))
                << language->id().toStdString() << " on: " << text.toStdString();
        }
    }
}
