// Smart highlighting as a plain substring scan plus boundary checks: a regex engine walks every
// position of a multi-megabyte text, whereas a vector scan for the word's first and last units
// skips nearly all of it and only candidates get the Unicode tests.
#include "core/editor/SmartHighlight.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

namespace {

// Candidate starts are examined a window at a time so that a stop request is seen quickly.
constexpr qsizetype kWindowUnits = 1 << 20;

bool isBoundaryWordChar(UChar32 c)
{
    // Most neighbours are ASCII; the property lookup is for the rest.
    if (c < 0x80)
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')
               || c == u'_';
    return (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_N_MASK)) != 0;
}

bool isSelectableWordChar(UChar32 c)
{
    return c == u'_' || (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

// The code point ending right before `offset`, pairing surrogates as the regex engine does.
UChar32 codePointBefore(const char16_t *text, qsizetype offset)
{
    UChar32 c = text[offset - 1];
    if (U16_IS_TRAIL(c) && offset >= 2 && U16_IS_LEAD(text[offset - 2]))
        c = U16_GET_SUPPLEMENTARY(text[offset - 2], c);
    return c;
}

UChar32 codePointAt(const char16_t *text, qsizetype offset, qsizetype length)
{
    UChar32 c = text[offset];
    if (U16_IS_LEAD(c) && offset + 1 < length && U16_IS_TRAIL(text[offset + 1]))
        c = U16_GET_SUPPLEMENTARY(c, text[offset + 1]);
    return c;
}

bool restMatches(const char16_t *at, const char16_t *word, qsizetype wordLength)
{
    return wordLength <= 2
           || std::memcmp(at + 1, word + 1, std::size_t(wordLength - 2) * sizeof(char16_t)) == 0;
}

// Calls onOccurrence(start) for every start in [from, to) where the word occurs and that is not
// before the position onOccurrence last asked to resume from; it returns that position, or -1 to
// stop. `to` must leave room for the whole word. Returns where the next window resumes, or -1.
template<typename OnOccurrence>
qsizetype scanWord(const char16_t *text,
                   qsizetype from,
                   qsizetype to,
                   const char16_t *word,
                   qsizetype wordLength,
                   OnOccurrence &&onOccurrence)
{
    const qsizetype lastUnit = wordLength - 1;
    qsizetype resume = from;
    qsizetype p = from;
#if defined(__SSE2__)
    // Compare the first and the last unit of the word at 16 starts at once; only starts where both
    // agree are checked in full.
    const __m128i first = _mm_set1_epi16(short(word[0]));
    const __m128i last = _mm_set1_epi16(short(word[lastUnit]));
    auto load
        = [](const char16_t *at) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(at)); };
    for (; p + 16 <= to; p += 16) {
        const __m128i lo = _mm_and_si128(_mm_cmpeq_epi16(load(text + p), first),
                                         _mm_cmpeq_epi16(load(text + p + lastUnit), last));
        const __m128i hi = _mm_and_si128(_mm_cmpeq_epi16(load(text + p + 8), first),
                                         _mm_cmpeq_epi16(load(text + p + 8 + lastUnit), last));
        for (auto mask = unsigned(_mm_movemask_epi8(_mm_packs_epi16(lo, hi))); mask != 0;
             mask &= mask - 1) {
            const qsizetype start = p + std::countr_zero(mask);
            if (start >= resume && restMatches(text + start, word, wordLength)) {
                resume = onOccurrence(start);
                if (resume < 0)
                    return -1;
            }
        }
    }
#endif
    for (p = std::max(p, resume); p < to; ++p) {
        if (p >= resume && text[p] == word[0] && text[p + lastUnit] == word[lastUnit]
            && restMatches(text + p, word, wordLength)) {
            resume = onOccurrence(p);
            if (resume < 0)
                return -1;
        }
    }
    return std::max(resume, to);
}

} // namespace

bool isSmartHighlightWord(QStringView word)
{
    const qsizetype length = word.size();
    if (length < 1 || length > kSmartWordMaxLength)
        return false;
    const auto *units = reinterpret_cast<const char16_t *>(word.utf16());
    for (qsizetype i = 0; i < length;) {
        UChar32 c = units[i++];
        if (U16_IS_SURROGATE(c)) {
            if (!U16_IS_LEAD(c) || i == length || !U16_IS_TRAIL(units[i]))
                return false;
            c = U16_GET_SUPPLEMENTARY(c, units[i++]);
        }
        if (!isSelectableWordChar(c))
            return false;
    }
    return true;
}

QString smartHighlightPattern(QStringView word)
{
    // The word holds no backslash, so quoting it with \Q...\E is a complete escape.
    return u"(?<![\\p{L}\\p{N}_])\\Q" + word + u"\\E(?![\\p{L}\\p{N}_])";
}

std::vector<TextRange>
findSmartHighlights(QStringView text, TextRange selection, qsizetype limit, std::stop_token stop)
{
    std::vector<TextRange> ranges;
    const qsizetype length = text.size();
    if (selection.location < 0 || selection.end() > length || limit <= 0)
        return ranges;
    const QStringView wordView = text.sliced(selection.location, selection.length);
    if (!isSmartHighlightWord(wordView))
        return ranges;
    const auto *units = reinterpret_cast<const char16_t *>(text.utf16());
    const char16_t *word = units + selection.location;
    const qsizetype wordLength = selection.length;
    const qsizetype startEnd = length - wordLength + 1;

    // Like the regex enumeration: after a whole-word match the search resumes at its end, after
    // a rejected occurrence at the next unit.
    auto onOccurrence = [&](qsizetype at) -> qsizetype {
        const qsizetype end = at + wordLength;
        const bool wholeWord
            = (at == 0 || !isBoundaryWordChar(codePointBefore(units, at)))
              && (end == length || !isBoundaryWordChar(codePointAt(units, end, length)));
        if (!wholeWord)
            return at + 1;
        if (at != selection.location) {
            ranges.push_back(TextRange{at, wordLength});
            if (qsizetype(ranges.size()) >= limit)
                return -1;
        }
        return end;
    };
    for (qsizetype from = 0; from >= 0 && from < startEnd && !stop.stop_requested();) {
        const qsizetype windowEnd = std::min(startEnd, from + kWindowUnits);
        from = scanWord(units, from, windowEnd, word, wordLength, onOccurrence);
    }
    return ranges;
}

} // namespace mirtex
