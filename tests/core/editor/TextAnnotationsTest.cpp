#include "core/editor/TextAnnotations.h"

#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

using mirtex::TextAnnotations;
using mirtex::TextRange;

namespace {

// `removed` units at `at` replaced by `inserted` units, reported as the editor reports edits.
struct Edit
{
    qint64 at, removed, inserted;
};

void apply(TextAnnotations &annotations, Edit edit)
{
    annotations.adjustAfterEdit(TextRange{edit.at, edit.inserted}, edit.inserted - edit.removed);
}

} // namespace

TEST(TextAnnotations, BookmarksAndMarksFollowEdits)
{
    // Bookmarks at 0, 10 and 20 and one mark at 5, length 3, through one edit.
    const std::vector<std::tuple<Edit, std::vector<qint64>, std::vector<TextRange>>> cases = {
        {{8, 5, 2}, {0, 8, 17}, {{5, 3}}},   // replacement over a bookmark, right after the mark
        {{10, 0, 1}, {0, 11, 21}, {{5, 3}}}, // typing at a bookmark moves it behind
        {{9, 0, 1}, {0, 11, 21}, {{5, 3}}},
        {{11, 0, 1}, {0, 10, 21}, {{5, 3}}},
        {{8, 0, 1}, {0, 11, 21}, {{5, 3}}}, // insertion right after the mark
        {{7, 2, 0}, {0, 8, 18}, {}},        // deletion touching the mark
        {{0, 0, 1}, {1, 11, 21}, {{6, 3}}},
        {{5, 0, 2}, {0, 12, 22}, {{7, 3}}}, // insertion at the mark's start
        {{6, 0, 1}, {0, 11, 21}, {}},       // insertion inside the mark
        {{2, 3, 0}, {0, 7, 17}, {{2, 3}}},  // deletion ending at the mark's start
        {{9, 12, 0}, {0, 9, 9}, {{5, 3}}},  // bookmarks that fall together are not merged
    };
    for (const auto &[edit, bookmarks, marks] : cases) {
        TextAnnotations annotations;
        annotations.bookmarkOffsets = {0, 10, 20};
        annotations.markRanges = {TextRange{5, 3}};
        annotations.smartRanges = {TextRange{1, 1}};
        annotations.lineIndex.rebuild(u"");
        const auto changes = annotations.adjustAfterEdit(TextRange{edit.at, edit.inserted},
                                                         edit.inserted - edit.removed);
        EXPECT_EQ(annotations.bookmarkOffsets, bookmarks) << edit.at << "-" << edit.removed;
        EXPECT_EQ(annotations.markRanges, marks) << edit.at << "-" << edit.removed;
        EXPECT_TRUE(changes.marks && changes.bookmarks && changes.highlights);
        EXPECT_TRUE(annotations.smartRanges.empty());
        EXPECT_FALSE(annotations.lineIndex.valid());
    }
}

// The rules restated per character: a bookmark sticks to the character at its offset (or the end
// of the text) and falls to the edit's start when that character is replaced; a mark is the run of
// its characters and survives while they all exist and stay adjacent.
TEST(TextAnnotations, RandomEditsMatchPerCharacterModel)
{
    std::mt19937 random(2024);
    for (int round = 0; round < 200; ++round) {
        std::vector<int> chars(random() % 60);
        std::iota(chars.begin(), chars.end(), 0);
        int nextId = int(chars.size());
        auto size = [&] { return qint64(chars.size()); };
        auto idAt = [&](qint64 offset) { return offset < size() ? chars[offset] : -1; };
        auto offsetOf = [&](int id) {
            return id < 0 ? size() : qint64(std::ranges::find(chars, id) - chars.begin());
        };

        TextAnnotations annotations;
        std::vector<int> bookmarkIds;
        std::vector<std::vector<int>> markIds;
        for (int i = 0; i < 8; ++i) {
            annotations.bookmarkOffsets.push_back(random() % (size() + 1));
            bookmarkIds.push_back(idAt(annotations.bookmarkOffsets.back()));
            if (chars.empty())
                continue;
            const qint64 location = random() % size();
            const qint64 length = 1 + random() % std::min<qint64>(5, size() - location);
            annotations.markRanges.push_back(TextRange{location, length});
            markIds.emplace_back(chars.begin() + location, chars.begin() + location + length);
        }
        for (int step = 0; step < 30; ++step) {
            const qint64 at = random() % (size() + 1);
            const Edit edit{at, qint64(random() % (size() - at + 1)) % 6, qint64(random() % 4)};
            if (edit.removed == 0 && edit.inserted == 0)
                continue; // the editor reports no empty edits
            chars.erase(chars.begin() + at, chars.begin() + at + edit.removed);
            for (int i = 0; i < edit.inserted; ++i)
                chars.insert(chars.begin() + at + i, nextId++);
            apply(annotations, edit);

            std::vector<qint64> bookmarks;
            for (int &id : bookmarkIds) {
                const bool replaced = id >= 0 && std::ranges::find(chars, id) == chars.end();
                bookmarks.push_back(replaced ? at : offsetOf(id));
                id = idAt(bookmarks.back());
            }
            ASSERT_EQ(annotations.bookmarkOffsets, bookmarks) << round << "/" << step;

            std::erase_if(markIds, [&](const std::vector<int> &ids) {
                const qint64 first = offsetOf(ids.front());
                return first + qint64(ids.size()) > size()
                       || !std::equal(ids.begin(), ids.end(), chars.begin() + first);
            });
            std::vector<TextRange> marks;
            for (const auto &ids : markIds)
                marks.push_back(TextRange{offsetOf(ids.front()), qint64(ids.size())});
            ASSERT_EQ(annotations.markRanges, marks) << round << "/" << step;
        }
    }
}

TEST(TextAnnotations, BookmarksByLine)
{
    const QString text = QStringLiteral("zero\none\ntwo\nthree");
    TextAnnotations annotations;
    annotations.bookmarkOffsets = {6, 14, 5, 0}; // 5 and 6 both lie on line 1
    EXPECT_EQ(annotations.bookmarkedLines(text), (std::vector<qsizetype>{0, 1, 3}));
    EXPECT_FALSE(annotations.toggleBookmark(1, text)); // removes both bookmarks of line 1
    EXPECT_TRUE(annotations.toggleBookmark(2, text));
    EXPECT_FALSE(annotations.toggleBookmark(4, text)); // no such line
    EXPECT_EQ(annotations.bookmarkedLines(text), (std::vector<qsizetype>{0, 2, 3}));
    EXPECT_TRUE(annotations.isBookmarked(2, text) && !annotations.isBookmarked(1, text));

    annotations.setBookmarkedLines({3, 1, 7, -1, 3}, text);
    EXPECT_EQ(annotations.bookmarkOffsets, (std::vector<qint64>{5, 13}));
    // After an edit the line table follows the new text.
    annotations.adjustAfterEdit(TextRange{0, 1}, 1);
    EXPECT_EQ(annotations.bookmarkedLines(QString(u'\n' + text)), (std::vector<qsizetype>{2, 4}));
}
