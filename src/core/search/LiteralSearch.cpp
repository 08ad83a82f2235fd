// The regex engine compiles a literal of several code points, when case is ignored, to its full
// case folding compared against the text's folding code point by code point, a match failing when
// it ends inside one character's folding ("s" does not find "ß"); a literal that folds to one code
// point is compared with the simple folding of one text code point. Both are reproduced here with
// the library's own folding data, so the answers are the same by construction. What cannot start a
// match is skipped by comparing 16 bytes (or 8 UTF-16 units) at once with the units that can.
#include "core/search/LiteralSearch.h"

#include "core/search/SearchEscapes.h"
#include "core/search/Utf8Units.h"

#include <unicode/uchar.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <map>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

namespace {

constexpr int kFilterUnits = 8;

// Code units that may stand at one offset from a match start.
struct UnitFilter
{
    std::array<char16_t, kFilterUnits> values{};
    int count = 0; // 0: no filter at this offset
    qsizetype offset = 0;

    bool contains(char16_t unit) const
    {
        return std::find(values.begin(), values.begin() + count, unit) != values.begin() + count;
    }
};

struct Filters
{
    UnitFilter first;
    UnitFilter second;
    bool usable = false; // false: every position is a candidate
};

// Up to three code points: one character's full case folding.
struct Folding
{
    std::array<char32_t, 3> points{};
    int size = 0;
};

Folding fullFolding(char32_t c)
{
    if (c < 0x80)
        return {{c >= 'A' && c <= 'Z' ? c + 32 : c}, 1};
    if (!u_hasBinaryProperty(UChar32(c), UCHAR_CHANGES_WHEN_CASEFOLDED))
        return {{c}, 1};
    UChar source[2];
    int32_t sourceLength = 0;
    U16_APPEND_UNSAFE(source, sourceLength, UChar32(c));
    UChar folded[8];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length
        = u_strFoldCase(folded, 8, source, sourceLength, U_FOLD_CASE_DEFAULT, &status);
    Folding result;
    for (int32_t i = 0; i < length && result.size < 3;) {
        UChar32 point;
        U16_NEXT(folded, i, length, point);
        result.points[size_t(result.size++)] = char32_t(point);
    }
    return result;
}

// The characters whose folding differs from themselves, indexed by the first code point of their
// full folding and by their simple folding. Built once.
struct FoldSources
{
    std::map<char32_t, std::vector<char32_t>> byFullStart;
    std::map<char32_t, std::vector<char32_t>> bySimple;

    static const FoldSources &instance()
    {
        static const FoldSources sources = [] {
            FoldSources built;
            UErrorCode status = U_ZERO_ERROR;
            const icu::UnicodeSet changing(u"[:Changes_When_Casefolded:]", status);
            for (int32_t range = 0; range < changing.getRangeCount(); ++range) {
                for (UChar32 c = changing.getRangeStart(range); c <= changing.getRangeEnd(range);
                     ++c) {
                    built.byFullStart[fullFolding(char32_t(c)).points[0]].push_back(char32_t(c));
                    built.bySimple[char32_t(u_foldCase(c, U_FOLD_CASE_DEFAULT))].push_back(
                        char32_t(c));
                }
            }
            return built;
        }();
        return sources;
    }
};

// [\p{L}\p{N}_], closed over case when case is ignored, as the regex engine builds the guards.
struct WordCharacters
{
    icu::UnicodeSet set;
    std::array<bool, 128> ascii{};

    explicit WordCharacters(bool ignoreCase)
    {
        UErrorCode status = U_ZERO_ERROR;
        set.applyPattern(u"[\\p{L}\\p{N}_]", status);
        if (ignoreCase)
            set.closeOver(USET_CASE_INSENSITIVE);
        set.removeAllStrings();
        set.freeze();
        for (char32_t c = 0; c < 128; ++c)
            ascii[c] = set.contains(UChar32(c));
    }

    bool contains(char32_t c) const { return c < 128 ? ascii[c] : set.contains(UChar32(c)); }

    static const WordCharacters &instance(bool ignoreCase)
    {
        static const WordCharacters sensitive(false);
        static const WordCharacters insensitive(true);
        return ignoreCase ? insensitive : sensitive;
    }
};

bool hasPatternMeaning(QChar c)
{
    return QStringView(u"\\^$.|?*+()[]{}").contains(c);
}

// Code point access for the two encodings; out-of-range reads are the caller's to avoid.
struct Utf16Text
{
    using Unit = char16_t;
    QStringView text;

    qsizetype size() const { return text.size(); }

    const Unit *data() const { return reinterpret_cast<const Unit *>(text.utf16()); }

    char32_t at(qsizetype i, int &length) const
    {
        const char16_t unit = text[i].unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size()
            && QChar::isLowSurrogate(text[i + 1].unicode())) {
            length = 2;
            return QChar::surrogateToUcs4(unit, text[i + 1].unicode());
        }
        length = 1;
        return unit;
    }

    char32_t before(qsizetype i) const
    {
        const char16_t unit = text[i - 1].unicode();
        if (QChar::isLowSurrogate(unit) && i >= 2 && QChar::isHighSurrogate(text[i - 2].unicode()))
            return QChar::surrogateToUcs4(text[i - 2].unicode(), unit);
        return unit;
    }
};

struct Utf8Text
{
    using Unit = char;
    std::string_view text;

    qsizetype size() const { return qsizetype(text.size()); }

    const Unit *data() const { return text.data(); }

    char32_t at(qsizetype i, int &length) const { return decodeUtf8At(text, i, length); }

    char32_t before(qsizetype i) const { return decodeUtf8Before(text, i); }
};

// The first position in [from, limit) that passes the filters, or -1.
template<class Unit>
qsizetype nextCandidate(const Unit *data, qsizetype from, qsizetype limit, const Filters &filters)
{
    if (!filters.usable)
        return from < limit ? from : -1;
    const UnitFilter &first = filters.first;
    const UnitFilter &second = filters.second;
    const qsizetype reach = second.count ? second.offset : 0;
    const auto passes = [&](qsizetype p) {
        return first.contains(char16_t(std::make_unsigned_t<Unit>(data[p])))
               && (!second.count
                   || second.contains(char16_t(std::make_unsigned_t<Unit>(data[p + reach]))));
    };
    qsizetype p = from;
#if defined(__SSE2__)
    constexpr qsizetype kLanes = 16 / qsizetype(sizeof(Unit));
    const auto equal = [](__m128i a, __m128i b) {
        if constexpr (sizeof(Unit) == 1)
            return _mm_cmpeq_epi8(a, b);
        else
            return _mm_cmpeq_epi16(a, b);
    };
    const auto splat = [](char16_t value) {
        if constexpr (sizeof(Unit) == 1)
            return _mm_set1_epi8(char(value));
        else
            return _mm_set1_epi16(short(value));
    };
    __m128i firstValues[kFilterUnits];
    __m128i secondValues[kFilterUnits];
    for (int i = 0; i < first.count; ++i)
        firstValues[i] = splat(first.values[size_t(i)]);
    for (int i = 0; i < second.count; ++i)
        secondValues[i] = splat(second.values[size_t(i)]);
    while (p + reach + kLanes <= limit) {
        const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i *>(data + p));
        __m128i hit = equal(here, firstValues[0]);
        for (int i = 1; i < first.count; ++i)
            hit = _mm_or_si128(hit, equal(here, firstValues[i]));
        if (second.count) {
            const __m128i there
                = _mm_loadu_si128(reinterpret_cast<const __m128i *>(data + p + reach));
            __m128i secondHit = equal(there, secondValues[0]);
            for (int i = 1; i < second.count; ++i)
                secondHit = _mm_or_si128(secondHit, equal(there, secondValues[i]));
            hit = _mm_and_si128(hit, secondHit);
        }
        const unsigned mask = unsigned(_mm_movemask_epi8(hit));
        if (mask != 0)
            return p + std::countr_zero(mask) / qsizetype(sizeof(Unit));
        p += kLanes;
    }
#endif
    for (; p + reach < limit; ++p) {
        if (passes(p))
            return p;
    }
    return -1;
}

} // namespace

struct LiteralSearch::Compiled
{
    enum class Kind {
        exact,
        oneFolded,
        folded
    };

    QString literal;
    Kind kind = Kind::exact;
    bool wholeWord = false;
    bool ignoreCase = false;
    bool lineBreak = false;
    QString needle16;
    std::string needle8;
    std::vector<char32_t> folded; // the literal's full case folding (folded kind)
    char32_t oneFolded = 0;       // oneFolded kind: compared with u_foldCase of one code point
    bool oneCaseSensitive = false;
    std::vector<char32_t> startSet; // code points that can begin a match, sorted
    Filters utf16;
    Filters utf8;

    template<class Text>
    qsizetype verify(const Text &text, qsizetype p, qsizetype limit) const;
    template<class Text>
    std::optional<LiteralMatch> find(const Text &text, qsizetype from, qsizetype limit) const;
};

namespace {

// The code units that begin the encodings of `points`, or nothing when there are too many.
template<size_t N>
bool leadUnits(const std::vector<char32_t> &points,
               bool utf8,
               std::array<char16_t, N> &out,
               int &count)
{
    count = 0;
    for (const char32_t c : points) {
        char16_t unit;
        if (utf8) {
            char bytes[4];
            int length = 0;
            U8_APPEND_UNSAFE(bytes, length, UChar32(c));
            unit = uint8_t(bytes[0]);
        } else {
            unit = c > 0xFFFF ? char16_t(U16_LEAD(c)) : char16_t(c);
        }
        if (std::find(out.begin(), out.begin() + count, unit) != out.begin() + count)
            continue;
        if (count == int(N))
            return false;
        out[size_t(count++)] = unit;
    }
    return count > 0;
}

std::vector<char32_t> foldStartSet(char32_t start)
{
    std::vector<char32_t> set{start};
    const auto &sources = FoldSources::instance().byFullStart;
    if (const auto found = sources.find(start); found != sources.end())
        set.insert(set.end(), found->second.begin(), found->second.end());
    std::sort(set.begin(), set.end());
    set.erase(std::unique(set.begin(), set.end()), set.end());
    return set;
}

Filters
foldedFilters(const std::vector<char32_t> &folded, const std::vector<char32_t> &startSet, bool utf8)
{
    Filters filters;
    if (!leadUnits(startSet, utf8, filters.first.values, filters.first.count))
        return filters;
    filters.usable = true;
    // A second unit can be required only when the first character is one unit folding to one
    // code point: then the next character starts right after it and begins the next folded point.
    const bool oneUnitEach = std::all_of(startSet.begin(), startSet.end(), [&](char32_t c) {
        return (utf8 ? c < 0x80 : c <= 0xFFFF) && fullFolding(c).size == 1;
    });
    if (folded.size() >= 2 && oneUnitEach) {
        filters.second.offset = 1;
        if (!leadUnits(foldStartSet(folded[1]), utf8, filters.second.values, filters.second.count))
            filters.second.count = 0;
    }
    return filters;
}

// The first and the last unit of the needle: a pair that rarely meets by chance.
template<class Unit>
Filters exactFilters(std::basic_string_view<Unit> needle)
{
    Filters filters;
    filters.usable = true;
    filters.first.values[0] = char16_t(std::make_unsigned_t<Unit>(needle.front()));
    filters.first.count = 1;
    if (needle.size() >= 2) {
        filters.second.offset = qsizetype(needle.size()) - 1;
        filters.second.values[0] = char16_t(std::make_unsigned_t<Unit>(needle.back()));
        filters.second.count = 1;
    }
    return filters;
}

} // namespace

std::optional<LiteralSearch> LiteralSearch::forOptions(const SearchOptions &options)
{
    QString literal;
    switch (options.mode) {
    case SearchMode::normal:
        literal = options.query;
        break;
    case SearchMode::extended:
        literal = unescapeExtended(options.query);
        break;
    case SearchMode::regex:
        if (std::any_of(options.query.begin(), options.query.end(), hasPatternMeaning))
            return std::nullopt;
        literal = options.query;
        break;
    }
    if (literal.isEmpty()
        || std::any_of(literal.begin(), literal.end(), [](QChar c) { return c.isSurrogate(); }))
        return std::nullopt;

    auto compiled = std::make_shared<Compiled>();
    compiled->literal = literal;
    compiled->wholeWord = options.wholeWord;
    compiled->ignoreCase = !options.matchCase;
    compiled->lineBreak = literal.contains(u'\n');
    if (options.matchCase) {
        compiled->needle16 = literal;
        compiled->needle8 = literal.toStdString();
        compiled->utf16 = exactFilters(std::u16string_view(
            reinterpret_cast<const char16_t *>(literal.utf16()), size_t(literal.size())));
        compiled->utf8 = exactFilters(std::string_view(compiled->needle8));
    } else {
        icu::UnicodeString folded(
            false, reinterpret_cast<const char16_t *>(literal.utf16()), int32_t(literal.size()));
        folded.foldCase(U_FOLD_CASE_DEFAULT);
        for (int32_t i = 0; i < folded.length(); i = folded.moveIndex32(i, 1))
            compiled->folded.push_back(char32_t(folded.char32At(i)));
        if (std::any_of(compiled->folded.begin(), compiled->folded.end(), [](char32_t c) {
                return c > 0xFFFF || U_IS_SURROGATE(c);
            }))
            return std::nullopt;
        if (compiled->folded.size() == 1) {
            compiled->kind = Compiled::Kind::oneFolded;
            const char32_t f = compiled->folded[0];
            compiled->oneFolded = f;
            compiled->oneCaseSensitive = u_hasBinaryProperty(UChar32(f), UCHAR_CASE_SENSITIVE);
            compiled->startSet = {f};
            const auto &sources = FoldSources::instance().bySimple;
            if (const auto found = sources.find(f);
                compiled->oneCaseSensitive && found != sources.end())
                compiled->startSet.insert(
                    compiled->startSet.end(), found->second.begin(), found->second.end());
            std::sort(compiled->startSet.begin(), compiled->startSet.end());
            compiled->utf16.usable = leadUnits(compiled->startSet,
                                               false,
                                               compiled->utf16.first.values,
                                               compiled->utf16.first.count);
            compiled->utf8.usable = leadUnits(
                compiled->startSet, true, compiled->utf8.first.values, compiled->utf8.first.count);
        } else {
            compiled->kind = Compiled::Kind::folded;
            compiled->startSet = foldStartSet(compiled->folded[0]);
            compiled->utf16 = foldedFilters(compiled->folded, compiled->startSet, false);
            compiled->utf8 = foldedFilters(compiled->folded, compiled->startSet, true);
        }
    }
    LiteralSearch search;
    search.m_compiled = std::move(compiled);
    return search;
}

// The end of the match starting at p, or -1.
template<class Text>
qsizetype LiteralSearch::Compiled::verify(const Text &text, qsizetype p, qsizetype limit) const
{
    using Unit = typename Text::Unit;
    switch (kind) {
    case Kind::exact: {
        const qsizetype length
            = sizeof(Unit) == 1 ? qsizetype(needle8.size()) : qsizetype(needle16.size());
        const void *needle = sizeof(Unit) == 1 ? static_cast<const void *>(needle8.data())
                                               : static_cast<const void *>(needle16.utf16());
        if (p + length > limit
            || std::memcmp(text.data() + p, needle, size_t(length) * sizeof(Unit)) != 0)
            return -1;
        return p + length;
    }
    case Kind::oneFolded: {
        int length = 0;
        const char32_t c = text.at(p, length);
        if (p + length > limit)
            return -1;
        const bool same = oneCaseSensitive
                              ? char32_t(u_foldCase(UChar32(c), U_FOLD_CASE_DEFAULT)) == oneFolded
                              : c == oneFolded;
        return same ? p + length : -1;
    }
    case Kind::folded: {
        size_t k = 0;
        qsizetype at = p;
        while (k < folded.size()) {
            if (at >= limit)
                return -1;
            int length = 0;
            const Folding folding = fullFolding(text.at(at, length));
            at += length;
            if (at > limit)
                return -1;
            for (int i = 0; i < folding.size; ++i) {
                // Running out of literal inside one character's folding is no match.
                if (k >= folded.size() || folding.points[size_t(i)] != folded[k])
                    return -1;
                ++k;
            }
        }
        return at;
    }
    }
    return -1;
}

template<class Text>
std::optional<LiteralMatch>
LiteralSearch::Compiled::find(const Text &text, qsizetype from, qsizetype limit) const
{
    const Filters &filters = sizeof(typename Text::Unit) == 1 ? utf8 : utf16;
    const WordCharacters &word = WordCharacters::instance(ignoreCase);
    limit = std::min(limit, text.size());
    for (qsizetype p = std::max<qsizetype>(from, 0); p < limit; ++p) {
        p = nextCandidate(text.data(), p, limit, filters);
        if (p < 0)
            return std::nullopt;
        const qsizetype end = verify(text, p, limit);
        if (end < 0)
            continue;
        if (wholeWord) {
            if (p > 0 && word.contains(text.before(p)))
                continue;
            int length = 0;
            if (end < text.size() && word.contains(text.at(end, length)))
                continue;
        }
        return LiteralMatch{p, end};
    }
    return std::nullopt;
}

std::optional<LiteralMatch>
LiteralSearch::find(QStringView text, qsizetype from, qsizetype limit) const
{
    return m_compiled->find(Utf16Text{text}, from, limit);
}

std::optional<LiteralMatch>
LiteralSearch::find(std::string_view text, qsizetype from, qsizetype limit) const
{
    return m_compiled->find(Utf8Text{text}, from, limit);
}

const QString &LiteralSearch::literal() const
{
    return m_compiled->literal;
}

bool LiteralSearch::containsLineBreak() const
{
    return m_compiled->lineBreak;
}

} // namespace mirtex
