#include "core/compare/TextDiff.h"

#include "core/compare/LineMatcher.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

#include <random>

namespace mirtex {

namespace {

using Kind = DiffHunk::Kind;

struct HunkCase
{
    const char *name;
    QString left;
    QString right;
    DiffOptions options;
    std::vector<DiffHunk> hunks;
};

void PrintTo(const HunkCase &c, std::ostream *os)
{
    *os << c.name;
}

class TextDiffHunks : public testing::TestWithParam<HunkCase>
{};

TEST_P(TextDiffHunks, FindsTheExpectedHunks)
{
    const HunkCase &c = GetParam();
    const TextDiff diff(c.left, c.right, c.options);
    EXPECT_EQ(diff.hunks, c.hunks);
}

const QString kFunctions = QStringLiteral("func a() {\n return 1\n}\n\nfunc b() {\n return 2\n}\n");
const QString kFunctionsPlusC = QStringLiteral(
    "func a() {\n return 1\n}\n\nfunc c() {\n return 3\n}\n\nfunc b() {\n return 2\n}\n");

INSTANTIATE_TEST_SUITE_P(
    Cases,
    TextDiffHunks,
    testing::Values(
        HunkCase{"two empty texts", "", "", {}, {}},
        HunkCase{"line removed at the start", "a\nb\nc", "b\nc", {}, {{{0, 1}, {0, 0}}}},
        HunkCase{"line added at the end", "a\nb", "a\nb\nc", {}, {{{2, 2}, {2, 3}}}},
        HunkCase{"from empty to full", "", "x\ny\nz", {}, {{{0, 1}, {0, 3}}}},
        HunkCase{"from full to empty", "x\ny\n", "", {}, {{{0, 2}, {0, 0}}}},
        HunkCase{"case counts", "Titolo", "titolo", {}, {{{0, 1}, {0, 1}}}},
        HunkCase{"case ignored", "Titolo\nx", "titolo\nx", {false, true}, {}},
        HunkCase{"white space anywhere ignored", "a b\n\tc", "ab\nc\u00A0", {true, false}, {}},
        HunkCase{"white space counts", "a b", "ab", {}, {{{0, 1}, {0, 1}}}},
        HunkCase{"whole function inserted", kFunctions, kFunctionsPlusC, {}, {{{4, 4}, {4, 8}}}},
        HunkCase{"changed and added",
                 "titolo\nprezzo: 10 euro\nfine\n",
                 "titolo\nprezzo: 12 euro\naggiunta\nfine\n",
                 {},
                 {{{1, 2}, {1, 3}}}},
        HunkCase{
            "carriage return stays in its line", "a\r\nb\r\n", "a\nb\r\n", {}, {{{0, 1}, {0, 1}}}},
        HunkCase{"NUL and lone surrogates are plain units",
                 QString::fromUtf16(u"a\0b\n\xD800x\nz", 8),
                 QString::fromUtf16(u"a\0b\n\xDC00x\nz", 8),
                 {},
                 {{{1, 2}, {1, 2}}}},
        HunkCase{"no unique line: Myers",
                 "x\ny\nx\ny",
                 "y\nx\ny\nx",
                 {},
                 {{{0, 1}, {0, 0}}, {{4, 4}, {3, 4}}}}));

TEST(TextDiff, KindsAndTotals)
{
    const TextDiff diff(QStringLiteral("a\nb\nc\nd\ne"), QStringLiteral("b\nC\nd\ne\nf\ng"));
    ASSERT_EQ(diff.hunks.size(), 3u);
    EXPECT_EQ(diff.hunks[0].kind(), Kind::deleted);
    EXPECT_EQ(diff.hunks[1].kind(), Kind::changed);
    EXPECT_EQ(diff.hunks[2].kind(), Kind::inserted);
    EXPECT_EQ(diff.removedLineCount(), 2);
    EXPECT_EQ(diff.addedLineCount(), 3);
}

TEST(TextDiff, OptionBits)
{
    EXPECT_EQ(DiffOptions::fromBits(0x101), (DiffOptions{true, true}));
    EXPECT_EQ(DiffOptions::fromBits(0x0FE), (DiffOptions{false, false}));
    EXPECT_EQ((DiffOptions{false, true}).toBits(), 0x100);
}

// Replaying the hunks on the left lines must give the right lines, and the lines between hunks
// must be equal on both sides.
void expectHunksRebuildRight(const TextDiff &diff)
{
    QStringList rebuilt;
    qsizetype i = 0;
    for (const DiffHunk &hunk : diff.hunks) {
        ASSERT_TRUE(!hunk.left.isEmpty() || !hunk.right.isEmpty());
        ASSERT_GE(hunk.left.start, i);
        for (; i < hunk.left.start; ++i)
            rebuilt.append(diff.left[i].toString());
        for (qsizetype j = hunk.right.start; j < hunk.right.end; ++j)
            rebuilt.append(diff.right[j].toString());
        i = hunk.left.end;
    }
    for (; i < diff.left.size(); ++i)
        rebuilt.append(diff.left[i].toString());
    ASSERT_EQ(rebuilt, diff.right.toList());
}

TEST(TextDiff, ApplyingAllHunksRebuildsTheRightOverRandomEdits)
{
    std::mt19937 random(20241123);
    for (int round = 0; round < 400; ++round) {
        // Few distinct lines, so that repeated lines exercise the Myers fallback too.
        const int vocabulary = round % 2 ? 4 : 50;
        QStringList left;
        const int count = int(random() % 60);
        for (int i = 0; i < count; ++i)
            left.append(QString::number(random() % vocabulary));
        QStringList right = left;
        const int edits = int(random() % 8);
        for (int e = 0; e < edits; ++e) {
            const int at = right.isEmpty() ? 0 : int(random() % right.size());
            switch (random() % 3) {
            case 0:
                right.insert(at, QStringLiteral("n") + QString::number(random() % vocabulary));
                break;
            case 1:
                if (!right.isEmpty())
                    right.removeAt(at);
                break;
            default:
                if (!right.isEmpty())
                    right[at] = QString::number(random() % vocabulary);
            }
        }
        const TextDiff diff(left.join(u'\n'), right.join(u'\n'));
        SCOPED_TRACE(left.join(u',').toStdString() + " -> " + right.join(u',').toStdString());
        expectHunksRebuildRight(diff);
        for (size_t h = 1; h < diff.hunks.size(); ++h)
            EXPECT_LT(diff.hunks[h - 1].left.end, diff.hunks[h].left.start);
    }
}

TEST(TextDiff, ScatteredEditsInALargeTextGiveOneHunkEach)
{
    QStringList left;
    for (int i = 0; i < 30000; ++i)
        left.append(QStringLiteral("riga %1 {").arg(i));
    QStringList right = left;
    for (int i = 100; i < 30000; i += 1000)
        right[i] = QStringLiteral("modificata %1").arg(i);
    const TextDiff diff(left.join(u'\n'), right.join(u'\n'));
    EXPECT_EQ(diff.hunks.size(), 30u);
    EXPECT_EQ(diff.removedLineCount(), 30);
    EXPECT_EQ(diff.addedLineCount(), 30);
}

TEST(TextDiff, UnrelatedRepetitiveTextsEndAsOneCoarseHunk)
{
    // No unique line anywhere and more than 1500 edits apart: the bounded fallback gives up.
    QStringList left;
    QStringList right;
    for (int i = 0; i < 4000; ++i) {
        left.append(QStringLiteral("a%1").arg(i % 2));
        right.append(QStringLiteral("b%1").arg(i % 2));
    }
    const TextDiff diff(left.join(u'\n'), right.join(u'\n'));
    ASSERT_EQ(diff.hunks.size(), 1u);
    EXPECT_EQ(diff.hunks[0], (DiffHunk{{0, 4000}, {0, 4000}}));
}

TEST(TextDiff, HugeInputsStayExact)
{
    const QString identical = QStringLiteral("stessa riga\n").repeated(1000000);
    EXPECT_TRUE(TextDiff(identical, identical).hunks.empty());

    const QString longLine = QString(5 * 1024 * 1024, u'x');
    const TextDiff diff(QStringLiteral("a\n") + longLine + QStringLiteral("\nb"),
                        QStringLiteral("a\n") + longLine + QStringLiteral("y\nb"));
    EXPECT_EQ(diff.hunks, (std::vector<DiffHunk>{{{1, 2}, {1, 2}}}));
}

TEST(LineMatcher, MatchesAreStrictlyIncreasing)
{
    const std::vector<int32_t> a{0, 1, 2, 1, 0, 3, 3};
    const std::vector<int32_t> b{3, 1, 0, 2, 1, 0};
    const std::vector<LineMatch> matches = matchLines(a, b, 4);
    ASSERT_FALSE(matches.empty());
    for (size_t i = 0; i < matches.size(); ++i) {
        EXPECT_EQ(a[size_t(matches[i].left)], b[size_t(matches[i].right)]);
        if (i > 0) {
            EXPECT_LT(matches[i - 1].left, matches[i].left);
            EXPECT_LT(matches[i - 1].right, matches[i].right);
        }
    }
}

} // namespace

} // namespace mirtex
