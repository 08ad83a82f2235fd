// The rendered body of small documents, checked by exact substrings; anchors, footnote order, the
// fence aliases, the page and the style sheet.
#include "core/markdown/MarkdownRenderer.h"

#include "core/markdown/CodeFenceLanguage.h"
#include "core/markdown/MarkdownInline.h"
#include "core/markdown/MarkdownParser.h"
#include "core/markdown/MarkdownStyleSheet.h"

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

std::string render(const std::string &markdown, bool highlight = false)
{
    MarkdownRenderer renderer;
    renderer.highlightCode = highlight;
    return renderer.renderBody(markdown);
}

struct BodyCase
{
    const char *markdown;
    const char *expected; // an exact substring of the body
    bool highlight = false;
};

} // namespace

TEST(MarkdownRenderer, BodiesHoldTheExpectedHtml)
{
    const BodyCase cases[] = {
        {"# Titolo", "<h1 id=\"titolo\" data-line=\"0\">Titolo</h1>\n"},
        {"# Titolo\n\nTesto",
         "<div class=\"keep\"><h1 id=\"titolo\" data-line=\"0\">Titolo</h1>\n"
         "<p data-line=\"2\">Testo</p>\n</div>\n"},
        {"## Chiuso ##", ">Chiuso</h2>"},
        {"#nontitolo", "<p data-line=\"0\">#nontitolo</p>"},
        {"- a\n- b", "<ul data-line=\"0\">\n<li data-line=\"0\">a\n</li>\n<li data-line=\"1\">b\n"},
        {"- a\n\n- b", "<li data-line=\"0\"><p data-line=\"0\">a</p>"},
        {"- a\n- b\n  - c", "<ul data-line=\"2\">\n<li data-line=\"2\">c"},
        {"3. tre\n4. quattro", "<ol data-line=\"0\" start=\"3\">\n"},
        {"1. uno\n2. due", "<ol data-line=\"0\">\n"},
        {"- [ ] da fare\n- [x] fatto", "<ul data-line=\"0\" class=\"tasks\">"},
        {"- [ ] da fare\n- [x] fatto",
         "<li data-line=\"1\" class=\"task done\"><span class=\"box checked\"></span>fatto"},
        {"- [ ] da fare", "<li data-line=\"0\" class=\"task\"><span class=\"box\"></span>da fare"},
        {"> citazione\ncontinua",
         "<blockquote data-line=\"0\">\n<p data-line=\"0\">citazione\ncontinua</p>"},
        {"> a\n> > b", "<blockquote data-line=\"1\">"},
        {"```swift\nlet x = 1\n```",
         "<pre data-line=\"0\"><span class=\"code-lang\">swift</span>"
         "<code class=\"language-swift\">let x = 1\n</code></pre>\n"},
        {"```swift\nlet x = 1\n```", "<span class=\"t-keyword\">let</span>", true},
        {"~~~\n```\n~~~", "<code>```\n</code>"},
        {"```js\nlet s = \"città 😀 <b>\"; // è\n```",
         "<span class=\"t-keyword\">let</span> s = <span class=\"t-string\">\"città 😀 "
         "&lt;b&gt;\"</span>; <span class=\"t-comment\">// è</span>\n</code>",
         true},
        {"    indentato", "<pre data-line=\"0\"><code>indentato\n</code></pre>\n"},
        {"```\na < b\n```", "<pre data-line=\"0\"><code>a &lt; b\n</code></pre>"},
        {"```unknownlang\nx\n```", "<code class=\"language-unknownlang\">x\n</code>", true},
        {"| A | B |\n|:--|--:|\n| 1 | 2 |", "<th style=\"text-align:left\">A</th>"},
        {"| A | B |\n|:--|--:|\n| 1 | 2 |", "<td style=\"text-align:right\">2</td>"},
        {"| A | B |\n|---|---|\n| a \\| b | `c|d` |", "<td>a | b</td><td><code>c|d</code></td>"},
        {"| A | B |\n|---|---|\n| 1 |", "<tr><td>1</td><td></td></tr>"},
        {"| A |\n|:-:|\n| 1 | 2 | 3 |", "<tr><td style=\"text-align:center\">1</td></tr>"},
        {"| A |\n|---|", "</tr></thead>\n</table></div>\n"},
        {"| A |\n|---|", "<div class=\"table\" data-line=\"0\"><table>\n<thead><tr><th>A</th>"},
        {"Nota[^1]\n\n[^1]: Il testo.", "<sup class=\"fnref\"><a href=\"#fn-1\""},
        {"Nota[^1]\n\n[^1]: Il testo.",
         "<section class=\"footnotes\"><hr><ol>\n<li id=\"fn-1\">Il testo.\n <a "
         "href=\"#fnref-1\" class=\"backref\">\u21a9</a></li>\n</ol></section>\n"},
        {"---\ntitle: Prova\n---\n# X",
         "<pre class=\"front-matter\" data-line=\"0\"><code>title: Prova</code></pre>\n"
         "<h1 id=\"x\" data-line=\"3\">"},
        {"<div>\nciao\n</div>", "<div class=\"raw\" data-line=\"0\"><div>\nciao\n</div></div>\n"},
        {"a\n\n---\n", "<hr data-line=\"2\">\n"},
        {"**forte** *enfasi* ~~via~~ `x<y`",
         "<strong>forte</strong> <em>enfasi</em> <del>via</del> <code>x&lt;y</code>"},
        {"[qui](http://a.it \"Titolo\")", "<a href=\"http://a.it\" title=\"Titolo\">qui</a>"},
        {"[qui][r]\n\n[r]: /dove", "<a href=\"/dove\">qui</a>"},
        {"![alt *x*](img.png)", "<img src=\"img.png\" alt=\"alt x\">"},
        {"vedi www.esempio.it ora", "<a href=\"http://www.esempio.it\">www.esempio.it</a>"},
        {"<https://a.it>", "<a href=\"https://a.it\">https://a.it</a>"},
        {"scrivi a nome@esempio.it", "<a href=\"mailto:nome@esempio.it\">nome@esempio.it</a>"},
        {"a <span>b</span>", "a <span>b</span>"},
        {"&copy; &amp; \\*", "\u00a9 &amp; *"},
        {"riga  \nnuova", "riga<br>\nnuova"},
        {"[x](javascript:alert(1))", "<a>x</a>"},
        {"[x](vbscript:y)", "<a>x</a>"},
        {"<javascript:alert(1)>", "<a>javascript:alert(1)</a>"},
    };
    for (const BodyCase &c : cases) {
        const std::string body = render(c.markdown, c.highlight);
        EXPECT_NE(body.find(c.expected), std::string::npos)
            << "markdown: " << c.markdown << "\nexpected: " << c.expected << "\nbody: " << body;
    }
}

TEST(MarkdownRenderer, BlankDocumentsSayTheyAreEmpty)
{
    for (const char *blank : {"", " ", "\n\n\n", " \t\r\n  \n", "[a]: /url\n", "[^x]: Due[^1].\n"})
        EXPECT_EQ(render(blank), "<p class=\"empty\">Il documento è vuoto.</p>") << blank;
}

TEST(MarkdownRenderer, LinksResolveAgainstTheDocumentFolder)
{
    MarkdownRenderer renderer;
    renderer.baseURL = QUrl(QStringLiteral("file:///home/u/note/"));
    const std::string body = renderer.renderBody(std::string("[a](altro.md) ![i](img/x.png) "
                                                             "[f](#sez) [w](https://b.it)"));
    for (const char *expected : {"href=\"file:///home/u/note/altro.md\"",
                                 "src=\"file:///home/u/note/img/x.png\"",
                                 "href=\"#sez\"",
                                 "href=\"https://b.it\""})
        EXPECT_NE(body.find(expected), std::string::npos) << expected << "\n" << body;
}

TEST(MarkdownRenderer, HeadingAnchorsAreUniqueSlugs)
{
    struct AnchorCase
    {
        const char *markdown;
        std::vector<const char *> anchors;
    };

    const AnchorCase cases[] = {
        {"## Come si usa?\n## Come si usa?", {"come-si-usa", "come-si-usa-1"}},
        {"# ?!\n# ***\n# ...", {"section", "section-1", "section-2"}},
        {"# Due  spazi e_sotto-tratto", {"due--spazi-e_sotto-tratto"}},
        {"# Città **Forte** `x<y>`", {"città-forte-xy"}},
        {"# A&amp;B \"q\"", {"ab-q"}},
        {"# Ελληνικά ٣", {"ελληνικά-٣"}},
        // Counted by base only, as the preview's scroll targets always were.
        {"# a\n# a-1\n# a", {"a", "a-1", "a-1"}},
    };
    for (const AnchorCase &c : cases) {
        const std::string body = render(c.markdown);
        std::size_t at = 0;
        for (const char *anchor : c.anchors) {
            const std::string id = std::string(" id=\"") + anchor + '"';
            at = body.find(id, at);
            EXPECT_NE(at, std::string::npos) << c.markdown << " -> " << anchor << "\n" << body;
            if (at == std::string::npos)
                break;
        }
    }
}

TEST(MarkdownRenderer, FootnotesFollowTheOrderOfFirstCitation)
{
    const std::string body = render("Primo[^b], secondo[^a], ancora[^b].\n\n"
                                    "[^a]: Nota A.\n[^b]: Nota B.\n[^c]: Mai citata.\n");
    EXPECT_NE(body.find("<a href=\"#fn-b\" id=\"fnref-b\">1</a>"), std::string::npos) << body;
    EXPECT_NE(body.find("<a href=\"#fn-a\" id=\"fnref-a\">2</a>"), std::string::npos) << body;
    EXPECT_NE(body.find("ancora<sup class=\"fnref\"><a href=\"#fn-b\">1</a>"), std::string::npos)
        << body;
    const std::size_t b = body.find("<li id=\"fn-b\">Nota B.");
    const std::size_t a = body.find("<li id=\"fn-a\">Nota A.");
    ASSERT_NE(b, std::string::npos) << body;
    ASSERT_NE(a, std::string::npos) << body;
    EXPECT_LT(b, a);
    EXPECT_EQ(body.find("Mai citata"), std::string::npos);
}

TEST(MarkdownRenderer, FenceAliasesNameExistingLanguages)
{
    const auto aliases = CodeFenceLanguage::aliases();
    EXPECT_EQ(aliases.size(), 56u);
    for (const auto &[alias, id] : aliases) {
        const LanguagePtr language = CodeFenceLanguage::find(QString::fromLatin1(alias));
        ASSERT_TRUE(language) << alias;
        EXPECT_EQ(language->id(), QString::fromLatin1(id)) << alias;
    }
    EXPECT_EQ(CodeFenceLanguage::find(u"PY")->id(), u"python");
    EXPECT_EQ(CodeFenceLanguage::find(u"rust")->id(), u"rust");
    EXPECT_EQ(CodeFenceLanguage::find(u"mjs")->id(), u"javascript");
    EXPECT_FALSE(CodeFenceLanguage::find(u""));
    EXPECT_FALSE(CodeFenceLanguage::find(u"text"));
    EXPECT_FALSE(CodeFenceLanguage::find(u"nessuna-lingua"));
}

TEST(MarkdownRenderer, HugeCodeIsNotColoured)
{
    const std::string small = "```c\n" + std::string(1000, ';') + "int x;\n```";
    EXPECT_NE(render(small, true).find("<span class=\"t-"), std::string::npos);
    const std::string huge = "```c\n" + std::string(300'000, ';') + "int x;\n```";
    EXPECT_EQ(render(huge, true).find("<span class=\"t-"), std::string::npos);
}

TEST(MarkdownRenderer, PageWrapsTheBodyWithTheStyleSheet)
{
    const std::string screen = MarkdownRenderer::page(std::string_view("<p>x</p>"), false);
    const std::string head = "<!doctype html><html><head><meta charset=\"utf-8\">\n<meta "
                             "name=\"color-scheme\" content=\"light dark\">\n<style>";
    EXPECT_EQ(screen.substr(0, head.size()), head);
    EXPECT_NE(screen.find(std::string(markdownStyleSheet())), std::string::npos);
    const std::string tail = "</style></head>\n<body class=\"screen\"><article class=\"page\" "
                             "id=\"page\"><p>x</p></article></body></html>";
    EXPECT_EQ(screen.substr(screen.size() - tail.size()), tail);
    const std::string print = MarkdownRenderer::page(std::string_view(), true);
    EXPECT_NE(print.find("content=\"light\">"), std::string::npos);
    EXPECT_NE(print.find("<body class=\"print\">"), std::string::npos);

    const std::string_view sheet = markdownStyleSheet();
    for (const char *rule : {"--t-keyword: #b8237a;",
                             "--t-keyword: #ff7ab8;",
                             "@media (prefers-color-scheme: dark) {\n  body.screen {",
                             "body.print .page { max-width: none;",
                             "@media print { h1, h2, h3, h4, h5, h6 { break-after: avoid; } }"})
        EXPECT_NE(sheet.find(rule), std::string_view::npos) << rule;
}

TEST(MarkdownRenderer, OnlyKnownSchemesAreLive)
{
    for (const char *url : {"http://a", "HTTPS://a", "mailto:x@y", "file:///a", "rel/a:b", "#x"})
        EXPECT_TRUE(MarkdownInline::isSafeDestination(url)) << url;
    for (const char *url : {"javascript:x", "JavaScript:x", "data:text/html,x", "foo:bar"})
        EXPECT_FALSE(MarkdownInline::isSafeDestination(url)) << url;
}
