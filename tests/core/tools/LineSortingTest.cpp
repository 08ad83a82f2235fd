#include "core/tools/LineSorting.h"

#include <QStringList>

#include <unicode/ucol.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace mirtex {
namespace {

// Enough lines to take the sorts' two-thread path, built from words that share long prefixes,
// differ only in case or accents, and hold units on both sides of the surrogates (U+E000–U+FFFF
// and characters beyond U+FFFF).
QStringList manyLines()
{
    const QStringList words = {QStringLiteral("a"),
                               QStringLiteral("A"),
                               QStringLiteral("abcdefgh"),
                               QStringLiteral("abcdefghi"),
                               QStringLiteral("Abcdefgh"),
                               QStringLiteral("é"),
                               QStringLiteral("É"),
                               QStringLiteral("e"),
                               QString::fromUtf8("\xF0\x9F\x98\x80"), // U+1F600
                               QString(QChar(0xFF5E)),
                               QString(QChar(0xE000)),
                               QStringLiteral(" "),
                               QString()};
    std::mt19937 random(7);
    QStringList lines;
    for (int i = 0; i < 40000; ++i) {
        QString line;
        const int count = int(random() % 5);
        for (int w = 0; w < count; ++w)
            line += words[qsizetype(random() % std::uint32_t(words.size()))];
        lines.append(QString(line.constData(), line.size())); // its own buffer
    }
    return lines;
}

std::vector<QStringView> viewsOf(const QStringList &lines)
{
    return std::vector<QStringView>(lines.cbegin(), lines.cend());
}

TEST(LineSorting, LargeInputsSortAsAPlainComparisonWould)
{
    const QStringList lines = manyLines();
    const std::vector<QStringView> views = viewsOf(lines);

    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        std::vector<std::u16string> expected;
        for (const QStringView line : views)
            expected.emplace_back(line.utf16(), std::size_t(line.size()));
        std::sort(expected.begin(), expected.end());
        if (descending)
            std::reverse(expected.begin(), expected.end());
        std::vector<std::u16string> actual;
        for (const QStringView line : sortLiterally(views, descending))
            actual.emplace_back(line.utf16(), std::size_t(line.size()));
        EXPECT_EQ(actual, expected);
    }

    // The UTF-8 sort gives the same order as the UTF-16 one.
    std::vector<std::string> utf8;
    for (const QString &line : lines)
        utf8.push_back(line.toStdString());
    const std::vector<std::string_view> utf8Views(utf8.begin(), utf8.end());
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        std::vector<std::string> expected;
        for (const QStringView line : sortLiterally(views, descending))
            expected.push_back(line.toString().toStdString());
        const std::vector<std::string_view> sorted = sortUtf8Literally(utf8Views, descending);
        EXPECT_EQ(std::vector<std::string>(sorted.begin(), sorted.end()), expected);
    }

    // Case ignored, the UTF-8 sort gives the UTF-16 one's order too (ties kept in input order).
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        const QLocale italian(QStringLiteral("it_IT"));
        std::vector<std::string> expected;
        for (const QStringView line : sortIgnoringCase(views, italian, descending))
            expected.push_back(line.toString().toStdString());
        std::vector<std::string> actual;
        for (const std::string_view line : sortUtf8IgnoringCase(utf8Views, italian, descending))
            actual.emplace_back(line);
        EXPECT_EQ(actual, expected);
    }

    UErrorCode status = U_ZERO_ERROR;
    UCollator *collator = ucol_open("it_IT", &status);
    ASSERT_TRUE(U_SUCCESS(status));
    ucol_setStrength(collator, UCOL_SECONDARY);
    auto collate = [collator](QStringView a, QStringView b) {
        return ucol_strcoll(collator,
                            reinterpret_cast<const UChar *>(a.utf16()),
                            int32_t(a.size()),
                            reinterpret_cast<const UChar *>(b.utf16()),
                            int32_t(b.size()));
    };
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        std::vector<QStringView> expected = views;
        std::stable_sort(expected.begin(), expected.end(), [&](QStringView a, QStringView b) {
            return collate(a, b) == (descending ? UCOL_GREATER : UCOL_LESS);
        });
        const std::vector<QStringView> actual
            = sortIgnoringCase(views, QLocale(QLocale::Italian, QLocale::Italy), descending);
        ASSERT_EQ(actual.size(), expected.size());
        // The same line objects, not only equal texts: ties keep their input order.
        for (std::size_t i = 0; i < actual.size(); ++i)
            ASSERT_EQ(actual[i].utf16(), expected[i].utf16()) << "at " << i;
    }
    ucol_close(collator);
}

} // namespace
} // namespace mirtex
