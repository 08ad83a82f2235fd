#include "core/editor/LineIndex.h"

#include <QString>

#include <gtest/gtest.h>

#include <random>

using mirtex::LineIndex;
using mirtex::TextRange;
using namespace Qt::StringLiterals;

namespace {

std::vector<qint64> naiveStarts(QStringView text)
{
    std::vector<qint64> starts{0};
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n')
            starts.push_back(i + 1);
    }
    return starts;
}

LineIndex indexOf(QStringView text)
{
    LineIndex index;
    index.rebuild(text);
    return index;
}

} // namespace

TEST(LineIndex, StartsOfSmallTexts)
{
    const std::vector<std::pair<QString, std::vector<qint64>>> cases = {
        {u""_s, {0}},
        {u"a\n"_s, {0, 2}},
        {u"a\nb"_s, {0, 2}},
        {u"\n\n"_s, {0, 1, 2}},
        {u"abc"_s, {0}},
    };
    for (const auto &[text, starts] : cases)
        EXPECT_EQ(indexOf(text).starts(), starts) << text.toStdString();
}

TEST(LineIndex, VectorScanAgreesWithPlainScan)
{
    // Lengths around the 16-unit step and the 65,536-unit chunk, views not aligned to 16 bytes,
    // and LF densities from none to nearly every unit.
    std::mt19937 random(7);
    const std::vector<qsizetype> lengths = {1, 15, 16, 17, 31, 33, 65535, 65536, 65537, 200003};
    for (const qsizetype length : lengths) {
        for (const int percent : {0, 3, 50, 97}) {
            QString text(length + 3, u'x');
            for (QChar &unit : text) {
                if (int(random() % 100) < percent)
                    unit = u'\n';
                else if (random() % 7 == 0)
                    unit = QChar(char16_t(0x0A00 + random() % 3)); // same low byte as LF
            }
            const QStringView view = QStringView(text).sliced(3, length);
            EXPECT_EQ(indexOf(view).starts(), naiveStarts(view)) << length << " " << percent;
        }
    }
}

TEST(LineIndex, LineOfOffset)
{
    const LineIndex index = indexOf(u"ab\ncd\n\nef");
    const std::vector<std::pair<qint64, qsizetype>> cases
        = {{-5, 0}, {0, 0}, {2, 0}, {3, 1}, {5, 1}, {6, 2}, {7, 3}, {9, 3}, {100, 3}};
    for (const auto &[offset, line] : cases)
        EXPECT_EQ(index.line(offset), line) << offset;
    EXPECT_EQ(indexOf(u"a\nb").line(2), 1);
    EXPECT_EQ(LineIndex().line(42), 0);
}

TEST(LineIndex, RangeOfLine)
{
    const QString text = u"ab\ncd\n\nef"_s;
    const LineIndex index = indexOf(text);
    const std::vector<std::pair<qsizetype, TextRange>> cases
        = {{0, {0, 2}}, {1, {3, 2}}, {2, {6, 0}}, {3, {7, 2}}, {-1, {0, 2}}, {9, {7, 2}}};
    for (const auto &[line, range] : cases)
        EXPECT_EQ(index.range(line, text.size()), range) << line;
    EXPECT_EQ(indexOf(u"a\nb").range(0, 3), (TextRange{0, 1}));
    EXPECT_EQ(indexOf(u"a\n").range(1, 2), (TextRange{2, 0}));
    EXPECT_EQ(indexOf(u"").range(0, 0), (TextRange{0, 0}));
    // A stale table asked about a shorter text never gives a negative length.
    EXPECT_EQ(index.range(3, 5), (TextRange{7, 0}));
}

TEST(LineIndex, RebuildsOnlyWhenInvalid)
{
    LineIndex index;
    EXPECT_FALSE(index.valid());
    index.rebuild(u"a\nb");
    EXPECT_TRUE(index.valid());
    index.rebuild(u"a\nb\nc\nd");
    EXPECT_EQ(index.lineCount(), 2);
    index.invalidate();
    index.rebuild(u"a\nb\nc\nd");
    EXPECT_EQ(index.lineCount(), 4);
}
