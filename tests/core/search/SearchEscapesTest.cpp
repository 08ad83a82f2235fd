#include "core/search/SearchEscapes.h"

#include "support/QStringPrinter.h"

#include <QString>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct EscapeCase
{
    QString typed;
    QString expected;
};

TEST(SearchEscapes, ExtendedEscapesReadAsTheTableSays)
{
    const QString nul(QChar(u'\0'));
    const std::vector<EscapeCase> cases = {
        {uR"(a\nb\tc\x41è\\)"_s, u"a\nb\tcAè\\"_s},
        {uR"(\r\n)"_s, u"\n"_s},
        {uR"(\r\r\n)"_s, u"\n\n"_s},
        {uR"(\q\x4)"_s, uR"(\q\x4)"_s}, // unknown escape, too few digits
        {uR"(\xZZ1)"_s, uR"(\xZZ1)"_s}, // not hexadecimal: digits read as text
        {uR"(\x+4)"_s, u"\u0004"_s},    // the unsigned parse takes a leading "+"
        {uR"(\u00e8!)"_s, u"è!"_s},
        {uR"(\uD800)"_s, uR"(\uD800)"_s}, // a surrogate is no scalar value
        {uR"(\0x)"_s, nul + u"x"_s},
        {uR"(end\)"_s, uR"(end\)"_s},      // a final backslash stays
        {u"\\\u0301n"_s, u"\\\u0301n"_s},  // backslash joined to a mark: one character
        {uR"(\x4\u0041)"_s, uR"(\x4A)"_s}, // an invalid escape does not swallow the next
        {u"plain"_s, u"plain"_s},
    };
    for (const EscapeCase &c : cases)
        EXPECT_EQ(mirtex::unescapeExtended(c.typed), c.expected) << c.typed.toStdString();
}

TEST(SearchEscapes, RegexReplacementsBecomeIcuTemplates)
{
    const std::vector<EscapeCase> cases = {
        {uR"(\1-$2\n\\)"_s, u"$1-$2\n\\\\"_s},
        {uR"(\0)"_s, u"$0"_s},
        {uR"(\r\n\t)"_s, u"\n\t"_s},
        {uR"(\$5)"_s, uR"(\$5)"_s},
        {uR"(\a\.)"_s, u"a."_s}, // the backslash of an unknown escape is dropped
        {uR"(x\)"_s, uR"(x\)"_s},
    };
    for (const EscapeCase &c : cases)
        EXPECT_EQ(mirtex::regexTemplate(c.typed), c.expected) << c.typed.toStdString();
}

} // namespace
