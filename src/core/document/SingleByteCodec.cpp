#include "core/document/SingleByteCodec.h"

#include "core/document/HugePageHint.h"

#include <QHash>
#include <QMutex>

#include <unicode/ucnv.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

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

} // namespace mirtex
