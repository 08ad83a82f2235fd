#include "core/document/WideUnicodeUtf8.h"

#include "core/document/GrowingBytes.h"
#include "core/document/HugePageHint.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex::WideUnicodeUtf8 {

namespace {

constexpr qsizetype kChunkUnits = 4096;
constexpr qsizetype kSampleUnits = 32768;

template<UnitWidth width, bool bigEndian>
inline char32_t loadUnit(const uchar *p)
{
    if constexpr (width == UnitWidth::utf16)
        return bigEndian ? char32_t(p[0] << 8 | p[1]) : char32_t(p[1] << 8 | p[0]);
    else
        return bigEndian ? char32_t(p[0]) << 24 | char32_t(p[1]) << 16 | char32_t(p[2]) << 8 | p[3]
                         : char32_t(p[3]) << 24 | char32_t(p[2]) << 16 | char32_t(p[1]) << 8 | p[0];
}

template<UnitWidth width, bool bigEndian>
inline uchar *storeUnit(uchar *out, char32_t unit)
{
    if constexpr (width == UnitWidth::utf16) {
        out[bigEndian ? 1 : 0] = uchar(unit);
        out[bigEndian ? 0 : 1] = uchar(unit >> 8);
        return out + 2;
    } else {
        for (int i = 0; i < 4; ++i)
            out[bigEndian ? 3 - i : i] = uchar(unit >> (8 * i));
        return out + 4;
    }
}

inline uchar *storeUtf8(uchar *out, char32_t code)
{
    if (code < 0x80) {
        *out++ = uchar(code);
    } else if (code < 0x800) {
        *out++ = uchar(0xC0 | code >> 6);
        *out++ = uchar(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        *out++ = uchar(0xE0 | code >> 12);
        *out++ = uchar(0x80 | ((code >> 6) & 0x3F));
        *out++ = uchar(0x80 | (code & 0x3F));
    } else {
        *out++ = uchar(0xF0 | code >> 18);
        *out++ = uchar(0x80 | ((code >> 12) & 0x3F));
        *out++ = uchar(0x80 | ((code >> 6) & 0x3F));
        *out++ = uchar(0x80 | (code & 0x3F));
    }
    return out;
}

inline bool isSurrogate(char32_t code)
{
    return (code & 0xFFFFF800) == 0xD800;
}

// The UTF-8 size of the first units, scaled to the whole input: the first allocation, so that a
// large file is neither copied by growing its buffer nor given the worst case.
template<UnitWidth width, bool bigEndian>
qsizetype estimatedUtf8Size(const uchar *in, qsizetype units)
{
    const qsizetype sampled = std::min(units, kSampleUnits);
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < sampled; ++i) {
        const char32_t unit = loadUnit<width, bigEndian>(in + i * qsizetype(width));
        bytes += 1 + (unit >= 0x80) + (unit >= 0x800) + (unit >= 0x10000);
    }
    const double ratio = sampled > 0 ? double(bytes) / double(sampled) : 1.0;
    return qsizetype(double(units) * ratio * 1.02) + 64;
}

template<UnitWidth width, bool bigEndian>
std::optional<QByteArray> decode(QByteArrayView bytes)
{
    constexpr qsizetype unitSize = qsizetype(width);
    if (bytes.size() % unitSize != 0)
        return std::nullopt;
    const auto *in = reinterpret_cast<const uchar *>(bytes.data());
    const uchar *const end = in + bytes.size();
    GrowingBytes output(estimatedUtf8Size<width, bigEndian>(in, bytes.size() / unitSize));
    while (in < end) {
        const qsizetype chunkUnits = std::min((end - in) / unitSize, kChunkUnits);
        const uchar *const chunkEnd = in + chunkUnits * unitSize;
        // Three bytes per unit at most (a pair gives four for two); the vector store below may
        // write eight bytes past what it keeps, and one unit past the chunk may be read.
        uchar *out = output.reserve(3 * chunkUnits + 16);
        while (in < chunkEnd) {
#if defined(__SSE2__)
            if constexpr (width == UnitWidth::utf16) {
                // Eight units at a time while they are ASCII other than CR.
                while (chunkEnd - in >= 16) {
                    __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(in));
                    if constexpr (bigEndian)
                        block = _mm_or_si128(_mm_slli_epi16(block, 8), _mm_srli_epi16(block, 8));
                    const __m128i ascii = _mm_cmpeq_epi16(
                        _mm_and_si128(block, _mm_set1_epi16(short(0xFF80))), _mm_setzero_si128());
                    const __m128i carriageReturn = _mm_cmpeq_epi16(block, _mm_set1_epi16('\r'));
                    const unsigned plain
                        = unsigned(_mm_movemask_epi8(_mm_andnot_si128(carriageReturn, ascii)));
                    _mm_storel_epi64(reinterpret_cast<__m128i *>(out),
                                     _mm_packus_epi16(block, block));
                    if (plain == 0xFFFF) {
                        in += 16;
                        out += 8;
                        continue;
                    }
                    const int units = __builtin_ctz(~plain) / 2;
                    in += 2 * units;
                    out += units;
                    break;
                }
                if (in >= chunkEnd)
                    break;
            }
#endif
            char32_t code = loadUnit<width, bigEndian>(in);
            in += unitSize;
            if (code == '\r') {
                *out++ = '\n';
                if (in < end && loadUnit<width, bigEndian>(in) == '\n')
                    in += unitSize;
                continue;
            }
            if (isSurrogate(code)) {
                if constexpr (width == UnitWidth::utf32)
                    return std::nullopt;
                if (code >= 0xDC00 || in >= end)
                    return std::nullopt;
                const char32_t low = loadUnit<width, bigEndian>(in);
                if ((low & 0xFC00) != 0xDC00)
                    return std::nullopt;
                in += unitSize;
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
            } else if (code > 0x10FFFF) {
                return std::nullopt;
            }
            out = storeUtf8(out, code);
        }
        output.advance(out);
    }
    return output.take();
}

// One well-formed UTF-8 sequence at `p` (lead byte >= 0x80), advancing `p`: the code point, or
// -1. No overlong forms, no surrogates, nothing above U+10FFFF, no sequence cut off by the end.
inline qint32 decodeSequence(const uchar *&p, const uchar *end)
{
    const uint lead = p[0];
    const qsizetype available = end - p;
    if (lead < 0xE0) {
        if (lead < 0xC2 || available < 2 || (p[1] & 0xC0) != 0x80)
            return -1;
        p += 2;
        return qint32((lead & 0x1F) << 6 | (p[-1] & 0x3F));
    }
    if (lead < 0xF0) {
        const uint low = lead == 0xE0 ? 0xA0 : 0x80;
        const uint high = lead == 0xED ? 0x9F : 0xBF;
        if (available < 3 || p[1] < low || p[1] > high || (p[2] & 0xC0) != 0x80)
            return -1;
        p += 3;
        return qint32((lead & 0x0F) << 12 | (p[-2] & 0x3F) << 6 | (p[-1] & 0x3F));
    }
    if (lead > 0xF4)
        return -1;
    const uint low = lead == 0xF0 ? 0x90 : 0x80;
    const uint high = lead == 0xF4 ? 0x8F : 0xBF;
    if (available < 4 || p[1] < low || p[1] > high || (p[2] & 0xC0) != 0x80
        || (p[3] & 0xC0) != 0x80)
        return -1;
    p += 4;
    return qint32((lead & 0x07) << 18 | (p[-3] & 0x3F) << 12 | (p[-2] & 0x3F) << 6
                  | (p[-1] & 0x3F));
}

template<UnitWidth width, bool bigEndian>
std::optional<QByteArray>
encode(QByteArrayView utf8, QByteArrayView lineBreak, QByteArrayView prefix)
{
    constexpr qsizetype unitSize = qsizetype(width);
    const bool plainBreak = lineBreak.size() == 1 && lineBreak[0] == '\n';
    // Never more units than UTF-8 bytes, plus the longer breaks: one allocation that is exact
    // for ASCII text.
    const qsizetype breaks = plainBreak ? 0 : utf8.count('\n');
    const qsizetype capacity
        = prefix.size() + unitSize * (utf8.size() + breaks * (lineBreak.size() - 1));
    QByteArray bytes(capacity, Qt::Uninitialized);
    adviseHugePages(bytes.data(), size_t(bytes.size()));
    auto *out = reinterpret_cast<uchar *>(bytes.data());
    if (!prefix.isEmpty())
        std::memcpy(out, prefix.data(), size_t(prefix.size()));
    out += prefix.size();

    const auto *in = reinterpret_cast<const uchar *>(utf8.data());
    const uchar *const end = in + utf8.size();
    while (in < end) {
#if defined(__SSE2__)
        // Sixteen ASCII bytes (LF too when it stays LF) widen at a time. The room left is at
        // least unitSize times the bytes left, so the full-width store always fits.
        while (end - in >= 16) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(in));
            unsigned special = unsigned(_mm_movemask_epi8(block));
            if (!plainBreak)
                special |= unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))));
            const __m128i zero = _mm_setzero_si128();
            const __m128i low
                = bigEndian ? _mm_unpacklo_epi8(zero, block) : _mm_unpacklo_epi8(block, zero);
            const __m128i high
                = bigEndian ? _mm_unpackhi_epi8(zero, block) : _mm_unpackhi_epi8(block, zero);
            auto *to = reinterpret_cast<__m128i *>(out);
            if constexpr (width == UnitWidth::utf16) {
                _mm_storeu_si128(to, low);
                _mm_storeu_si128(to + 1, high);
            } else if constexpr (bigEndian) {
                _mm_storeu_si128(to, _mm_unpacklo_epi16(zero, low));
                _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(zero, low));
                _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(zero, high));
                _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(zero, high));
            } else {
                _mm_storeu_si128(to, _mm_unpacklo_epi16(low, zero));
                _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(low, zero));
                _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(high, zero));
                _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(high, zero));
            }
            if (special == 0) {
                in += 16;
                out += 16 * unitSize;
                continue;
            }
            const int plain = __builtin_ctz(special);
            in += plain;
            out += plain * unitSize;
            break;
        }
        if (in >= end)
            break;
#endif
        const uchar byte = *in;
        if (byte < 0x80) {
            ++in;
            if (byte == '\n' && !plainBreak) {
                for (const char unit : lineBreak)
                    out = storeUnit<width, bigEndian>(out, char32_t(uchar(unit)));
            } else {
                out = storeUnit<width, bigEndian>(out, byte);
            }
            continue;
        }
        const qint32 code = decodeSequence(in, end);
        if (code < 0)
            return std::nullopt;
        if (width == UnitWidth::utf16 && code >= 0x10000) {
            out = storeUnit<width, bigEndian>(out, char32_t(0xD7C0 + (code >> 10)));
            out = storeUnit<width, bigEndian>(out, char32_t(0xDC00 | (code & 0x3FF)));
        } else {
            out = storeUnit<width, bigEndian>(out, char32_t(code));
        }
    }
    const qsizetype written = out - reinterpret_cast<uchar *>(bytes.data());
    bytes.truncate(written);
    // Text heavy in multi-byte characters leaves much of the buffer unused; give it back.
    if (written < capacity / 2)
        bytes.squeeze();
    return bytes;
}

} // namespace

std::optional<QByteArray> decodeToUtf8(QByteArrayView bytes, UnitWidth width, ByteOrder order)
{
    const bool big = order == ByteOrder::bigEndian;
    if (width == UnitWidth::utf16)
        return big ? decode<UnitWidth::utf16, true>(bytes) : decode<UnitWidth::utf16, false>(bytes);
    return big ? decode<UnitWidth::utf32, true>(bytes) : decode<UnitWidth::utf32, false>(bytes);
}

std::optional<QByteArray> encodeFromUtf8(QByteArrayView utf8,
                                         UnitWidth width,
                                         ByteOrder order,
                                         QByteArrayView lineBreak,
                                         QByteArrayView prefix)
{
    const bool big = order == ByteOrder::bigEndian;
    if (width == UnitWidth::utf16)
        return big ? encode<UnitWidth::utf16, true>(utf8, lineBreak, prefix)
                   : encode<UnitWidth::utf16, false>(utf8, lineBreak, prefix);
    return big ? encode<UnitWidth::utf32, true>(utf8, lineBreak, prefix)
               : encode<UnitWidth::utf32, false>(utf8, lineBreak, prefix);
}

} // namespace mirtex::WideUnicodeUtf8
