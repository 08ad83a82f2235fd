// Detecting a file's language, word rules and completion words, and a language whose rules fail.
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

struct DetectionCase
{
    const char *path; // nullptr: no file name
    const char *firstLine;
    const char *expectedId;
};

} // namespace

TEST(LanguageDetection, ByNameExtensionDotNameAndFirstLine)
{
    const DetectionCase cases[] = {
        {"/home/u/FILE.PY", "", "python"},
        {"/src/Makefile", "", "makefile"},
        {"makefile", "", "makefile"},
        {"GNUmakefile", "", "makefile"},
        {"/x/Dockerfile", "", "dockerfile"},
        {"DOCKERFILE", "", "dockerfile"},
        {"Containerfile", "", "dockerfile"},
        {"/home/u/.bashrc", "", "shell"},
        {".gitignore", "", "ini"},
        {".editorconfig", "", "ini"},
        {".env", "", "ini"},
        {".clang-format", "", "yaml"},
        {"x.h", "", "cpp"},
        {"x.c", "", "c"},
        {"page.php3", "", "html"},
        {"page.php", "", "php"},
        {"Cargo.lock", "", "toml"},
        {"file:///tmp/dir/Gemfile", "", "ruby"},
        {"archive.tar.gz", "", "text"},
        {"script", "#!/usr/bin/env python3", "python"},
        {"script", "#!/bin/sh", "shell"},
        {"script", "  #!/usr/bin/env node", "javascript"},
        {"script", "#!/usr/bin/foo", "shell"},
        {"script", "#!/usr/bin/env pwsh", "powershell"},
        {"notes.unknown", "<?xml version=\"1.0\"?>", "xml"},
        {nullptr, "<!DOCTYPE html>", "html"},
        {nullptr, "<!doctype HTML>", "html"},
        {nullptr, "\t<html lang=it>", "html"},
        {nullptr, "diff --git a/x b/x", "diff"},
        {nullptr, "--- a/x", "diff"},
        {nullptr, "<?php echo 1;", "php"},
        {nullptr, "hello", "text"},
        {"x.py", "<?xml", "python"},
    };
    for (const DetectionCase &c : cases) {
        const std::optional<QString> path
            = c.path ? std::optional<QString>(QString::fromUtf8(c.path)) : std::nullopt;
        EXPECT_EQ(Language::detect(path, QString::fromUtf8(c.firstLine))->id().toStdString(),
                  c.expectedId)
            << (c.path ? c.path : "(none)") << " / " << c.firstLine;
    }
}

TEST(LanguageDetection, LookupByIdFallsBackToPlainText)
{
    EXPECT_EQ(Language::byId(u"rust")->name(), QStringLiteral("Rust"));
    EXPECT_EQ(Language::byId(u"nope"), Language::text());
    EXPECT_EQ(Language::text()->name(), QStringLiteral("Testo normale"));
    EXPECT_EQ(Language::byId(u"ini")->name(), QStringLiteral("INI / Configurazione"));
    EXPECT_EQ(Language::byId(u"batch")->lineComment(), QStringLiteral("REM "));
    EXPECT_EQ(Language::byId(u"lua")->blockComment(),
              std::make_pair(QStringLiteral("--[["), QStringLiteral("]]")));
    QStringList ids;
    for (const LanguagePtr &language : Language::all())
        ids.append(language->id());
    EXPECT_EQ(ids.first(), QStringLiteral("text"));
    EXPECT_EQ(ids.last(), QStringLiteral("yaml"));
    EXPECT_EQ(ids.indexOf(QStringLiteral("markdown")), 18);
    EXPECT_EQ(ids.removeDuplicates(), 0);
}

TEST(LanguageRule, WordsMatchWholeWordsLiterallyAndOptionallyIgnoringCase)
{
    const LanguageRule exact = LanguageRule::fromWords(TokenKind::keyword, u" if  a.b defined? ");
    EXPECT_EQ(exact.words, (QStringList{"if", "a.b", "defined?"}));
    const LanguageRule folded = LanguageRule::fromWords(TokenKind::keyword, u"select", true);

    struct Case
    {
        const LanguageRule *rule;
        const char *text;
        bool matches;
    } cases[] = {
        {&exact, "if", true},
        {&exact, "iff", false},
        {&exact, "_if", false},
        {&exact, "$if", false},
        {&exact, "if$", false},
        {&exact, "(if)", true},
        {&exact, "a.b", true},
        {&exact, "axb", false},
        {&exact, "defined?", true},
        {&exact, "IF", false},
        {&folded, "SeLeCt", true},
        {&folded, "selected", false},
    };

    for (const Case &c : cases) {
        // ICU and Qt agree on this subset of the syntax.
        const QRegularExpression re(c.rule->pattern);
        ASSERT_TRUE(re.isValid()) << c.rule->pattern.toStdString();
        EXPECT_EQ(re.match(QString::fromUtf8(c.text)).hasMatch(), c.matches) << c.text;
    }
}

TEST(LanguageRule, CompletionWordsAreLongPlainUniqueAndSorted)
{
    const QStringList words = Language::byId(u"ruby")->completionWords();
    EXPECT_TRUE(words.contains(QStringLiteral("rescue")));
    EXPECT_FALSE(words.contains(QStringLiteral("do")));
    EXPECT_FALSE(words.contains(QStringLiteral("defined?")));
    QStringList sorted = words;
    sorted.sort();
    sorted.removeDuplicates();
    EXPECT_EQ(words, sorted);
    // C++ extends C's lists: "int" appears in both the C part and nowhere twice.
    EXPECT_EQ(Language::byId(u"cpp")->completionWords().count(QStringLiteral("int")), 1);
    EXPECT_TRUE(Language::text()->completionWords().isEmpty());
}

TEST(LanguageRule, ABadPatternLeavesTheLanguageUncoloured)
{
    const Language broken(LanguageDefinition{
        .id = QStringLiteral("broken"),
        .name = "Broken",
        .rules = {LanguageRule{TokenKind::keyword, QStringLiteral("(?<=a+)x"), {}}}});
    EXPECT_EQ(broken.regex(), nullptr);
    EXPECT_EQ(broken.regex(), nullptr); // kept, not retried
    EXPECT_TRUE(tokenize(broken, u"ax").isEmpty());
}

TEST(LanguageRule, EmptyMatchesAreSkippedWithoutLooping)
{
    const Language lazy(
        LanguageDefinition{.id = QStringLiteral("lazy"),
                           .name = "Lazy",
                           .rules = {LanguageRule{TokenKind::keyword, QStringLiteral("x*"), {}},
                                     LanguageRule{TokenKind::number, QStringLiteral("\\d"), {}}}});
    const QList<Token> tokens = tokenize(lazy, u"ab xx 1");
    EXPECT_EQ(tokens, (QList<Token>{{3, 2, TokenKind::keyword}}));
}
