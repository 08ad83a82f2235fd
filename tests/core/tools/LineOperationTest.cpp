#include "core/tools/LineOperation.h"

#include "core/tools/LineSorting.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

QStringList apply(const QStringList &lines, LineOperation operation)
{
    std::vector<QStringView> views(lines.begin(), lines.end());
    LineOperationOptions options;
    options.tabWidth = 4;
    options.locale = QLocale(QLocale::Italian, QLocale::Italy);
    const LineList result = applyLineOperation(views, operation, options);
    QStringList out;
    for (const QStringView line : result.lines)
        out.append(line.toString());
    return out;
}

const QString kThumbsUp = u"👍🏽"_qs;  // a skin-tone modifier: one character, four units
const QString kDecomposed = u"e\u0301"_qs; // "é" as "e" and a combining accent

struct OperationCase
{
    LineOperation operation;
    QStringList lines;
    QStringList expected;
};

} // namespace

TEST(LineOperation, GivesTheDocumentedResults)
{
    using enum LineOperation;
    const OperationCase cases[] = {
        {sortAscending, {u"b"_qs, u"a"_qs, u"B"_qs}, {u"B"_qs, u"a"_qs, u"b"_qs}},
        {sortAscending, {u"\u00e9"_qs, kDecomposed, u"f"_qs}, {kDecomposed, u"f"_qs, u"\u00e9"_qs}},
        // Units, not code points: U+FF01 sorts after the surrogates of an emoji.
        {sortAscending,
         {u"\uff01"_qs, u"😀"_qs, u"abcdx"_qs, u"abcd"_qs},
         {u"abcd"_qs, u"abcdx"_qs, u"😀"_qs, u"\uff01"_qs}},
        {sortDescending, {u"a"_qs, u"c"_qs, u"b"_qs}, {u"c"_qs, u"b"_qs, u"a"_qs}},
        {sortAscendingIgnoringCase, {u"b"_qs, u"A"_qs, u"c"_qs}, {u"A"_qs, u"b"_qs, u"c"_qs}},
        {sortAscendingIgnoringCase,
         {u"b"_qs, u"a"_qs, u"A"_qs, u"\u00e8"_qs, u"f"_qs},
         {u"a"_qs, u"A"_qs, u"b"_qs, u"\u00e8"_qs, u"f"_qs}},
        {sortDescendingIgnoringCase, {u"a"_qs, u"B"_qs, u"A"_qs}, {u"B"_qs, u"a"_qs, u"A"_qs}},
        {sortNumericAscending,
         {u"10"_qs, u"9"_qs, u"-1"_qs, u"1,5"_qs, u"x"_qs},
         {u"-1"_qs, u"1,5"_qs, u"9"_qs, u"10"_qs, u"x"_qs}},
        {sortNumericDescending, {u"1"_qs, u"3"_qs, u"2"_qs}, {u"3"_qs, u"2"_qs, u"1"_qs}},
        {sortNumericDescending,
         {u"y"_qs, u" 2 "_qs, u"12 mele"_qs, u"x"_qs, u"2.0"_qs},
         {u"12 mele"_qs, u" 2 "_qs, u"2.0"_qs, u"y"_qs, u"x"_qs}},
        {sortByLength,
         {u"ccc"_qs, u"a"_qs, u"bb"_qs, u"d"_qs},
         {u"a"_qs, u"d"_qs, u"bb"_qs, u"ccc"_qs}},
        {sortByLength,
         {u"abc"_qs, kThumbsUp + kThumbsUp, kDecomposed},
         {kDecomposed, kThumbsUp + kThumbsUp, u"abc"_qs}},
        {reverse, {u"a"_qs, u"b"_qs, u"c"_qs}, {u"c"_qs, u"b"_qs, u"a"_qs}},
        {removeDuplicates, {u"a"_qs, u"b"_qs, u"a"_qs}, {u"a"_qs, u"b"_qs}},
        {removeDuplicates,
         {u"\u00e9"_qs, kDecomposed, u"E"_qs, u"e"_qs},
         {u"\u00e9"_qs, u"E"_qs, u"e"_qs}},
        {removeConsecutiveDuplicates,
         {u"a"_qs, u"a"_qs, u"b"_qs, u"a"_qs},
         {u"a"_qs, u"b"_qs, u"a"_qs}},
        {removeEmpty, {u"a"_qs, u""_qs, u"  "_qs}, {u"a"_qs, u"  "_qs}},
        {removeBlank, {u"a"_qs, u"  "_qs, u""_qs, u"\u3000\t"_qs, u"b"_qs}, {u"a"_qs, u"b"_qs}},
        {trimTrailing,
         {u"a  \t"_qs, u"  b"_qs, u"c\u00a0"_qs},
         {u"a"_qs, u"  b"_qs, u"c\u00a0"_qs}},
        {trimLeading, {u" \ta "_qs}, {u"a "_qs}},
        {trimBoth, {u" \ta \t"_qs}, {u"a"_qs}},
        {tabsToSpaces, {u"a\tb"_qs, u"\tc"_qs}, {u"a   b"_qs, u"    c"_qs}},
        {tabsToSpaces, {kThumbsUp + u"\tx"_qs}, {kThumbsUp + u"   x"_qs}},
        {leadingSpacesToTabs,
         {u"        x"_qs, u"     y"_qs, u" \t z"_qs},
         {u"\t\tx"_qs, u"\t y"_qs, u"\t z"_qs}},
    };
    for (const OperationCase &c : cases) {
        SCOPED_TRACE(toString(c.operation).toStdString() + ": " + c.lines.join(u'|').toStdString());
        EXPECT_EQ(apply(c.lines, c.operation), c.expected);
    }
}

TEST(LineOperation, EveryOperationTakesAnyLines)
{
    const QStringList inputs[] = {
        {u""_qs},
        {u"a"_qs},
        {u"b"_qs, u"a"_qs, u"b"_qs, u""_qs},
        {u"10"_qs, u"9"_qs, u"-1"_qs, u"1,5"_qs, u"x"_qs, u" 2 "_qs},
        {u"😀"_qs, u"\u00e9"_qs, u"E"_qs, u"e"_qs, kThumbsUp},
    };
    for (int i = 0; i < kLineOperationCount; ++i) {
        const auto operation = LineOperation(i);
        EXPECT_EQ(lineOperationFromString(toString(operation)), operation);
        EXPECT_FALSE(label(operation).isEmpty());
        for (const QStringList &lines : inputs) {
            const QStringList result = apply(lines, operation);
            EXPECT_LE(result.size(), lines.size()) << toString(operation).toStdString();
        }
    }
    // A shuffle is a permutation.
    QStringList many;
    for (int i = 0; i < 500; ++i)
        many.append(QString::number(i));
    QStringList shuffled = apply(many, LineOperation::shuffle);
    EXPECT_NE(shuffled, many);
    shuffled.sort();
    QStringList sorted = many;
    sorted.sort();
    EXPECT_EQ(shuffled, sorted);
    EXPECT_FALSE(lineOperationFromString(u"sortSideways"));
}

TEST(LineOperation, ReadsTheNumberALineStartsWith)
{
    const struct
    {
        QString line;
        std::optional<double> value;
    } cases[] = {
        {u"1,5"_qs, 1.5},
        {u" -2.5e2x"_qs, -250.0},
        {u"+.5"_qs, 0.5},
        {u"7."_qs, 7.0},
        {u"3e"_qs, 3.0},
        {u"1,234.5"_qs, 1.234},
        {u"x1"_qs, {}},
        {u"-"_qs, {}},
        {u"."_qs, {}},
        {u""_qs, {}},
        {u"1e999"_qs, HUGE_VAL},
        {u"\u00a012"_qs, 12.0},
    };

    for (const auto &c : cases)
        EXPECT_EQ(leadingNumber(c.line), c.value) << c.line.toStdString();
}
