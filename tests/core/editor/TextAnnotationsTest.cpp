#include "core/editor/TextAnnotations.h"

#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using mirtex::TextAnnotations;
using mirtex::TextRange;

namespace {

// An edit as the editor reports it: `removed` units at `at` replaced by `inserted` units.
struct Edit
{
    qint64 at;
    qint64 removed;
    qint64 inserted;
};

void apply(TextAnnotations &annotations, Edit edit)
{
    annotations.adjustAfterEdit(TextRange{edit.at, edit.inserted}, edit.inserted - edit.removed);
}

} // namespace

TEST(TextAnnotations, BookmarksFollowEdits)
{
    struct Case
    {
        std::vector<qint64> before;
        Edit edit;
        std::vector<qint64> after;
    };

    const std::vector<Case> cases = {
        {{0, 10, 20}, {8, 5, 2}, {0, 8, 17}}, // replacement over a bookmark
        {{10}, {10, 0, 1}, {11}},             // typing at the bookmark moves it behind
        {{10}, {9, 0, 1}, {11}},
        {{10}, {11, 0, 1}, {10}},
        {{10, 12}, {9, 4, 0}, {9, 9}}, // deleted: both at the edit, not merged
        {{10}, {0, 10, 3}, {3}},       // text ending right before it was replaced
        {{5}, {5, 1, 0}, {5}},
    };
    for (const Case &c : cases) {
        TextAnnotations annotations;
        annotations.bookmarkOffsets = c.before;
        apply(annotations, c.edit);
        EXPECT_EQ(annotations.bookmarkOffsets, c.after) << c.edit.at << "-" << c.edit.removed;
    }
}

TEST(TextAnnotations, MarksFollowEdits)
{
    struct Case
    {
        Edit edit;
        std::optional<TextRange> after; // the mark at 5, length 3, afterwards
    };

    const std::vector<Case> cases = {
        {{8, 0, 1}, TextRange{5, 3}}, // insertion right after it
        {{7, 2, 0}, std::nullopt},    // deletion of 7..9 touches it
        {{0, 0, 1}, TextRange{6, 3}}, // insertion before it
        {{5, 0, 2}, TextRange{7, 3}}, // insertion at its start
        {{6, 0, 1}, std::nullopt},    // insertion inside splits it
        {{2, 3, 0}, TextRange{2, 3}}, // deletion ending at its start
        {{4, 2, 2}, std::nullopt},
        {{9, 4, 0}, TextRange{5, 3}},
    };
    for (const Case &c : cases) {
        TextAnnotations annotations;
        annotations.markRanges = {TextRange{5, 3}};
        const auto changes = annotations.adjustAfterEdit(TextRange{c.edit.at, c.edit.inserted},
                                                         c.edit.inserted - c.edit.removed);
        EXPECT_TRUE(changes.marks);
        const auto expected = c.after ? std::vector<TextRange>{*c.after} : std::vector<TextRange>{};
        EXPECT_EQ(annotations.markRanges, expected) << c.edit.at << "-" << c.edit.removed;
    }
}

TEST(TextAnnotations, EditClearsHighlightsAndInvalidatesLines)
{
    TextAnnotations annotations;
    annotations.lineIndex.rebuild(u"a\nb");
    annotations.smartRanges = {TextRange{0, 1}};
    annotations.braceRanges = {TextRange{2, 1}, TextRange{4, 1}};
    auto changes = annotations.adjustAfterEdit(TextRange{0, 1}, 1);
    EXPECT_TRUE(annotations.smartRanges.empty());
    EXPECT_TRUE(annotations.braceRanges.empty());
    EXPECT_FALSE(annotations.lineIndex.valid());
    EXPECT_TRUE(changes.highlights);
    EXPECT_FALSE(changes.marks);
    EXPECT_FALSE(changes.bookmarks);
    changes = annotations.adjustAfterEdit(TextRange{0, 1}, 1);
    EXPECT_FALSE(changes.highlights);
}

// The rules restated per character: a bookmark sticks to the character at its offset (or to the
// end of the text) and falls to the edit's start when that character is replaced; a mark is the run
// of its characters and survives only while they all exist and stay adjacent.
TEST(TextAnnotations, RandomEditsMatchPerCharacterModel)
{
    std::mt19937 random(2024);
    for (int round = 0; round < 200; ++round) {
        int nextId = 0;
        std::vector<int> chars(std::size_t(random() % 60));
        for (int &id : chars)
            id = nextId++;
        const int endId = -1;
        auto idAt
            = [&](qint64 offset) { return offset < qint64(chars.size()) ? chars[offset] : endId; };
        auto offsetOf = [&](int id) -> std::optional<qint64> {
            if (id == endId)
                return qint64(chars.size());
            const auto it = std::ranges::find(chars, id);
            return it == chars.end() ? std::nullopt : std::optional<qint64>(it - chars.begin());
        };

        TextAnnotations annotations;
        std::vector<int> bookmarkIds;
        std::vector<std::vector<int>> markIds;
        for (int i = 0; i < 8; ++i) {
            const qint64 offset = random() % (chars.size() + 1);
            annotations.bookmarkOffsets.push_back(offset);
            bookmarkIds.push_back(idAt(offset));
        }
        for (int i = 0; !chars.empty() && i < 8; ++i) {
            const qint64 location = random() % chars.size();
            const qint64 length
                = 1 + random() % std::min<qint64>(5, qint64(chars.size()) - location);
            annotations.markRanges.push_back(TextRange{location, length});
            markIds.emplace_back(chars.begin() + location, chars.begin() + location + length);
        }

        for (int step = 0; step < 30; ++step) {
            const qint64 at = random() % (chars.size() + 1);
            const Edit edit{
                at, qint64(random() % (chars.size() - at + 1)) % 6, qint64(random() % 4)};
            if (edit.removed == 0 && edit.inserted == 0)
                continue; // the editor reports no empty edits
            std::vector<int> inserted(std::size_t(edit.inserted));
            for (int &id : inserted)
                id = nextId++;
            chars.erase(chars.begin() + at, chars.begin() + at + edit.removed);
            chars.insert(chars.begin() + at, inserted.begin(), inserted.end());
            apply(annotations, edit);

            std::vector<qint64> expectedBookmarks;
            for (int &id : bookmarkIds) {
                const auto offset = offsetOf(id);
                expectedBookmarks.push_back(offset.value_or(at));
                id = idAt(expectedBookmarks.back());
            }
            ASSERT_EQ(annotations.bookmarkOffsets, expectedBookmarks) << round << "/" << step;

            std::vector<TextRange> expectedMarks;
            std::erase_if(markIds, [&](const std::vector<int> &ids) {
                const auto first = offsetOf(ids.front());
                if (!first || *first + qint64(ids.size()) > qint64(chars.size()))
                    return true;
                return !std::equal(ids.begin(), ids.end(), chars.begin() + *first);
            });
            for (const auto &ids : markIds)
                expectedMarks.push_back(TextRange{*offsetOf(ids.front()), qint64(ids.size())});
            ASSERT_EQ(annotations.markRanges, expectedMarks) << round << "/" << step;
        }
    }
}

TEST(TextAnnotations, BookmarksByLine)
{
    const QString text = QStringLiteral("zero\none\ntwo\nthree");
    TextAnnotations annotations;
    annotations.bookmarkOffsets = {6, 14, 5, 0}; // 5 and 6 both lie on line 1
    EXPECT_EQ(annotations.bookmarkedLines(text), (std::vector<qsizetype>{0, 1, 3}));
    EXPECT_TRUE(annotations.isBookmarked(1, text));
    EXPECT_FALSE(annotations.isBookmarked(2, text));

    EXPECT_FALSE(annotations.toggleBookmark(1, text)); // removes both bookmarks of line 1
    EXPECT_EQ(annotations.bookmarkedLines(text), (std::vector<qsizetype>{0, 3}));
    EXPECT_TRUE(annotations.toggleBookmark(2, text));
    EXPECT_EQ(annotations.bookmarkOffsets.back(), 9);
    EXPECT_FALSE(annotations.toggleBookmark(4, text));
    EXPECT_EQ(annotations.bookmarkedLines(text), (std::vector<qsizetype>{0, 2, 3}));

    annotations.setBookmarkedLines({3, 1, 7, -1, 3}, text);
    EXPECT_EQ(annotations.bookmarkOffsets, (std::vector<qint64>{5, 13}));

    // After an edit the line table follows the new text.
    const QString edited = QStringLiteral("\n") + text;
    annotations.adjustAfterEdit(TextRange{0, 1}, 1);
    EXPECT_EQ(annotations.bookmarkedLines(edited), (std::vector<qsizetype>{2, 4}));
}
