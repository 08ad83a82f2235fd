#include "core/tools/CaseConversion.h"

#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;

TEST(CaseConversion, ConvertsAsDocumented)
{
    using enum CaseConversion;

    const struct
    {
        CaseConversion conversion;
        QString text;
        QString expected;
    } cases[] = {
        {upper, u"straße è 😀"_qs, u"STRASSE È 😀"_qs},
        {upper, u"istanbul"_qs, u"ISTANBUL"_qs},
        {lower, u"ÀBC Ω"_qs, u"àbc ω"_qs},
        {title, u"ciao MONDO, l'altro"_qs, u"Ciao Mondo, L'altro"_qs},
        {sentence, u"CIAO. come stai?"_qs, u"Ciao. Come stai?"_qs},
        {sentence, u"3 mele! é\nx.y"_qs, u"3 Mele! É\nX.Y"_qs},
        {invert, u"aBc"_qs, u"AbC"_qs},
        {invert, u"ß1Ä😀Ω"_qs, u"SS1ä😀ω"_qs},
        {upper, u""_qs, u""_qs},
    };

    for (const auto &c : cases)
        EXPECT_EQ(convertCase(c.text, c.conversion), c.expected)
            << toString(c.conversion).toStdString();
}

TEST(CaseConversion, RandomChangesOnlyCase)
{
    const QString text = u"Lorem ipsum dolor sit amet, è 😀 cittadella"_qs.repeated(8);
    const QString result = convertCase(text, CaseConversion::random);
    EXPECT_EQ(result.toLower(), text.toLower());
    EXPECT_NE(result, result.toLower());
    EXPECT_NE(result, result.toUpper());
    for (int i = 0; i < kCaseConversionCount; ++i)
        EXPECT_EQ(caseConversionFromString(toString(CaseConversion(i))), CaseConversion(i));
}
