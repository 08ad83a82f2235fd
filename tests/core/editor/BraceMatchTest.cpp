#include "core/editor/BraceMatch.h"

#include "support/TextRangePrinter.h"

#include <QString>

#include <gtest/gtest.h>

using mirtex::BraceMatch;
using mirtex::matchBraces;
using mirtex::TextRange;

TEST(BraceMatch, FindsThePartner)
{
    struct Case
    {
        const char16_t *markup; // "|" is the caret
        std::optional<qsizetype> brace;
        std::optional<qsizetype> partner;
    };

    const std::vector<Case> cases = {
        {u"(|a)", 0, 2},
        {u"|(a)", 0, 2},
        {u"(a)|", 2, 0},
        {u"((a)|)", 3, 1},
        {u"(|(a))", 0, 4},
        {u"{[(|)]}", 2, 3}, // the bracket before the caret wins
        {u"{[|()]}", 1, 4},
        {u"([)|]", 2, 0}, // only brackets of the same kind nest
        {u"a|b", std::nullopt, std::nullopt},
        {u"|", std::nullopt, std::nullopt},
        {u"x(|", 1, std::nullopt},
        {u"}|{", 0, std::nullopt},
        {u"f(a[1], {b})|;", 11, 1},
    };
    for (const Case &c : cases) {
        QString text = QString::fromUtf16(c.markup);
        const qsizetype caret = text.indexOf(u'|');
        text.remove(caret, 1);
        const auto match = matchBraces(text, caret);
        const auto message = QString::fromUtf16(c.markup).toStdString();
        ASSERT_EQ(match.has_value(), c.brace.has_value()) << message;
        if (!match)
            continue;
        EXPECT_EQ(match->brace, (TextRange{*c.brace, 1})) << message;
        const auto partner
            = c.partner ? std::optional<TextRange>(TextRange{*c.partner, 1}) : std::nullopt;
        EXPECT_EQ(match->partner, partner) << message;
    }
}

TEST(BraceMatch, ScanIsBounded)
{
    const QString text = u'(' + QString(10, u'x') + u')';
    EXPECT_FALSE(matchBraces(text, 0, 10)->partner);
    EXPECT_EQ(matchBraces(text, 0, 11)->partner, (TextRange{11, 1}));
    EXPECT_FALSE(matchBraces(text, 12, 10)->partner);
    EXPECT_EQ(matchBraces(text, 12, 11)->partner, (TextRange{0, 1}));
    EXPECT_FALSE(matchBraces(text, 13).has_value()); // caret outside the text
    EXPECT_FALSE(matchBraces(text, -1).has_value());
}
