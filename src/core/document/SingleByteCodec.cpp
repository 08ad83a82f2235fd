#include "core/document/SingleByteCodec.h"

#include "core/document/GrowingBytes.h"
#include "core/document/HugePageHint.h"

#include <QHash>
#include <QMutex>
#include <QtGlobal>

#include <unicode/ucnv.h>

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

namespace {

// A BMP character (the only kind a single-byte set holds) as UTF-8, packed for SingleByteCodec.
quint32 packUtf8(char16_t unit)
{
    if (unit < 0x80)
        return 1u << 24 | unit;
    if (unit < 0x800)
        return 2u << 24 | quint32(0x80 | (unit & 0x3F)) << 8 | quint32(0xC0 | unit >> 6);
    return 3u << 24 | quint32(0x80 | (unit & 0x3F)) << 16
           | quint32(0x80 | ((unit >> 6) & 0x3F)) << 8 | quint32(0xE0 | unit >> 12);
}

constexpr qsizetype kChunk = 4096;

// One well-formed UTF-8 sequence from `p` (its first byte is not ASCII): the code point, or -1.
// Same rules as Utf8Codec: no overlong forms, no surrogates, nothing above U+10FFFF, no cut-off.
qint32 decodeSequence(const uchar *&p, const uchar *end)
{
    const uchar lead = *p;
    int length = 0;
    qint32 value = 0;
    qint32 minimum = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
        minimum = 0x10000;
    } else {
        return -1;
    }
    if (end - p < length)
        return -1;
    for (int i = 1; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return -1;
        value = value << 6 | (p[i] & 0x3F);
    }
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return -1;
    p += length;
    return value;
}

} // namespace

SingleByteCodec::SingleByteCodec(const char *converterName)
    : fromUnicode_(0x10000, qint16(-1))
{
    toUnicode_.fill(kUndefined);
    UErrorCode status = U_ZERO_ERROR;
    UConverter *converter = ucnv_open(converterName, &status);
    if (U_FAILURE(status) || !converter)
        return;
    if (ucnv_getMaxCharSize(converter) == 1) {
        ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
        for (int byte = 0; byte < 256 && U_SUCCESS(status); ++byte) {
            const char in = char(byte);
            UChar out[4];
            UErrorCode charStatus = U_ZERO_ERROR;
            ucnv_reset(converter);
            const int32_t length = ucnv_toUChars(converter, out, 4, &in, 1, &charStatus);
            // U+FFFF is a noncharacter no table maps to; it doubles as the "undefined" marker.
            if (U_SUCCESS(charStatus) && length == 1 && out[0] != kUndefined)
                toUnicode_[byte] = out[0];
        }
        valid_ = U_SUCCESS(status);
    }
    ucnv_close(converter);

    asciiCompatible_ = true;
    for (int byte = 0; byte < 128; ++byte)
        asciiCompatible_ = asciiCompatible_ && toUnicode_[byte] == byte;
    for (int byte = 0; byte < 256; ++byte)
        toUtf8_[byte] = toUnicode_[byte] == kUndefined ? 0 : packUtf8(toUnicode_[byte]);
    // Walk downwards so that when two bytes decode to one character, the lower byte encodes it.
    for (int byte = 255; byte >= 0; --byte) {
        if (toUnicode_[byte] != kUndefined)
            fromUnicode_[toUnicode_[byte]] = qint16(byte);
    }
}

void SingleByteCodec::undefine(uchar byte)
{
    const char16_t unit = toUnicode_[byte];
    if (unit == kUndefined)
        return;
    toUnicode_[byte] = kUndefined;
    toUtf8_[byte] = 0;
    if (fromUnicode_[unit] == byte)
        fromUnicode_[unit] = -1;
}

std::shared_ptr<const SingleByteCodec> SingleByteCodec::forConverter(const char *converterName)
{
    static QMutex mutex;
    static QHash<QByteArray, std::shared_ptr<const SingleByteCodec>> cache;
    const QByteArray key(converterName);
    QMutexLocker locker(&mutex);
    if (auto found = cache.constFind(key); found != cache.constEnd())
        return *found;
    std::shared_ptr<SingleByteCodec> codec(new SingleByteCodec(converterName));
    // Windows-1252 as published leaves these five bytes undefined; ICU maps them to C1 controls,
    // which would let any binary-ish Latin file pass as Windows-1252.
    if (qstricmp(converterName, "windows-1252") == 0) {
        for (const uchar hole : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
            codec->undefine(hole);
    }
    if (!codec->valid_)
        codec.reset();
    cache.insert(key, codec);
    return codec;
}

std::optional<QString> SingleByteCodec::decode(QByteArrayView bytes) const
{
    QString text(bytes.size(), Qt::Uninitialized);
    adviseHugePages(text.data(), size_t(text.size()) * sizeof(QChar));
    const auto *in = reinterpret_cast<const uchar *>(bytes.data());
    auto *out = reinterpret_cast<char16_t *>(text.data());
    // A plain lookup per byte with the undefined check folded into a flag tested once per chunk:
    // in Latin text a high byte comes every few bytes, so branching on ASCII runs does not pay.
    constexpr qsizetype kChunk = 256;
    for (qsizetype start = 0; start < bytes.size(); start += kChunk) {
        const qsizetype chunkEnd = std::min(bytes.size(), start + kChunk);
        bool undefined = false;
        for (qsizetype i = start; i < chunkEnd; ++i) {
            const char16_t unit = toUnicode_[in[i]];
            undefined |= unit == kUndefined;
            out[i] = unit;
        }
        if (undefined)
            return std::nullopt;
    }
    return text;
}

std::optional<QByteArray> SingleByteCodec::encode(QStringView text) const
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    adviseHugePages(bytes.data(), size_t(bytes.size()));
    const char16_t *p = text.utf16();
    const char16_t *const end = p + text.size();
    auto *out = reinterpret_cast<uchar *>(bytes.data());
#if defined(__SSE2__)
    if (asciiCompatible_) {
        const __m128i asciiMask = _mm_set1_epi16(short(0xFF80));
        const __m128i zero = _mm_setzero_si128();
        while (end - p >= 16) {
            const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + 8));
            // packus saturates, so non-ASCII units land as some byte that is fixed up below.
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_packus_epi16(low, high));
            const __m128i asciiLow = _mm_cmpeq_epi16(_mm_and_si128(low, asciiMask), zero);
            const __m128i asciiHigh = _mm_cmpeq_epi16(_mm_and_si128(high, asciiMask), zero);
            const uint wideUnits
                = ~uint(_mm_movemask_epi8(_mm_packs_epi16(asciiLow, asciiHigh))) & 0xFFFF;
            if (wideUnits == 0) {
                p += 16;
                out += 16;
                continue;
            }
            const int prefix = __builtin_ctz(wideUnits);
            p += prefix;
            out += prefix;
            do {
                const qint16 byte = fromUnicode_[*p++];
                if (byte < 0)
                    return std::nullopt;
                *out++ = uchar(byte);
            } while (p < end && *p >= 0x80);
        }
    }
#endif
    for (; p < end; ++p) {
        const qint16 byte = fromUnicode_[*p];
        if (byte < 0)
            return std::nullopt;
        *out++ = uchar(byte);
    }
    return bytes;
}

std::optional<QByteArray> SingleByteCodec::decodeToUtf8(QByteArrayView bytes) const
{
    const auto *in = reinterpret_cast<const uchar *>(bytes.data());
    const auto *const end = in + bytes.size();
    // The output's size from the first 64 kB, so that a large file is neither copied by growing
    // its buffer nor given three bytes per byte.
    const qsizetype sampled = std::min<qsizetype>(bytes.size(), 65536);
    qsizetype sampleOutput = 0;
    for (qsizetype i = 0; i < sampled; ++i)
        sampleOutput += qsizetype(toUtf8_[in[i]] >> 24);
    const double ratio = sampled > 0 ? double(sampleOutput) / double(sampled) : 1.0;
    GrowingBytes output(qsizetype(double(bytes.size()) * ratio * 1.02) + 64);

    while (in < end) {
        const qsizetype chunk = std::min<qsizetype>(end - in, kChunk);
        const uchar *const chunkEnd = in + chunk;
        uchar *out = output.reserve(3 * chunk);
        while (in < chunkEnd) {
#if defined(__SSE2__)
            // Plain ASCII without CR moves sixteen bytes at a time; the loop stops at the first
            // byte that needs the table or ends a line.
            if (asciiCompatible_ && chunkEnd - in >= 16) {
                const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(in));
                const unsigned special
                    = unsigned(_mm_movemask_epi8(block))
                      | unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\r'))));
                _mm_storeu_si128(reinterpret_cast<__m128i *>(out), block);
                if (special == 0) {
                    in += 16;
                    out += 16;
                    continue;
                }
                const int plain = __builtin_ctz(special);
                in += plain;
                out += plain;
            }
#endif
            const uchar byte = *in++;
            if (byte == '\r' && asciiCompatible_) {
                *out++ = '\n';
                if (in < end && *in == '\n')
                    ++in;
                continue;
            }
            const quint32 packed = toUtf8_[byte];
            if (packed == 0)
                return std::nullopt;
            out[0] = uchar(packed);
            out[1] = uchar(packed >> 8);
            out[2] = uchar(packed >> 16);
            out += packed >> 24;
        }
        output.advance(out);
    }
    return output.take();
}

std::optional<QByteArray> SingleByteCodec::encodeFromUtf8(QByteArrayView utf8,
                                                          QByteArrayView lineBreak) const
{
    GrowingBytes output(utf8.size() + utf8.size() / 32 + 16);
    const auto *in = reinterpret_cast<const uchar *>(utf8.data());
    const auto *const end = in + utf8.size();
    const bool plainBreak = lineBreak.size() == 1 && lineBreak[0] == '\n';
    while (in < end) {
        const qsizetype chunk = std::min<qsizetype>(end - in, kChunk);
        const uchar *const chunkEnd = in + chunk;
        // A sequence that starts in this chunk may end in the next: at most three more bytes read.
        uchar *out = output.reserve(chunk * std::max<qsizetype>(1, lineBreak.size()));
        while (in < chunkEnd) {
#if defined(__SSE2__)
            if (asciiCompatible_) {
                const __m128i lineFeed = _mm_set1_epi8('\n');
                bool special = false;
                while (chunkEnd - in >= 16) {
                    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(in));
                    int mask = _mm_movemask_epi8(block);
                    if (!plainBreak)
                        mask |= _mm_movemask_epi8(_mm_cmpeq_epi8(block, lineFeed));
                    _mm_storeu_si128(reinterpret_cast<__m128i *>(out), block);
                    if (mask == 0) {
                        in += 16;
                        out += 16;
                        continue;
                    }
                    const int plain = __builtin_ctz(unsigned(mask));
                    in += plain;
                    out += plain;
                    special = true;
                    break;
                }
                if (!special && in >= chunkEnd)
                    break;
            }
#endif
            const uchar byte = *in;
            if (byte == '\n' && !plainBreak) {
                std::memcpy(out, lineBreak.data(), size_t(lineBreak.size()));
                out += lineBreak.size();
                ++in;
            } else if (byte < 0x80) {
                const qint16 mapped = fromUnicode_[byte];
                if (mapped < 0)
                    return std::nullopt;
                *out++ = uchar(mapped);
                ++in;
            } else {
                const qint32 codePoint = decodeSequence(in, end);
                if (codePoint < 0 || codePoint > 0xFFFF || fromUnicode_[codePoint] < 0)
                    return std::nullopt;
                *out++ = uchar(fromUnicode_[codePoint]);
            }
        }
        output.advance(out);
    }
    return output.take();
}

} // namespace mirtex
