// The built-in table: every language compiles, capture groups line up with rules, sample is valid.
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

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
