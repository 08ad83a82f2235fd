#include "core/document/Utf8Codec.h"

#include "core/document/HugePageHint.h"

#include <QStringDecoder>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex::Utf8Codec {

namespace {
inline bool isContinuation(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

// Decodes the multi-byte sequence at `p` (whose lead byte is >= 0x80) into `out`. Returns the
// number of bytes consumed, 0 when the sequence is ill-formed. The second-byte bounds carry the
// rules against overlong forms, surrogates and values above U+10FFFF.
inline int decodeSequence(const uchar *p, const uchar *end, char16_t *&out)
{
    const uint lead = p[0];
    const qsizetype available = end - p;
    if (lead < 0xE0) {
        if (lead < 0xC2 || available < 2 || !isContinuation(p[1]))
            return 0;
        *out++ = char16_t(((lead & 0x1F) << 6) | (p[1] & 0x3F));
        return 2;
    }
    if (lead < 0xF0) {
        const uint low = lead == 0xE0 ? 0xA0 : 0x80;
        const uint high = lead == 0xED ? 0x9F : 0xBF;
        if (available < 3 || p[1] < low || p[1] > high || !isContinuation(p[2]))
            return 0;
        *out++ = char16_t(((lead & 0x0F) << 12) | ((p[1] & 0x3F) << 6) | (p[2] & 0x3F));
        return 3;
    }
    if (lead > 0xF4)
        return 0;
    const uint low = lead == 0xF0 ? 0x90 : 0x80;
    const uint high = lead == 0xF4 ? 0x8F : 0xBF;
    if (available < 4 || p[1] < low || p[1] > high || !isContinuation(p[2])
        || !isContinuation(p[3]))
        return 0;
    const char32_t code
        = ((lead & 0x07) << 18) | ((p[1] & 0x3F) << 12) | ((p[2] & 0x3F) << 6) | (p[3] & 0x3F);
    *out++ = char16_t(0xD7C0 + (code >> 10));
    *out++ = char16_t(0xDC00 | (code & 0x3FF));
    return 4;
}

// The length of the well-formed multi-byte sequence at `p` (lead byte >= 0x80), 0 when it is
// ill-formed: the bounds of decodeSequence() without the decoding.
inline int sequenceLength(const uchar *p, const uchar *end)
{
    const uint lead = p[0];
    const qsizetype available = end - p;
    if (lead < 0xE0)
        return lead >= 0xC2 && available >= 2 && isContinuation(p[1]) ? 2 : 0;
    if (lead < 0xF0) {
        const uint low = lead == 0xE0 ? 0xA0 : 0x80;
        const uint high = lead == 0xED ? 0x9F : 0xBF;
        return available >= 3 && p[1] >= low && p[1] <= high && isContinuation(p[2]) ? 3 : 0;
    }
    if (lead > 0xF4)
        return 0;
    const uint low = lead == 0xF0 ? 0x90 : 0x80;
    const uint high = lead == 0xF4 ? 0x8F : 0xBF;
    return available >= 4 && p[1] >= low && p[1] <= high && isContinuation(p[2])
                   && isContinuation(p[3])
               ? 4
               : 0;
}

// Bytes needed for `text` in UTF-8, assuming its surrogates are paired (checked while encoding).
// Branch-free so the compiler can vectorise it.
qsizetype encodedLength(QStringView text)
{
    qsizetype length = 0;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        const bool surrogate = (unit & 0xF800) == 0xD800;
        length += 1 + (unit >= 0x80) + (unit >= 0x800) - surrogate;
    }
    return length;
}
} // namespace

std::optional<QString> decode(QByteArrayView bytes, bool *containsCR)
{
    // UTF-16 never needs more code units than UTF-8 has bytes, so the output position never
    // overtakes the input position: a 16-unit store is safe whenever 16 input bytes remain.
    QString text(bytes.size(), Qt::Uninitialized);
    adviseHugePages(text.data(), size_t(text.size()) * sizeof(QChar));
    const auto *p = reinterpret_cast<const uchar *>(bytes.data());
    const uchar *const end = p + bytes.size();
    auto *const outBegin = reinterpret_cast<char16_t *>(text.data());
    char16_t *out = outBegin;
    bool sawCR = false;

#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    const __m128i carriageReturn = _mm_set1_epi8('\r');
    __m128i crSeen = zero;
    while (end - p >= 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        crSeen = _mm_or_si128(crSeen, _mm_cmpeq_epi8(block, carriageReturn));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out + 8), _mm_unpackhi_epi8(block, zero));
        const uint nonAscii = uint(_mm_movemask_epi8(block));
        if (nonAscii == 0) {
            p += 16;
            out += 16;
            continue;
        }
        // Keep the ASCII prefix already stored, then decode the whole non-ASCII run.
        const int prefix = __builtin_ctz(nonAscii);
        p += prefix;
        out += prefix;
        do {
            const int used = decodeSequence(p, end, out);
            if (used == 0)
                return std::nullopt;
            p += used;
        } while (p < end && *p >= 0x80);
    }
    sawCR = _mm_movemask_epi8(crSeen) != 0;
#endif

    while (p < end) {
        if (*p < 0x80) {
            sawCR |= *p == '\r';
            *out++ = *p++;
            continue;
        }
        const int used = decodeSequence(p, end, out);
        if (used == 0)
            return std::nullopt;
        p += used;
    }

    const qsizetype length = out - outBegin;
    text.resize(length);
    // Text heavy in three-byte characters leaves much of the buffer unused; give it back.
    if (length < bytes.size() / 2)
        text.squeeze();
    if (containsCR)
        *containsCR = sawCR;
    return text;
}

bool isValid(QByteArrayView bytes, bool *containsCR)
{
    const auto *p = reinterpret_cast<const uchar *>(bytes.data());
    const uchar *const end = p + bytes.size();
    bool sawCR = false;

#if defined(__SSE2__)
    // Large files are mostly ASCII: 64 bytes per round while no byte has its high bit set.
    const __m128i carriageReturn = _mm_set1_epi8('\r');
    __m128i crSeen = _mm_setzero_si128();
    while (end - p >= 16) {
        if (end - p >= 64) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + 16));
            const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + 32));
            const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + 48));
            const __m128i all = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
            if (_mm_movemask_epi8(all) == 0) {
                const __m128i crs = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(a, carriageReturn),
                                                              _mm_cmpeq_epi8(b, carriageReturn)),
                                                 _mm_or_si128(_mm_cmpeq_epi8(c, carriageReturn),
                                                              _mm_cmpeq_epi8(d, carriageReturn)));
                crSeen = _mm_or_si128(crSeen, crs);
                p += 64;
                continue;
            }
        }
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
        crSeen = _mm_or_si128(crSeen, _mm_cmpeq_epi8(block, carriageReturn));
        const uint nonAscii = uint(_mm_movemask_epi8(block));
        if (nonAscii == 0) {
            p += 16;
            continue;
        }
        // The ASCII prefix was checked for CR with the block; validate the non-ASCII run.
        p += __builtin_ctz(nonAscii);
        do {
            const int used = sequenceLength(p, end);
            if (used == 0)
                return false;
            p += used;
        } while (p < end && *p >= 0x80);
    }
    sawCR = _mm_movemask_epi8(crSeen) != 0;
#endif

    while (p < end) {
        if (*p < 0x80) {
            sawCR |= *p == '\r';
            ++p;
            continue;
        }
        const int used = sequenceLength(p, end);
        if (used == 0)
            return false;
        p += used;
    }
    if (containsCR)
        *containsCR = sawCR;
    return true;
}

std::optional<QByteArray> encode(QStringView text)
{
    QByteArray bytes(encodedLength(text), Qt::Uninitialized);
    adviseHugePages(bytes.data(), size_t(bytes.size()));
    const char16_t *p = text.utf16();
    const char16_t *const end = p + text.size();
    auto *out = reinterpret_cast<uchar *>(bytes.data());

    while (p < end) {
#if defined(__SSE2__)
        // Sixteen ASCII units at a time; the output has room because each gives one byte.
        if (end - p >= 16) {
            const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + 8));
            const __m128i asciiMask = _mm_set1_epi16(short(0xFF80));
            const __m128i wide = _mm_and_si128(_mm_or_si128(low, high), asciiMask);
            if (_mm_movemask_epi8(_mm_cmpeq_epi16(wide, _mm_setzero_si128())) == 0xFFFF) {
                _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_packus_epi16(low, high));
                p += 16;
                out += 16;
                continue;
            }
        }
#endif
        const char16_t unit = *p++;
        if (unit < 0x80) {
            *out++ = uchar(unit);
        } else if (unit < 0x800) {
            *out++ = uchar(0xC0 | (unit >> 6));
            *out++ = uchar(0x80 | (unit & 0x3F));
        } else if ((unit & 0xF800) != 0xD800) {
            *out++ = uchar(0xE0 | (unit >> 12));
            *out++ = uchar(0x80 | ((unit >> 6) & 0x3F));
            *out++ = uchar(0x80 | (unit & 0x3F));
        } else {
            if (unit >= 0xDC00 || p == end || (*p & 0xFC00) != 0xDC00)
                return std::nullopt;
            const char32_t code = 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (*p++ - 0xDC00);
            *out++ = uchar(0xF0 | (code >> 18));
            *out++ = uchar(0x80 | ((code >> 12) & 0x3F));
            *out++ = uchar(0x80 | ((code >> 6) & 0x3F));
            *out++ = uchar(0x80 | (code & 0x3F));
        }
    }
    return bytes;
}

QString toUtf16(QByteArrayView utf8)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless
                               | QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(utf8);
}

} // namespace mirtex::Utf8Codec
