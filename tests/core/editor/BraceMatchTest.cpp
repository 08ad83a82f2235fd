#include "core/editor/BraceMatch.h"

#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

using mirtex::matchBraces;
using mirtex::TextRange;

TEST(BraceMatch, FindsThePartner)
{
    // "|" marks the caret; -1 means none. The bracket before the caret wins over the one after
    // it, and only brackets of the same kind nest.
    // clang-format off
    const std::vector<std::tuple<const char16_t *, qsizetype, qsizetype>> cases = {
        {u"(|a)", 0, 2},   {u"|(a)", 0, 2},    {u"(a)|", 2, 0},    {u"((a)|)", 3, 1},
        {u"(|(a))", 0, 4}, {u"{[(|)]}", 2, 3}, {u"{[|()]}", 1, 4}, {u"([)|]", 2, 0},
        {u"a|b", -1, -1},  {u"|", -1, -1},     {u"x(|", 1, -1},    {u"}|{", 0, -1},
        {u"f(a[1], {b})|;", 11, 1},
    };
    // clang-format on
    for (const auto &[markup, brace, partner] : cases) {
        QString text = QString::fromUtf16(markup);
        const qsizetype caret = text.indexOf(u'|');
        text.remove(caret, 1);
        const auto match = matchBraces(text, caret);
        ASSERT_EQ(match.has_value(), brace >= 0) << text.toStdString();
        if (!match)
            continue;
        EXPECT_EQ(match->brace, (TextRange{brace, 1})) << text.toStdString();
        EXPECT_EQ(match->partner.value_or(TextRange{-1, 1}), (TextRange{partner, 1}))
            << text.toStdString();
    }
}

TEST(BraceMatch, ScanIsBounded)
{
    const QString text = u'(' + QString(10, u'x') + u')';
    EXPECT_FALSE(matchBraces(text, 0, 10)->partner);
    EXPECT_EQ(matchBraces(text, 0, 11)->partner, (TextRange{11, 1}));
    EXPECT_FALSE(matchBraces(text, 12, 10)->partner);
    EXPECT_EQ(matchBraces(text, 12, 11)->partner, (TextRange{0, 1}));
    EXPECT_FALSE(matchBraces(text, 13) || matchBraces(text, -1)); // caret outside the text
}
