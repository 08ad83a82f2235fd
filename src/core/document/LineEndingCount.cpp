#include "core/document/LineEndingCount.h"

#include <QList>

#include <algorithm>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

namespace {

// Code units of `width` bytes; `order` says where the low byte sits.
template<int width>
LineEndingCount countUnits(QByteArrayView bytes, bool bigEndian)
{
    LineEndingCount count;
    const qsizetype units = bytes.size() / width;
    const auto *data = reinterpret_cast<const uchar *>(bytes.data());
    auto unitAt = [&](qsizetype i) {
        quint32 value = 0;
        for (int b = 0; b < width; ++b) {
            const int shift = bigEndian ? 8 * (width - 1 - b) : 8 * b;
            value |= quint32(data[i * width + b]) << shift;
        }
        return value;
    };
    for (qsizetype i = 0; i < units; ++i) {
        const quint32 unit = unitAt(i);
        if (unit == '\n') {
            ++count.lf;
        } else if (unit == '\r') {
            if (i + 1 < units && unitAt(i + 1) == '\n') {
                ++count.crlf;
                ++i;
            } else {
                ++count.cr;
            }
        }
    }
    return count;
}

// One pass, sixteen bytes at a time: LF and CR are counted from compare masks, and a CR LF pair
// is a CR bit with an LF bit right after it (the last CR of a block looks at the next block).
// Large CRLF files are read at memory speed; a byte loop was several times slower.
LineEndingCount countBytes(QByteArrayView bytes)
{
    const auto *data = reinterpret_cast<const uchar *>(bytes.data());
    const qsizetype size = bytes.size();
    qsizetype lineFeeds = 0;
    qsizetype carriageReturns = 0;
    qsizetype pairs = 0;
    qsizetype i = 0;
#if defined(__SSE2__)
    const __m128i lf = _mm_set1_epi8('\n');
    const __m128i cr = _mm_set1_epi8('\r');
    bool crBefore = false; // the previous block ended with CR
    for (; i + 16 <= size; i += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(data + i));
        const auto lfMask = unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(block, lf)));
        const auto crMask = unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(block, cr)));
        if ((lfMask | crMask) == 0) {
            crBefore = false;
            continue;
        }
        lineFeeds += std::popcount(lfMask);
        carriageReturns += std::popcount(crMask);
        pairs += std::popcount((crMask << 1 | unsigned(crBefore)) & lfMask);
        crBefore = (crMask >> 15) & 1;
    }
    if (crBefore && i < size && data[i] == '\n')
        ++pairs;
#endif
    for (; i < size; ++i) {
        if (data[i] == '\n') {
            ++lineFeeds;
        } else if (data[i] == '\r') {
            ++carriageReturns;
            if (i + 1 < size && data[i + 1] == '\n')
                ++pairs;
        }
    }
    return {pairs, lineFeeds - pairs, carriageReturns - pairs};
}

} // namespace

LineEndingCount countLineEndings(QByteArrayView bytes, TextEncoding encoding)
{
    switch (encoding.encoding) {
    case CharacterSet::utf16LE:
        return countUnits<2>(bytes, false);
    case CharacterSet::utf16BE:
        return countUnits<2>(bytes, true);
    case CharacterSet::utf32LE:
        return countUnits<4>(bytes, false);
    case CharacterSet::utf32BE:
        return countUnits<4>(bytes, true);
    default:
        return countBytes(bytes);
    }
}

QString LineEndingCount::summary() const
{
    QList<std::pair<qsizetype, const char *>> kinds = {{crlf, "CRLF"}, {lf, "LF"}, {cr, "CR"}};
    std::stable_sort(
        kinds.begin(), kinds.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    QStringList parts;
    for (const auto &[number, name] : kinds) {
        if (number > 0)
            parts.append(QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(number));
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace mirtex
