#include "core/search/Utf8Search.h"

#include "core/search/RegexShape.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

const QString kText
    = QStringLiteral("2024-03-01T10:00:00 INFO avvio caffè Caffè CAFFÈ\n"
                     "2024-03-02T11:00:00 ERROR timeout dopo 30s (timeout_ms=30000) Straße\n"
                     "\n"
                     "😀 ERROR😀error ΣΑΣ 2023-12-31T23:59:59 \u0345timeout x\n"
                     "riga senza data ma con - e T\n"
                     "2024-03-04T00:00:00 fine");

struct Case
{
    const char16_t *query;
    SearchMode mode;
    bool matchCase;
    bool wholeWord;
    const char16_t *replacement;
    Utf8Search::Route route;
};

const Case kCases[] = {
    {u"ERROR", SearchMode::normal, true, false, u"NOTE", Utf8Search::Route::literal},
    {u"error", SearchMode::normal, false, true, u"x", Utf8Search::Route::literal},
    {u"timeout", SearchMode::normal, false, true, u"T/O", Utf8Search::Route::literal},
    {u"caffè", SearchMode::regex, false, false, u"<$0>", Utf8Search::Route::literal},
    {u"(\\d{4})-(\\d{2})-(\\d{2})T",
     SearchMode::regex,
     true,
     false,
     u"\\3/\\2/\\1 ",
     Utf8Search::Route::lines},
    {u"(\\d{4})-(\\d{2})-(\\d{2})t",
     SearchMode::regex,
     false,
     false,
     u"[$1]",
     Utf8Search::Route::lines},
    {u"^\\d+-\\d+", SearchMode::regex, true, false, u"", Utf8Search::Route::lines},
    {u"\\w+\\.?$", SearchMode::regex, true, false, u"!", Utf8Search::Route::wholeText},
    {u"e\\s+T", SearchMode::regex, true, false, u"", Utf8Search::Route::wholeText},
    {u"(?<=ERROR).", SearchMode::regex, true, false, u"_", Utf8Search::Route::wholeText},
    {u"ERROR.*timeout", SearchMode::regex, true, false, u"E", Utf8Search::Route::lines},
    {u"^", SearchMode::regex, true, false, u"> ", Utf8Search::Route::wholeText},
};

} // namespace

// Every route gives what the UTF-16 commands give: the count, and a span and new text that are
// the same once converted.
TEST(Utf8Search, MatchesTheUtf16CommandsOnEveryRoute)
{
    const std::string utf8 = kText.toStdString();
    for (const Case &c : kCases) {
        SearchOptions options;
        options.query = QString::fromUtf16(c.query);
        options.replacement = QString::fromUtf16(c.replacement);
        options.mode = c.mode;
        options.matchCase = c.matchCase;
        options.wholeWord = c.wholeWord;
        const auto regex = makeRegex(options);
        ASSERT_TRUE(regex.has_value()) << options.query.toStdString();
        EXPECT_EQ(Utf8Search(*regex, utf8).route(), c.route) << options.query.toStdString();

        const CountResult expectedCount = countMatches(kText, {}, false, options);
        const CountResult count = countMatchesUtf8(utf8, options);
        EXPECT_EQ(count.count, expectedCount.count) << options.query.toStdString();
        EXPECT_EQ(count.status, expectedCount.status);

        const ReplaceAllResult expected = replaceAll(kText, {}, false, false, options);
        const Utf8ReplaceAllResult replaced = replaceAllUtf8(utf8, false, options);
        EXPECT_EQ(replaced.count, expected.count) << options.query.toStdString();
        EXPECT_EQ(replaced.status, expected.status);
        if (expected.batch.isEmpty()) {
            EXPECT_EQ(replaced.count, 0);
            continue;
        }
        const TextReplacement &edit = expected.batch.replacements.front();
        EXPECT_EQ(replaced.span, edit.range) << options.query.toStdString();
        EXPECT_EQ(
            QString::fromUtf8(replaced.replacement.data(), qsizetype(replaced.replacement.size())),
            edit.text);
        EXPECT_EQ(replaced.replacementUtf16Length, edit.text.size());
        EXPECT_EQ(utf8.substr(0, size_t(replaced.byteStart)),
                  kText.first(edit.range.location).toStdString());
    }
}

// Counting lines jumps to the next line start after a match and still sees each line once.
TEST(Utf8Search, SkippingToTheNextLineCountsMatchingLines)
{
    const std::string utf8 = kText.toStdString();
    for (const char16_t *query : {u"ERROR", u"\\d{4}-", u"[ÈE]\\b"}) {
        SearchOptions options;
        options.query = QString::fromUtf16(query);
        options.mode = SearchMode::regex;
        options.matchCase = true;
        const auto regex = makeRegex(options);
        ASSERT_TRUE(regex.has_value());
        Utf8Search search(*regex, utf8);
        int lines = 0;
        while (const auto match = search.next().value()) {
            ++lines;
            const size_t end = utf8.find('\n', size_t(match->byteStart));
            search.skipTo(end == std::string::npos ? qsizetype(utf8.size()) : qsizetype(end) + 1);
        }
        int expected = 0;
        for (const QString &line : kText.split(u'\n'))
            expected += countMatches(line, {}, false, options).count > 0;
        EXPECT_EQ(lines, expected) << options.query.toStdString();
    }
}

TEST(RegexShape, ProvesOnlyWhatItUnderstands)
{
    const struct
    {
        const char16_t *query;
        bool matchCase;
        bool dotAll;
        bool withinOneLine;
        const char16_t *required;
        qsizetype maxLength;
    } cases[] = {
        {u"(\\d{4})-(\\d{2})-(\\d{2})T", true, false, true, u"-", 11},
        {u"(\\d{4})-(\\d{2})-(\\d{2})T", false, false, true, u"-", 17},
        {u"ERROR.*timeout", true, false, true, u"timeout", -1},
        {u"ERROR.*timeout", true, true, false, u"", -1},
        {u"abc?", true, false, true, u"ab", 3},
        {u"a|bcd", true, false, true, u"", 3},
        {u"(?:xyz)+q", true, false, true, u"q", -1},
        {u"(?:ab|c{2,5}d)?e\\b", true, false, true, u"e", 7},
        {u"[a-z]+@[\\w.-]+\\.it", true, false, true, u".it", -1},
        {u"[^x]y", true, false, false, u"", -1},
        {u"a\\sb", true, false, false, u"", -1},
        {u"(?<=a)b", true, false, false, u"", -1},
        {u"(a)\\1", true, false, false, u"", -1},
        {u"a\\z", true, false, false, u"", -1},
        {u"[\\x00-\\x7f]", true, false, false, u"", -1},
        {u"\\p{L}", true, false, false, u"", -1},
    };

    for (const auto &c : cases) {
        SearchOptions options;
        options.query = QString::fromUtf16(c.query);
        options.mode = SearchMode::regex;
        options.matchCase = c.matchCase;
        options.dotMatchesNewline = c.dotAll;
        const RegexShape shape = regexShapeOf(options);
        EXPECT_EQ(shape.withinOneLine, c.withinOneLine) << options.query.toStdString();
        EXPECT_EQ(shape.requiredText, QString::fromUtf16(c.required))
            << options.query.toStdString();
    }
}
