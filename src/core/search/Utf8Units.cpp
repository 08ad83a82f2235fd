// A UTF-8 byte is one UTF-16 unit unless it continues a character (10xxxxxx); a four-byte lead
// (11110xxx) adds the second unit of its pair. Sixteen bytes are classified at once.
#include "core/search/Utf8Units.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

qsizetype utf16LengthOfUtf8(const char *begin, const char *end)
{
    qsizetype units = 0;
    const char *at = begin;
#if defined(__SSE2__)
    const __m128i continuationLimit = _mm_set1_epi8(-64); // bytes below (signed) continue
    const __m128i fourByteLimit = _mm_set1_epi8(-17);     // 0xF0.. as signed is -16..-9
    const __m128i zero = _mm_setzero_si128();
    while (end - at >= 16) {
        // Per-lane tallies of (four-byte lead mask - continuation mask), masks being -1 where set:
        // a byte is 1 - tally units. Summed every 127 blocks, before a signed lane could overflow.
        __m128i tally = zero;
        int blocks = 0;
        for (; blocks < 127 && end - at >= 16; ++blocks, at += 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
            const __m128i continuation = _mm_cmplt_epi8(bytes, continuationLimit);
            const __m128i fourByte
                = _mm_and_si128(_mm_cmpgt_epi8(bytes, fourByteLimit), _mm_cmplt_epi8(bytes, zero));
            tally = _mm_add_epi8(tally, _mm_sub_epi8(fourByte, continuation));
        }
        const __m128i low = _mm_srai_epi16(_mm_unpacklo_epi8(tally, tally), 8);
        const __m128i high = _mm_srai_epi16(_mm_unpackhi_epi8(tally, tally), 8);
        __m128i sum = _mm_add_epi16(low, high);
        sum = _mm_madd_epi16(sum, _mm_set1_epi16(1));
        alignas(16) int32_t parts[4];
        _mm_store_si128(reinterpret_cast<__m128i *>(parts), sum);
        units += qsizetype(blocks) * 16 - (parts[0] + parts[1] + parts[2] + parts[3]);
    }
#endif
    for (; at < end; ++at) {
        const auto byte = uint8_t(*at);
        units += ((byte & 0xC0) != 0x80) + (byte >= 0xF0);
    }
    return units;
}

qsizetype utf8PositionOfUtf16(std::string_view utf8, qsizetype utf16Offset)
{
    qsizetype byte = 0;
    qsizetype units = 0;
    const auto size = qsizetype(utf8.size());
    while (byte < size && units < utf16Offset) {
        const auto lead = uint8_t(utf8[byte]);
        const int length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (units + (length == 4 ? 2 : 1) > utf16Offset)
            break; // inside a pair
        units += length == 4 ? 2 : 1;
        byte += length;
    }
    return std::min(byte, size);
}

char32_t decodeUtf8At(std::string_view text, qsizetype at, int &length)
{
    const auto lead = uint8_t(text[at]);
    if (lead < 0x80) {
        length = 1;
        return lead;
    }
    length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t c = lead & (0x7F >> length);
    const auto size = qsizetype(text.size());
    for (int i = 1; i < length; ++i) {
        if (at + i >= size) {
            length = i;
            return 0xFFFD;
        }
        c = (c << 6) | (uint8_t(text[at + i]) & 0x3F);
    }
    return c;
}

char32_t decodeUtf8Before(std::string_view text, qsizetype at)
{
    qsizetype start = at - 1;
    while (start > 0 && at - start < 4 && (uint8_t(text[start]) & 0xC0) == 0x80)
        --start;
    int length = 0;
    return decodeUtf8At(text, start, length);
}

} // namespace mirtex
