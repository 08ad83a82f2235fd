// Malformed and oversized documents render to something, without crashing or stalling.
#include "core/markdown/MarkdownRenderer.h"

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

std::string repeated(std::string_view piece, int count)
{
    std::string text;
    text.reserve(piece.size() * std::size_t(count));
    for (int i = 0; i < count; ++i)
        text += piece;
    return text;
}

struct BadCase
{
    const char *name;
    std::string markdown;
    const char *expected; // a substring the body still holds
};

} // namespace

TEST(MarkdownBadInput, RendersWhatItCan)
{
    std::string bigTable = "| a | b | c |\n|---|:-:|--:|\n";
    while (bigTable.size() < 5'000'000)
        bigTable += "| uno | `due|tre` | **quattro** |\n";
    const BadCase cases[] = {
        {"unclosed fence", "```python\ndef f():\n    pass\n", "<span class=\"code-lang\">python"},
        {"unclosed html", "<div>\n<p>aperto\n\ntesto", "<div class=\"raw\" data-line=\"0\"><div>"},
        {"deep quotes", repeated(">", 10'000) + " fondo\n", "fondo"},
        {"deep lists", repeated("- ", 10'000) + "fondo\n", "fondo"},
        {"deep ordered lists", repeated("1. ", 10'000) + "fondo\n", "fondo"},
        {"deep indented lists",
         [] {
             std::string text;
             for (int i = 0; i < 2'000; ++i)
                 text += std::string(std::size_t(i) * 2, ' ') + "- livello\n";
             return text;
         }(),
         "livello"},
        {"deep emphasis", repeated("*_", 20'000) + "x" + repeated("_*", 20'000), "x"},
        {"deep links", repeated("[", 20'000) + "x" + repeated("](y)", 20'000), "x"},
        {"big table", bigTable, "<td style=\"text-align:right\"><strong>quattro</strong></td>"},
        {"nul and invalid utf-8", std::string("a\0b\xff\xfe# c\n", 10), "a"},
        {"undefined footnote", "Nota[^manca] e [^]", "Nota[^manca]"},
        {"footnote citing itself", "A[^a]\n\n[^a]: B[^a]", "<li id=\"fn-a\">"},
        {"front matter never closed", "---\ntitolo: x\n", "titolo: x"},
    };
    for (const BadCase &c : cases) {
        MarkdownRenderer renderer;
        const std::string body = renderer.renderBody(c.markdown);
        EXPECT_NE(body.find(c.expected), std::string::npos) << c.name;
    }
}
