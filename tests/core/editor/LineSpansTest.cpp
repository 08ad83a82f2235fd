#include "core/editor/LineSpans.h"

#include <gtest/gtest.h>

#include <random>

using mirtex::LineEdit;
using mirtex::LineSpans;

namespace {

using Lines = std::vector<bool>; // true: hidden

LineSpans spansOf(const Lines &hidden)
{
    LineSpans spans;
    for (qint64 line = 0; line < qint64(hidden.size()); ++line) {
        if (!hidden[std::size_t(line)])
            continue;
        if (!spans.empty() && spans.back().last == line - 1)
            spans.back().last = line;
        else
            spans.push_back({line, line});
    }
    return spans;
}

Lines randomLines(std::mt19937 &random, std::size_t count)
{
    Lines lines(count);
    for (std::size_t i = 0; i < count; ++i)
        lines[i] = random() % 3 == 0;
    return lines;
}

} // namespace

// A view that hides lines, moved through an edit as its lines move, then brought to a new set by
// the changes: it ends hiding exactly the new set, whatever the edited lines held.
TEST(LineSpans, ChangesBringAViewToTheNewHiddenLines)
{
    std::mt19937 random(99);
    for (int round = 0; round < 2000; ++round) {
        const std::size_t count = 1 + random() % 30;
        const Lines before = randomLines(random, count);
        const qint64 first = random() % count;
        const qint64 oldLast = first + qint64(random() % (count - first));
        const qint64 newLast = first + qint64(random() % 5);
        // The view after the edit: lines outside it moved, the edit's own lines in any state.
        Lines view;
        for (qint64 l = 0; l < first; ++l)
            view.push_back(before[std::size_t(l)]);
        for (qint64 l = first; l <= newLast; ++l)
            view.push_back(random() % 2 == 0);
        for (qint64 l = oldLast + 1; l < qint64(count); ++l)
            view.push_back(before[std::size_t(l)]);
        const Lines after = randomLines(random, view.size());

        const LineSpans shifted = mirtex::shiftSpans(spansOf(before), {first, oldLast, newLast});
        const auto changes = mirtex::spanChanges(shifted, spansOf(after), {{first, newLast}});
        // As few calls as possible: two neighbours to show are kept apart by a line that stays
        // hidden, two to hide by a line that stays shown.
        auto separated = [&](const mirtex::LineSpans &spans, bool hiddenBetween) {
            for (std::size_t i = 1; i < spans.size(); ++i) {
                bool found = false;
                for (qint64 l = spans[i - 1].last + 1; l < spans[i].first; ++l)
                    found = found || after[std::size_t(l)] == hiddenBetween;
                if (!found)
                    return false;
            }
            return true;
        };
        ASSERT_TRUE(separated(changes.show, true)) << "round " << round;
        ASSERT_TRUE(separated(changes.hide, false)) << "round " << round;
        for (const auto &span : changes.show)
            for (qint64 l = span.first; l <= span.last; ++l)
                view[std::size_t(l)] = false;
        for (const auto &span : changes.hide)
            for (qint64 l = span.first; l <= span.last; ++l)
                view[std::size_t(l)] = true;
        ASSERT_EQ(view, after) << "round " << round;
    }
}
