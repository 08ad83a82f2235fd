#include "core/editor/LineIndex.h"

#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

#include <random>

using mirtex::LineIndex;
using mirtex::TextRange;

namespace {

LineIndex indexOf(QStringView text)
{
    LineIndex index;
    index.rebuild(text);
    return index;
}

} // namespace

TEST(LineIndex, VectorScanAgreesWithPlainScan)
{
    // Lengths around the 16-unit step and the 65,536-unit chunk, views not aligned to 16 bytes,
    // LF densities from none to nearly every unit, and units sharing LF's low byte.
    std::mt19937 random(7);
    for (const qsizetype length : {0, 1, 15, 16, 17, 33, 65535, 65536, 65537, 200003}) {
        for (const int percent : {0, 3, 50, 97}) {
            QString text(length + 3, u'x');
            for (QChar &unit : text) {
                if (int(random() % 100) < percent)
                    unit = u'\n';
                else if (random() % 7 == 0)
                    unit = QChar(char16_t(0x0A00 + random() % 3));
            }
            const QStringView view = QStringView(text).sliced(3, length);
            std::vector<qint64> expected{0};
            for (qsizetype i = 0; i < length; ++i) {
                if (view[i] == u'\n')
                    expected.push_back(i + 1);
            }
            EXPECT_EQ(indexOf(view).starts(), expected) << length << " " << percent;
        }
    }
}

TEST(LineIndex, LinesAndRanges)
{
    EXPECT_EQ(indexOf(u"a\n").starts(), (std::vector<qint64>{0, 2}));
    EXPECT_EQ(indexOf(u"a\nb").line(2), 1);
    EXPECT_EQ(indexOf(u"a\nb").range(0, 3), (TextRange{0, 1}));
    EXPECT_EQ(indexOf(u"").range(0, 0), (TextRange{0, 0}));
    EXPECT_EQ(LineIndex().line(42), 0);

    const QString text = QStringLiteral("ab\ncd\n\nef");
    const LineIndex index = indexOf(text);
    // offset -> line: the LF belongs to its line; past the end is the last line.
    for (const auto &[offset, line] : std::vector<std::pair<qint64, qsizetype>>{
             {-5, 0}, {2, 0}, {3, 1}, {6, 2}, {7, 3}, {9, 3}, {100, 3}})
        EXPECT_EQ(index.line(offset), line) << offset;
    // line -> content range; line numbers are clamped to the table.
    for (const auto &[line, range] : std::vector<std::pair<qsizetype, TextRange>>{
             {0, {0, 2}}, {1, {3, 2}}, {2, {6, 0}}, {3, {7, 2}}, {-1, {0, 2}}, {9, {7, 2}}})
        EXPECT_EQ(index.range(line, text.size()), range) << line;
    // A stale table asked about a shorter text never gives a negative length.
    EXPECT_EQ(index.range(3, 5), (TextRange{7, 0}));
}

TEST(LineIndex, RebuildsOnlyWhenInvalid)
{
    LineIndex index;
    index.rebuild(u"a\nb");
    EXPECT_TRUE(index.valid());
    index.rebuild(u"a\nb\nc\nd");
    EXPECT_EQ(index.lineCount(), 2);
    index.invalidate();
    EXPECT_FALSE(index.valid());
    index.rebuild(u"a\nb\nc\nd");
    EXPECT_EQ(index.lineCount(), 4);
}
