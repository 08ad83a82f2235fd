#include "core/editor/FoldState.h"

#include "support/TextRangePrinter.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

using mirtex::Fold;
using mirtex::FoldRegion;
using mirtex::FoldState;
using mirtex::IndexLineLookup;
using mirtex::LineIndex;
using mirtex::TextRange;

namespace {

// A text with its line table, as the editor keeps them.
struct Text
{
    QString text;
    LineIndex index;

    IndexLineLookup lines()
    {
        index.invalidate();
        index.rebuild(text);
        return IndexLineLookup(index, text.size());
    }
};

const QStringList kNested = {"func f() {", "    if a {", "        b()", "    }", "}", "x"};

} // namespace

TEST(FoldState, CommandsFoldWhatTheyName)
{
    Text t{kNested.join(u'\n'), {}};
    FoldState state;
    state.installRegions({{0, 4, 1}, {1, 3, 2}}, t.lines());

    EXPECT_TRUE(state.fold(0, t.lines()));
    // Lines 1-4 go: the line after the block comes right under the header.
    EXPECT_EQ(state.hiddenRanges(), std::vector<TextRange>({{11, 31}}));
    EXPECT_EQ(t.text.mid(11, 31), QStringLiteral("    if a {\n        b()\n    }\n}\n"));
    EXPECT_FALSE(state.fold(5, t.lines())); // no region there

    // Carets inside hidden text go to the end of the header line.
    const std::vector<std::pair<qint64, qint64>> carets
        = {{0, 0}, {10, 10}, {11, 10}, {30, 10}, {41, 10}, {42, 42}};
    for (const auto &[caret, moved] : carets)
        EXPECT_EQ(state.visibleOffset(caret), moved) << caret;

    EXPECT_TRUE(state.unfoldAll());
    EXPECT_TRUE(state.foldLevel(2, t.lines()));
    EXPECT_EQ(state.foldedLines(t.lines()), std::vector<qint64>{1});
    EXPECT_TRUE(state.foldCurrentBlock(2, t.lines())); // inside "if", folded: the next one out
    EXPECT_EQ(state.foldedLines(t.lines()), std::vector<qint64>({0, 1}));
    EXPECT_TRUE(state.unfold(0, t.lines()));
    EXPECT_FALSE(state.unfold(0, t.lines()));

    // Opening what a found match or a jump lands in.
    EXPECT_FALSE(state.unfoldAround({5, 2}));
    EXPECT_TRUE(state.unfoldAround({25, 0}));
    EXPECT_TRUE(state.folds().empty());

    // Everything but the caret's block and the blocks around it.
    state.installRegions({{0, 4, 1}, {1, 3, 2}, {5, 6, 1}},
                         (t.text += QStringLiteral("\ny"), t.lines()));
    EXPECT_TRUE(state.foldAllExcept(2, t.lines()));
    EXPECT_EQ(state.foldedLines(t.lines()), std::vector<qint64>{5});
    EXPECT_TRUE(state.foldAll(t.lines()));
    EXPECT_EQ(state.foldedLines(t.lines()), std::vector<qint64>({0, 1, 5}));
}

TEST(FoldState, NewRegionsKeepOnlyFoldsWhoseHeaderStillStartsOne)
{
    Text t{kNested.join(u'\n'), {}};
    FoldState state;
    state.installRegions({{0, 4, 1}, {1, 3, 2}}, t.lines());
    state.foldAll(t.lines());
    EXPECT_TRUE(state.installRegions({{0, 2, 1}}, t.lines()));
    ASSERT_EQ(state.folds().size(), 1u);
    EXPECT_EQ(state.folds()[0].hidden, (TextRange{11, 23})); // recomputed from the new region
    EXPECT_TRUE(state.clear());
    EXPECT_TRUE(state.hiddenRanges().empty());
}

// Random edits against a model that follows characters: a fold hides a run of characters, new
// text joins it only when typed strictly inside it, and it is lost with its header's line break.
TEST(FoldState, FoldsFollowRandomEditsLikeTheirCharacters)
{
    std::mt19937 random(2024);
    for (int round = 0; round < 200; ++round) {
        Text t{QStringLiteral("ab\ncd\nef\ngh\nij\nkl\nmn\nop"), {}};
        std::vector<int> ids(std::size_t(t.text.size()));
        std::iota(ids.begin(), ids.end(), 0);
        int nextId = int(ids.size());
        FoldState state;
        state.installRegions({{0, 2, 1}, {1, 2, 2}, {3, 5, 1}, {6, 7, 1}}, t.lines());

        struct ModelFold
        {
            int keyId;
            int lineBreakId;
            std::set<int> hidden;
        };

        std::vector<ModelFold> model;
        for (qint64 line : {0, 1, 3, 6}) {
            if (random() % 3 == 0)
                continue;
            state.fold(line, t.lines());
        }
        for (const Fold &f : state.folds()) {
            ModelFold m{ids[std::size_t(f.key)], ids[std::size_t(f.hidden.location - 1)], {}};
            for (qint64 i = f.hidden.location; i < f.hidden.end(); ++i)
                m.hidden.insert(ids[std::size_t(i)]);
            model.push_back(m);
        }
        for (int step = 0; step < 30; ++step) {
            const qint64 at = random() % (t.text.size() + 1);
            const qint64 removed = std::min<qint64>(random() % 4, t.text.size() - at);
            const QString inserted = QStringLiteral("x\ny").left(int(random() % 4));
            // Model: delete, then insert.
            for (ModelFold &m : model) {
                const auto keyAt = std::find(ids.begin(), ids.end(), m.keyId) - ids.begin();
                for (qint64 i = at; i < at + removed; ++i) {
                    m.hidden.erase(ids[std::size_t(i)]);
                    if (ids[std::size_t(i)] == m.lineBreakId)
                        m.lineBreakId = -1;
                }
                if (keyAt >= at && keyAt < at + removed)
                    m.keyId = -2; // the first surviving unit after the deletion, set below
            }
            ids.erase(ids.begin() + at, ids.begin() + at + removed);
            std::vector<int> newIds;
            for (qsizetype i = 0; i < inserted.size(); ++i)
                newIds.push_back(nextId++);
            for (ModelFold &m : model) {
                const bool before = at > 0 && m.hidden.contains(ids[std::size_t(at - 1)]);
                const bool after
                    = at < qint64(ids.size()) && m.hidden.contains(ids[std::size_t(at)]);
                if (before && after)
                    m.hidden.insert(newIds.begin(), newIds.end());
                if (m.keyId == -2)
                    m.keyId = at < qint64(ids.size()) ? ids[std::size_t(at)] : -3;
            }
            ids.insert(ids.begin() + at, newIds.begin(), newIds.end());
            std::erase_if(model, [](const ModelFold &m) { return m.lineBreakId == -1; });
            t.text.replace(at, removed, inserted);
            state.carryThroughEdit({at, inserted.size()}, inserted.size() - removed);

            std::vector<std::pair<qint64, TextRange>> expected;
            for (const ModelFold &m : model) {
                if (m.hidden.empty())
                    continue;
                auto pos = [&ids](int id) {
                    return qint64(std::find(ids.begin(), ids.end(), id) - ids.begin());
                };
                qint64 first = qint64(ids.size()), last = -1;
                for (int id : m.hidden) {
                    first = std::min(first, pos(id));
                    last = std::max(last, pos(id));
                }
                ASSERT_EQ(last - first + 1, qint64(m.hidden.size())) << "model not contiguous";
                expected.push_back({m.keyId == -3 ? qint64(ids.size()) : pos(m.keyId),
                                    TextRange{first, last - first + 1}});
            }
            std::vector<std::pair<qint64, TextRange>> got;
            for (const Fold &f : state.folds()) {
                if (f.hidden.length > 0)
                    got.push_back({f.key, f.hidden});
            }
            std::sort(expected.begin(), expected.end(), [](auto &a, auto &b) {
                return a.first < b.first;
            });
            ASSERT_EQ(got, expected) << "round " << round << " step " << step << " edit " << at
                                     << " -" << removed << " +" << inserted.size();
        }
    }
}
