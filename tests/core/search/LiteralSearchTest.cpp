#include "core/search/LiteralSearch.h"

#include "core/search/SearchRegex.h"
#include "core/search/Utf8Units.h"

#include <QList>

#include <gtest/gtest.h>

using namespace mirtex;
using namespace std::literals;

namespace {

QList<TextRange> enumerate(SearchMatcher &matcher)
{
    QList<TextRange> found;
    while (true) {
        const auto match = matcher.next();
        if (!match || !*match)
            return found;
        found.append(**match);
    }
}

QList<TextRange>
allMatches(const SearchRegex &regex, QStringView text, TextRange range, bool isText)
{
    SearchMatcher matcher(regex, text);
    matcher.setRange(range, isText);
    QList<TextRange> found;
    while (true) {
        const auto match = matcher.next();
        if (!match || !*match)
            return found;
        found.append(**match);
    }
}

// The same matches in UTF-16 units, found in the text's UTF-8.
QList<TextRange> utf8Matches(const LiteralSearch &search, const QString &text)
{
    const std::string utf8 = text.toStdString();
    Utf16Counter units(utf8);
    QList<TextRange> found;
    qsizetype from = 0;
    while (const auto match = search.find(utf8, from, qsizetype(utf8.size()))) {
        const qsizetype start = units.offsetOf(match->start);
        found.append({start, units.offsetOf(match->end) - start});
        from = match->end;
    }
    return found;
}

struct Case
{
    std::u16string_view text;
    const char16_t *query;
    bool matchCase;
    bool wholeWord;
    SearchMode mode;
    int expected; // matches the regex engine finds
};

// Folding that changes length, simple against full folding, word characters beyond ASCII and
// the BMP, and the guards at the text's ends.
const Case kCases[] = {
    {u"caffè Caffè CAFFÈ caffe", u"CAFFÈ", false, false, SearchMode::normal, 3},
    {u"caffè Caffè", u"CAFFÈ", true, false, SearchMode::normal, 0},
    {u"Straße STRASSE strasse straße", u"straße", false, false, SearchMode::normal, 4},
    {u"Straße STRASSE", u"ss", false, false, SearchMode::normal, 2},
    {u"ß ss SS ẞ", u"ß", false, false, SearchMode::normal, 4},
    {u"ß s ſ S", u"s", false, false, SearchMode::normal, 3},
    {u"ﬁne fine FINE", u"fi", false, false, SearchMode::normal, 3},
    {u"ﬁne fine", u"f", false, false, SearchMode::normal, 1},
    {u"İstanbul istanbul i̇stanbul", u"İ", false, false, SearchMode::normal, 2},
    {u"Kelvin \u212A k", u"k", false, false, SearchMode::normal, 3},
    {u"cat concatenate cat.", u"cat", false, true, SearchMode::normal, 2},
    {u"cat_x xcat 9cat cat9 écat catè", u"cat", false, true, SearchMode::normal, 0},
    {u"\U0001D400cat cat\U0001D400 \U0001F600cat\U0001F600",
     u"cat",
     false,
     true,
     SearchMode::normal,
     1},
    {u"\u0345cat", u"cat", false, true, SearchMode::normal, -1},
    {u"\u0345cat", u"cat", true, true, SearchMode::normal, -1},
    {u"a\u0000b a\u0000b"sv, u"a\\0b", true, false, SearchMode::extended, 2},
    {u"x\ny\nx\ny", u"x\\ny", true, false, SearchMode::extended, 2},
    {u"aaaa", u"aa", true, false, SearchMode::regex, 2},
    {u"ERROR error Error", u"error", false, false, SearchMode::regex, 3},
    {u"a.b(c) axb(c)", u"a.b(c)", false, false, SearchMode::normal, 1},
    {u"\xD800x \xDC00x x", u"x", true, true, SearchMode::normal, 3},
    {u"ΣΑΣ σας ς", u"σ", false, false, SearchMode::normal, -1},
    {u"ǅ ǆ Ǆ", u"ǆ", false, false, SearchMode::normal, 3},
};

} // namespace

TEST(LiteralSearch, FindsWhatTheRegexEngineFinds)
{
    for (const Case &c : kCases) {
        SearchOptions options;
        options.query = QString::fromUtf16(c.query);
        options.matchCase = c.matchCase;
        options.wholeWord = c.wholeWord;
        options.mode = c.mode;
        const QString text = QString::fromUtf16(c.text.data(), qsizetype(c.text.size()));
        const auto regex = makeRegex(options);
        ASSERT_TRUE(regex.has_value());
        ASSERT_NE(regex->literal(), nullptr) << options.query.toStdString();
        const SearchRegex reference = regex->regexEngineOnly();
        const auto expected = allMatches(reference, text, {0, text.size()}, true);
        if (c.expected >= 0) {
            EXPECT_EQ(expected.size(), c.expected) << text.toStdString();
        }
        EXPECT_EQ(allMatches(*regex, text, {0, text.size()}, true), expected)
            << text.toStdString() << " / " << options.query.toStdString();
        // A range inside the text, seen with and without its surroundings.
        for (const bool isText : {true, false}) {
            const TextRange inner{1, std::max<qsizetype>(text.size() - 2, 0)};
            EXPECT_EQ(allMatches(*regex, text, inner, isText),
                      allMatches(reference, text, inner, isText))
                << text.toStdString() << (isText ? " (range as text)" : " (range)");
        }
        // A range seen inside a wider context that is not the whole text.
        if (text.size() >= 4) {
            const TextRange context{1, text.size() - 2};
            const TextRange inner{2, text.size() - 4};
            SearchMatcher fast(*regex, text);
            SearchMatcher slow(reference, text);
            fast.setRange(inner, context);
            slow.setRange(inner, context);
            EXPECT_EQ(enumerate(fast), enumerate(slow)) << text.toStdString() << " (context)";
        }
        if (!text.contains(QChar(0xD800)) && !text.contains(QChar(0xDC00))) {
            EXPECT_EQ(utf8Matches(*regex->literal(), text), expected) << text.toStdString();
        }
    }
}

TEST(LiteralSearch, LeavesPatternsAndSurrogateQueriesToTheRegexEngine)
{
    for (const auto &[query, mode] : {std::pair{u"a.c", SearchMode::regex},
                                      std::pair{u"(a)", SearchMode::regex},
                                      std::pair{u"\U0001F600", SearchMode::normal}}) {
        SearchOptions options;
        options.query = QString::fromUtf16(query);
        options.mode = mode;
        const auto regex = makeRegex(options);
        ASSERT_TRUE(regex.has_value());
        EXPECT_EQ(regex->literal(), nullptr) << options.query.toStdString();
    }
}

TEST(LiteralSearch, ExpandsTemplatesOfARegexLiteralAsTheRegexEngineDoes)
{
    SearchOptions options;
    options.query = QStringLiteral("Error");
    options.mode = SearchMode::regex;
    const QString text = QStringLiteral("ERROR error");
    const auto regex = makeRegex(options);
    ASSERT_TRUE(regex.has_value() && regex->literal());
    SearchMatcher matcher(*regex, text);
    matcher.setRange({0, text.size()}, true);
    ASSERT_TRUE(matcher.next().value());
    EXPECT_EQ(matcher.expand(u"<$0>").value(), QStringLiteral("<ERROR>"));
    ASSERT_TRUE(matcher.next().value());
    EXPECT_EQ(matcher.expand(u"<$0>").value(), QStringLiteral("<error>"));
    EXPECT_EQ(matcher.expand(u"$1").error().kind, SearchError::Kind::missingGroup);
}

TEST(Utf8Units, CountsUtf16UnitsOfEveryLength)
{
    // Long enough for the vector tallies to be summed several times.
    const QString text = QStringLiteral("ascii only, then è and € and 😀, ").repeated(200);
    const std::string utf8 = text.toStdString();
    for (size_t cut = 0; cut <= utf8.size(); cut += cut < 100 ? 1 : 97) {
        if (cut < utf8.size() && (uint8_t(utf8[cut]) & 0xC0) == 0x80)
            continue;
        const qsizetype units = utf16LengthOfUtf8(std::string_view(utf8).substr(0, cut));
        ASSERT_EQ(units, QString::fromStdString(utf8.substr(0, cut)).size()) << cut;
        ASSERT_EQ(utf8PositionOfUtf16(utf8, units), qsizetype(cut));
    }
}
