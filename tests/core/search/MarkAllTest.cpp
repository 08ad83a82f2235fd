#include "core/search/MarkAll.h"

#include "core/editor/LineIndex.h"
#include "core/search/SearchEngine.h"
#include "core/search/SearchStop.h"
#include "support/QStringPrinter.h"
#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

#include <thread>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

SearchOptions search(SearchMode mode, const QString &query, bool wholeWord = false)
{
    SearchOptions result;
    result.mode = mode;
    result.query = query;
    result.wholeWord = wholeWord;
    return result;
}

std::vector<qint64> lineStarts(const QString &text)
{
    LineIndex index;
    index.rebuild(text);
    return index.starts();
}

} // namespace

TEST(MarkAll, MarksNonEmptyMatchesInTheScopeAndBookmarksTheirLines)
{
    using enum SearchMode;
    const QString text = u"caffè Caffè\nriga due\n\nCAFFÈ 😀 caffè"_s;

    const struct
    {
        SearchOptions options;
        TextRange selection;
        bool inSelection;
        std::vector<TextRange> ranges;
        std::vector<qsizetype> lines;
        SearchStatus status;
    } cases[] = {
        {search(normal, u"caffè"_s),
         {},
         false,
         {{0, 5}, {6, 5}, {22, 5}, {31, 5}},
         {0, 3},
         {u"4 occorrenze contrassegnate."_s, false}},
        // Only the selection, searched as a text of its own.
        {search(normal, u"caffè"_s),
         {3, 20},
         true,
         {{6, 5}},
         {0},
         {u"1 occorrenze contrassegnate."_s, false}},
        // An empty selection means the whole text.
        {search(normal, u"riga"_s),
         {5, 0},
         true,
         {{12, 4}},
         {1},
         {u"1 occorrenze contrassegnate."_s, false}},
        // Empty matches are never marks; the line of an empty line's start is found too.
        {search(regex, u"^"_s), {}, false, {}, {}, SearchStatus::noResult(u"^"_s)},
        {search(regex, u"^$|due"_s),
         {},
         false,
         {{17, 3}},
         {1},
         {u"1 occorrenze contrassegnate."_s, false}},
        {search(regex, u"^.?"_s),
         {},
         false,
         {{0, 1}, {12, 1}, {22, 1}},
         {0, 1, 3},
         {u"3 occorrenze contrassegnate."_s, false}},
        {search(normal, u"zzz"_s), {}, false, {}, {}, SearchStatus::noResult(u"zzz"_s)},
    };

    const std::vector<qint64> starts = lineStarts(text);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.options.query.toStdString());
        const MarkAllResult withLines
            = markAll(text, c.selection, c.inSelection, c.options, true, starts);
        EXPECT_EQ(withLines.ranges, c.ranges);
        EXPECT_EQ(withLines.lines, c.lines);
        EXPECT_EQ(withLines.status, c.status);
        EXPECT_FALSE(withLines.beep);
        const MarkAllResult withoutLines
            = markAll(text, c.selection, c.inSelection, c.options, false, starts);
        EXPECT_EQ(withoutLines.ranges, c.ranges);
        EXPECT_TRUE(withoutLines.lines.empty());
    }
}

TEST(MarkAll, StopsAtTheLimitAndRefusesBadQueries)
{
    const QString text = QString(u"ab "_s).repeated(100);
    const MarkAllResult limited
        = markAll(text, {}, false, search(SearchMode::normal, u"ab"_s), false, {}, 7);
    ASSERT_EQ(limited.ranges.size(), 7u);
    EXPECT_EQ(limited.ranges.back(), (TextRange{18, 2}));

    for (const auto &bad : {search(SearchMode::normal, {}), search(SearchMode::regex, u"(a"_s)}) {
        const MarkAllResult refused = markAll(text, {}, false, bad, true, {});
        EXPECT_TRUE(refused.beep);
        EXPECT_TRUE(refused.status.isError);
        EXPECT_TRUE(refused.ranges.empty());
    }
}

TEST(MarkAll, LineHoldingFindsTheLastStartNotAfterTheOffset)
{
    const std::vector<qint64> starts{0, 4, 5, 9};
    const std::pair<qint64, qsizetype> cases[]
        = {{0, 0}, {3, 0}, {4, 1}, {5, 2}, {8, 2}, {9, 3}, {500, 3}, {-1, 0}};
    for (const auto &[offset, line] : cases)
        EXPECT_EQ(lineHolding(starts, offset), line) << offset;
}

TEST(SearchStop, AStopFlagCancelsSearchesOnItsThreadOnly)
{
    const QString text = QString(u"abc "_s).repeated(50'000);
    const auto options = search(SearchMode::regex, u"c"_s);
    std::atomic<bool> stop{true};
    {
        SearchStopScope scope(stop);
        const CountResult counted = countMatches(text, {}, false, options);
        EXPECT_TRUE(counted.beep);
        EXPECT_EQ(counted.status, (SearchStatus{u"Operazione annullata."_s, true}));
        const ReplaceAllResult replaced = replaceAll(text, {}, false, false, options);
        EXPECT_TRUE(replaced.batch.isEmpty());
        EXPECT_TRUE(markAll(text, {}, false, options, false, {}).beep);
        // Another thread is not stopped by this one's flag.
        qsizetype elsewhere = 0;
        std::thread([&] { elsewhere = countMatches(text, {}, false, options).count; }).join();
        EXPECT_EQ(elsewhere, 50'000);
    }
    // Out of the scope the same flag stops nothing.
    EXPECT_EQ(countMatches(text, {}, false, options).count, 50'000);
}
