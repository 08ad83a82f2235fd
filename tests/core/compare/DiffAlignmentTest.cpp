#include "core/compare/DiffAlignment.h"

#include "core/compare/DiffCarry.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

#include <random>

namespace mirtex {

namespace {

TEST(DiffAlignment, EqualLinesFaceEachOtherAndFillersPadTheShorterSide)
{
    const TextDiff diff(QStringLiteral("a\nb\nc\nd"), QStringLiteral("a\nB1\nB2\nc\ne\nd"));
    const DiffAlignment a = DiffAlignment::of(diff);
    EXPECT_EQ(alignedText(diff.left, a.left), QStringLiteral("a\nb\n\nc\n\nd"));
    EXPECT_EQ(alignedText(diff.right, a.right), QStringLiteral("a\nB1\nB2\nc\ne\nd"));
    using K = AlignedRowKind;
    EXPECT_EQ(a.left.kindOfRow,
              (std::vector<K>{K::equal, K::changed, K::filler, K::equal, K::filler, K::equal}));
    EXPECT_EQ(a.right.kindOfRow,
              (std::vector<K>{K::equal, K::changed, K::changed, K::equal, K::added, K::equal}));
    EXPECT_EQ(a.hunkRows, (std::vector<LineRange>{{1, 3}, {4, 5}}));
    EXPECT_EQ(a.hunkAtRow(0), -1);
    EXPECT_EQ(a.hunkAtRow(0, true), 0);
    EXPECT_EQ(a.hunkAtRow(2), 0);
    EXPECT_EQ(a.hunkAtRow(3, true), 1);
    EXPECT_EQ(a.hunkAtRow(5, true), -1);
}

// Carrying every hunk from right to left, last first, must turn the left text into the right one;
// carrying one hunk must remove exactly that difference.
TEST(DiffCarry, CarryingEveryHunkRebuildsTheOtherText)
{
    std::mt19937 random(99);
    for (int round = 0; round < 300; ++round) {
        QStringList left;
        const int count = int(random() % 12);
        for (int i = 0; i < count; ++i)
            left.append(QString::number(random() % 6));
        QStringList right = left;
        for (int e = int(random() % 5); e > 0; --e) {
            const int at = right.isEmpty() ? 0 : int(random() % (right.size() + 1));
            if (random() % 2 || right.isEmpty())
                right.insert(at, QStringLiteral("x%1").arg(e));
            else
                right.removeAt(std::min<int>(at, int(right.size()) - 1));
        }
        const QString leftText = left.join(u'\n') + (round % 3 == 0 ? "\n" : "");
        const QString rightText = right.join(u'\n') + (round % 4 == 0 ? "\n" : "");
        SCOPED_TRACE(leftText.toStdString() + " <- " + rightText.toStdString());
        const TextDiff diff(leftText, rightText);
        QString carried = leftText;
        for (auto h = diff.hunks.rbegin(); h != diff.hunks.rend(); ++h) {
            const TextReplacement r = carriedLines(diff.right, h->right, diff.left, h->left);
            carried.replace(r.range.location, r.range.length, r.text);
        }
        EXPECT_EQ(carried, rightText);
        if (!diff.hunks.empty()) {
            const size_t pick = random() % diff.hunks.size();
            const DiffHunk &h = diff.hunks[pick];
            const TextReplacement r = carriedLines(diff.left, h.left, diff.right, h.right);
            QString one = rightText;
            one.replace(r.range.location, r.range.length, r.text);
            EXPECT_EQ(TextDiff(leftText, one).hunks.size(), diff.hunks.size() - 1);
        }
    }
}

} // namespace

} // namespace mirtex
