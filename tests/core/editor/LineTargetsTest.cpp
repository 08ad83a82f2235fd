// Where navigation goes, the document summary's counts and the path under the caret.
#include "core/editor/LineTargets.h"

#include "core/editor/DocumentSummary.h"
#include "core/editor/SelectedPath.h"
#include "support/CaretMarkup.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;

TEST(LineTargets, GoToLineAnswers)
{
    const struct
    {
        QString answer;
        std::optional<qsizetype> line;
    } cases[] = {
        {u"3"_qs, 2},
        {u"  3 "_qs, 2},
        {u"+2"_qs, 1},
        {u"0"_qs, 0},
        {u"-4"_qs, 0},
        {u"11"_qs, 9},
        {u"99999999999999999999999"_qs, 9},
        {u"abc"_qs, std::nullopt},
        {u""_qs, std::nullopt},
        {u"3.5"_qs, std::nullopt},
        {u"3 4"_qs, std::nullopt},
        {u"-"_qs, std::nullopt},
    };

    for (const auto &c : cases)
        EXPECT_EQ(lineForAnswer(c.answer, 10), c.line) << c.answer.toStdString();
    EXPECT_EQ(lineForAnswer(u"5"_qs, 0), 0);
}

TEST(LineTargets, BookmarksWrapRound)
{
    const std::vector<qsizetype> lines{2, 5, 9};
    EXPECT_EQ(nextBookmarkedLine(lines, 5, true), 9);
    EXPECT_EQ(nextBookmarkedLine(lines, 9, true), 2);
    EXPECT_EQ(nextBookmarkedLine(lines, 0, true), 2);
    EXPECT_EQ(nextBookmarkedLine(lines, 6, false), 5);
    EXPECT_EQ(nextBookmarkedLine(lines, 2, false), 9);
    EXPECT_EQ(nextBookmarkedLine({}, 2, false), std::nullopt);
}

TEST(LineTargets, MatchingBraceJumpsBackAndForth)
{
    const struct
    {
        QString before;
        std::optional<qsizetype> caret;
    } cases[] = {
        {u"|(a(b))"_qs, 6},
        {u"(a(b))|"_qs, 0},
        {u"(a|(b))"_qs, 5},
        {u"(a(b)|)"_qs, 0},
        {u"(a(b|))"_qs, 2},
        {u"x|y"_qs, std::nullopt},
        {u"(|a"_qs, std::nullopt},
        {u"|"_qs, std::nullopt},
    };

    for (const auto &c : cases) {
        const test::MarkedText m = test::parseMarkup(c.before);
        EXPECT_EQ(matchingBraceCaret(m.text, m.selections.main().caret), c.caret)
            << c.before.toStdString();
    }
}

TEST(DocumentSummary, CountsUserPerceivedCharacters)
{
    EXPECT_EQ(countText(u"é😀\nab cd"_qs), (TextCounts{8, 7, 3, 2, 12}));
    EXPECT_EQ(countText(u""_qs), (TextCounts{0, 0, 0, 1, 0}));
    const test::MarkedText m = test::parseMarkup(u"[ab|]\ncd"_qs);
    const QString summary = summaryText(m.text, m.selections);
    EXPECT_TRUE(summary.startsWith(u"Lunghezza del documento: 5 caratteri\n"
                                   u"Caratteri (senza a capo): 4\n"_qs))
        << summary.toStdString();
    EXPECT_TRUE(summary.contains(u"Selezione: 2 caratteri"_qs));
    EXPECT_EQ(summaryTitle(u"a.txt"_qs), u"Riepilogo di “a.txt”"_qs);
}

TEST(SelectedPath, FromSelectionOrCaret)
{
    const struct
    {
        QString marked;
        std::optional<QString> path;
    } cases[] = {
        {u"see ~/no|tes.txt."_qs, u"/home/u/notes.txt"_qs},
        {u"open ['src/a.cpp'|]"_qs, u"/base/src/a.cpp"_qs},
        {u"(file:///tmp/|x)"_qs, u"/tmp/x"_qs},
        {u"\"/etc/../etc/hosts|\""_qs, u"/etc/hosts"_qs},
        {u"a | b"_qs, std::nullopt},
        {u"[a\nb|]"_qs, std::nullopt},
    };

    for (const auto &c : cases) {
        const test::MarkedText m = test::parseMarkup(c.marked);
        EXPECT_EQ(selectedPath(m.text, m.selections.main(), u"/base"_qs, u"/home/u"_qs), c.path)
            << c.marked.toStdString();
    }
}
