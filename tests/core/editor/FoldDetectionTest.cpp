#include "core/editor/FoldDetection.h"

#include "core/languages/Language.h"
#include "core/languages/Tokenizer.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <random>
#include <set>

using mirtex::FoldInput;
using mirtex::FoldLines;
using mirtex::FoldRegion;
using mirtex::Language;

namespace mirtex {
void PrintTo(const FoldRegion &r, std::ostream *out)
{
    *out << "(" << r.start << "," << r.end << " d" << r.depth << ")";
}
} // namespace mirtex

namespace {

std::vector<FoldRegion> detect(const QString &languageId, const QString &text, int tabWidth = 4)
{
    const QList<mirtex::Token> tokens = mirtex::tokenize(*Language::byId(languageId), text);
    FoldInput input;
    input.text = text;
    input.style = mirtex::foldStyleFor(languageId);
    input.htmlTags = mirtex::foldsHtmlTags(languageId);
    input.tokens = &tokens;
    input.tabWidth = tabWidth;
    return mirtex::detectFoldRegions(input);
}

std::string describe(const std::vector<FoldRegion> &regions)
{
    std::string out;
    for (const FoldRegion &r : regions)
        out += "(" + std::to_string(r.start) + "," + std::to_string(r.end) + " d"
               + std::to_string(r.depth) + ") ";
    return out;
}

struct DetectionCase
{
    const char *languageId;
    QStringList lines;
    std::vector<FoldRegion> expected;
};

} // namespace

TEST(FoldDetection, FindsTheBlocksOfEveryStyle)
{
    const std::vector<DetectionCase> cases = {
        {"swift",
         {"struct A {",
          "    func f() {",
          "        if x {",
          "            let s = \"{ non conta\"",
          "        } else {",
          "            // }",
          "        }",
          "    }",
          "    /* commento",
          "       su due righe */",
          "}"},
         {{0, 10, 1}, {1, 7, 2}, {2, 3, 3}, {4, 6, 3}, {8, 9, 2}}},
        {"json",
         {"{", "  \"a\": [", "    1,", "    2", "  ],", "  \"b\": {}", "}"},
         {{0, 6, 1}, {1, 4, 2}}},
        {"python",
         {"def f():", "    x = 1", "", "    if x:", "        y()", "", "print(f())"},
         {{0, 4, 1}, {3, 4, 2}}},
        {"markdown",
         {"# Uno",
          "testo",
          "## Due",
          "altro",
          "```",
          "# non è un titolo",
          "```",
          "",
          "# Tre",
          "fine"},
         {{0, 6, 1}, {2, 6, 2}, {8, 9, 1}}},
        {"html",
         {"<div>", "  <p>uno</p>", "  <br>", "  <ul>", "    <li>a</li>", "  </ul>", "</div>"},
         {{0, 6, 1}, {3, 5, 2}}},
        {"ini", {"[uno]", "a=1", "", "[due]", "b=2", "c=3"}, {{0, 1, 1}, {3, 5, 1}}},
        {"text", {"testo", "  rientrato"}, {}},
        // XML keeps case, so </A> closes nothing; HTML ignores it.
        {"xml", {"<a>", "<b>", "</B>", "</a>"}, {{0, 3, 1}}},
        {"html", {"<A>", "<b>", "</B>", "</a>"}, {{0, 3, 1}, {1, 2, 2}}},
        // Self-closing tags and tags in comments open nothing; attributes may span lines.
        {"xml",
         {"<a x=\"1\"", "   y=\"2\">", "<b/>", "<!-- <c> -->", "<d />", "</a>"},
         {{0, 5, 1}}},
        // A closer without opener is ignored; an unclosed opener makes no region.
        {"c", {"}", "{", "[", "}", "]"}, {{1, 3, 1}}},
        // CR before LF belongs to the line.
        {"python", {"if a:\r", "  b\r", "c\r"}, {{0, 1, 1}}},
        {"toml", {"x = 1", "  [t]  ", "a = 2", ""}, {{1, 2, 1}}},
        // Tabs go to the next multiple of the tab width (4): "\t" and "    " are equal.
        {"yaml", {"a:", "\tb:", "    c: 1", "  d: 2"}, {{0, 3, 1}}},
        {"markdown", {"    # codice", "#nope", "####### sette", "### tre", "x"}, {{3, 4, 1}}},
    };
    for (const DetectionCase &c : cases) {
        const auto got = detect(QString::fromLatin1(c.languageId), c.lines.join(u'\n'));
        EXPECT_EQ(got, c.expected) << c.languageId << ": " << c.lines.join(u'|').toStdString()
                                   << "\n got " << describe(got);
    }
}

TEST(FoldDetection, Normalisation)
{
    const std::vector<FoldLines> pairs = {{3, 3}, {2, 5}, {2, 9}, {0, 10}, {6, 7}, {7, 12}, {4, 1}};
    const std::vector<FoldRegion> expected
        = {{0, 10, 1}, {2, 9, 2}, {6, 7, 3}, {7, 12, 4}}; // 7 is not before 7: still open
    EXPECT_EQ(mirtex::normaliseFoldLines(pairs, 20), expected);
    // The same through the sparse path (few pairs in many lines).
    EXPECT_EQ(mirtex::normaliseFoldLines(pairs, 1'000'000), expected);
}

// Bad input: results stay valid (end after start, sorted, depths consistent), nothing is quadratic
// (each case would take minutes if it were).
TEST(FoldDetection, BadInputStaysValidAndLinear)
{
    const qsizetype n = 200'000;
    const std::vector<std::pair<const char *, QString>> cases = {
        {"c", QString(n, u'{') + QString(n, u']') + QString(n, u'}')},
        {"c", QString(n, u'[') + QString(n, u'}')},
        {"c", QStringLiteral("{\n").repeated(n / 2) + QStringLiteral("}\n").repeated(n / 2)},
        {"c", QString(5'000'000, u'x') + u"{\n}"},
        {"c", QStringLiteral("/* never closed {\n").repeated(1000)},
        {"xml", QStringLiteral("<a>\n").repeated(n / 4) + QStringLiteral("</b>").repeated(n / 4)},
        {"html", QStringLiteral("<a ") + QString(n, u'x') + QStringLiteral("<b>\n</b>")},
        {"markdown", QStringLiteral("```\n# a\n").repeated(1000) + QStringLiteral("~~~")},
        {"python", QStringLiteral(" \t\r\n x\r\n\t\ty\r\n").repeated(n / 10)},
        {"ini", QStringLiteral("[s]\r\n\r\n").repeated(n / 10)},
    };
    for (const auto &[id, text] : cases) {
        const auto regions = detect(QString::fromLatin1(id), text);
        for (std::size_t i = 0; i < regions.size(); ++i) {
            const FoldRegion &r = regions[i];
            ASSERT_GT(r.end, r.start) << id;
            ASSERT_GE(r.depth, 1) << id;
            if (i > 0) {
                ASSERT_GT(r.start, regions[i - 1].start) << id;
                ASSERT_LE(r.depth, regions[i - 1].depth + 1) << id;
            }
        }
    }
    // 1,500 nested levels fold at their depths.
    const auto deep
        = detect(QStringLiteral("c"),
                 QStringLiteral("{\n").repeated(1500) + QStringLiteral("}\n").repeated(1500));
    ASSERT_EQ(deep.size(), 1500u);
    EXPECT_EQ(deep.back().depth, 1500);
    EXPECT_EQ(deep.front().end, 2999);
}

// The brace scanner against a direct count on random text: every region is a matched pair.
TEST(FoldDetection, BraceRegionsMatchACountOfPairs)
{
    std::mt19937 random(13);
    const char16_t pieces[] = {u'{', u'}', u'\n', u'x', u'\n'};
    for (int round = 0; round < 50; ++round) {
        QString text;
        int open = 0;
        for (int i = 0; i < 400; ++i) {
            char16_t c = pieces[random() % 5];
            if (c == u'}' && open == 0)
                c = u'{';
            open += c == u'{' ? 1 : c == u'}' ? -1 : 0;
            text += QChar(c);
        }
        text += QString(open, u'}');
        // Reference: a plain stack of opening lines; every pair spanning lines is a block.
        std::vector<qint64> stack;
        std::set<qint64> starts;
        qint64 line = 0;
        for (QChar c : text) {
            if (c == u'\n')
                ++line;
            else if (c == u'{')
                stack.push_back(line);
            else if (c == u'}') {
                if (stack.back() < line)
                    starts.insert(stack.back());
                stack.pop_back();
            }
        }
        const auto regions = mirtex::braceFoldLines(text, nullptr);
        std::set<qint64> got;
        for (const FoldLines &p : regions)
            got.insert(p.start);
        EXPECT_EQ(got, starts);
    }
}
