// What each language colours where a rule's priority or edge is easy to get wrong.
#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

// "kind(text) kind(text) ...", the tokens as a reader would check them.
std::string describe(const QString &languageId, const QString &text)
{
    QStringList parts;
    for (const Token &token : tokenize(*Language::byId(languageId), text))
        parts.append(toString(token.kind) + u'(' + text.mid(token.location, token.length) + u')');
    return parts.join(u' ').toStdString();
}

struct RuleCase
{
    const char *language;
    const char *text;
    const char *expected;
};

} // namespace

TEST(LanguageRules, PriorityAndEdgesPerLanguage)
{
    const RuleCase cases[] = {
        {"c", R"("if" // if)", R"(string("if") comment(// if))"},
        {"c",
         "0x1F 1_000 1.5e-3f 10UL 0b101",
         "number(0x1F) number(1_000) number(1.5e-3f) "
         "number(10UL) number(0b101)"},
        {"c", "x2 a.5 1x $1", ""},
        {"c",
         "#include <x>\n  # define N 'a'",
         "preprocessor(#include) preprocessor(  # define) "
         "string('a')"},
        {"c", "int a; /* open\nint b;", "keyword(int) comment(/* open\nint b;)"},
        {"c", "\"open\nint", "string(\"open) keyword(int)"},
        {"c", "'ab'; '\\n' size_t", "string('\\n') type(size_t)"},
        {"cpp", R"(R"x(a " b)x" nullptr)", R"(string(R"x(a " b)x") keyword(nullptr))"},
        {"python", "'''#''' # 'x'", "string('''#''') comment(# 'x')"},
        {"python",
         "rb\"x\" F'y' u\"\"\"d\n# no\"\"\"",
         "string(rb\"x\") string(F'y') "
         "string(u\"\"\"d\n# no\"\"\")"},
        {"python",
         "@app.route\ndef f(): return None",
         "preprocessor(@app.route) keyword(def) keyword(return) keyword(None)"},
        {"python", "s = '''open\nx", "string('''open\nx)"},
        {"diff",
         "--- a/x\n+++ b/x\n@@ -1 +1 @@\n-x\n+x\n same\n!c",
         "meta(--- a/x) meta(+++ b/x) preprocessor(@@ -1 +1 @@) removed(-x) added(+x) type(!c)"},
        {"markdown", "```\n# not a heading\n*x*", "string(```\n# not a heading\n*x*)"},
        {"markdown", "Title\n---\n\n---\n", "heading(Title\n---) meta(---)"},
        {"markdown",
         "# H\n- **b** *i* `c` [l](u)",
         "heading(# H) keyword(-) emphasis(**b**) "
         "variable(*i*) string(`c`) link([l](u))"},
        {"sql", "SELECT 'it''s' -- c", "keyword(SELECT) string('it''s') comment(-- c)"},
        {"yaml",
         "key: http://x # c\nv: a#b\n- ~",
         "attribute(key) comment(# c) attribute(v) "
         "keyword(-) keyword(~)"},
        {"shell", "echo $# ${#x} # c", "keyword(echo) variable($#) variable(${#x}) comment(# c)"},
        {"css",
         "a:hover { color: #fff; margin: 10px !important; }",
         "tag(:hover) attribute(color) number(#fff) attribute(margin) number(10px) "
         "keyword(!important)"},
        {"css", ".c, #id::before { }", "type(.c) type(#id) tag(::before)"},
        {"html",
         "<a href=\"x\">t &amp;</a>",
         "tag(<a) attribute(href) string(\"x\") tag(>) "
         "number(&amp;) tag(</a) tag(>)"},
        {"ini", "[sec]\nkey = v ; no\n; c", "heading([sec]) attribute(key) comment(; c)"},
        {"json",
         R"({"k": "v", "n": -1.5})",
         R"(attribute("k") string("v") attribute("n") number(1.5))"},
        {"ruby", "A::B :sym @x", "type(:sym) variable(@x)"},
        {"lua", "--[[ a\nb ]] x --c", "comment(--[[ a\nb ]]) comment(--c)"},
        {"log",
         "2024-01-02 10:00:00 ERROR failed ok",
         "number(2024-01-02 10:00:00) "
         "removed(ERROR) removed(failed) added(ok)"},
        {"batch",
         "@REM hi\n:label\nECHO %PATH% !x!",
         "comment(@REM hi) preprocessor(:label) "
         "keyword(ECHO) variable(%PATH%) variable(!x!)"},
        {"php",
         "<?php $x = 1; #[Attr] # c",
         "preprocessor(<?php) variable($x) number(1) "
         "comment(# c)"},
        {"go", "`raw\nline` 'c'", "string(`raw\nline`) string('c')"},
        {"powershell", "Get-Item $x -eq 1", "type(Get-Item) variable($x) keyword(-eq) number(1)"},
        {"perl",
         "#!/usr/bin/perl\nmy $x = 'a'; # c",
         "preprocessor(#!/usr/bin/perl) keyword(my) "
         "variable($x) string('a') comment(# c)"},
        {"toml",
         "[t]\nkey = 1979-05-27T07:32:00Z",
         "heading([t]) attribute(key) "
         "number(1979-05-27T07:32:00Z)"},
        {"xml",
         "<?xml v?><a b='c'/><![CDATA[<x>]]>",
         "preprocessor(<?xml v?>) tag(<a) "
         "attribute(b) string('c') tag(/>) "
         "string(<![CDATA[<x>]]>)"},
        {"vb", "Dim x As String ' c", "keyword(Dim) keyword(As) keyword(String) comment(' c)"},
        {"swift",
         "@MainActor let s = #\"\"\"\nx\n\"\"\"#",
         "preprocessor(@MainActor) keyword(let) "
         "string(#\"\"\"\nx\n\"\"\"#)"},
        {"typescript",
         "@Component class A implements B",
         "preprocessor(@Component) keyword(class) "
         "keyword(implements)"},
        {"csharp",
         "[Obsolete] a[0] @\"x\"\"y\"",
         "preprocessor([Obsolete]) number(0) "
         "string(@\"x\"\"y\")"},
        {"text", "int x = 1; // c", ""},
    };
    for (const RuleCase &c : cases) {
        EXPECT_EQ(describe(QString::fromLatin1(c.language), QString::fromUtf8(c.text)), c.expected)
            << c.language << ": " << c.text;
    }
}

TEST(LanguageRules, EmptyTextAndOffsetsCountSurrogatePairsAsTwoUnits)
{
    EXPECT_TRUE(tokenize(*Language::byId(u"c"), u"").isEmpty());
    const QString text = QStringLiteral("\U0001F600 int");
    EXPECT_EQ(tokenize(*Language::byId(u"c"), text), (QList<Token>{{3, 3, TokenKind::keyword}}));
}
