// Line start table: a vectorised LF scan, since large files are indexed on every edit burst.
#include "core/editor/LineIndex.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex {

namespace {

// Scanning in chunks keeps the working set in cache while the table grows.
constexpr qsizetype kChunkUnits = 65536;

} // namespace

void appendLineStarts(const char16_t *units,
                      qsizetype count,
                      qint64 base,
                      std::vector<qint64> &starts)
{
    qsizetype i = 0;
#if defined(__SSE2__)
    // Sixteen units per step: two 8-unit compares packed into one byte mask, so that a bit set
    // in the mask is exactly one LF. Most steps find no LF and cost two loads and a compare.
    const __m128i lf = _mm_set1_epi16(u'\n');
    for (; i + 16 <= count; i += 16) {
        const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i *>(units + i));
        const __m128i hi = _mm_loadu_si128(reinterpret_cast<const __m128i *>(units + i + 8));
        const __m128i packed = _mm_packs_epi16(_mm_cmpeq_epi16(lo, lf), _mm_cmpeq_epi16(hi, lf));
        auto mask = unsigned(_mm_movemask_epi8(packed));
        while (mask != 0) {
            starts.push_back(base + i + std::countr_zero(mask) + 1);
            mask &= mask - 1;
        }
    }
#endif
    for (; i < count; ++i) {
        if (units[i] == u'\n')
            starts.push_back(base + i + 1);
    }
}

void LineIndex::rebuild(QStringView text)
{
    if (m_valid)
        return;
    m_valid = true;
    const qsizetype length = text.size();
    m_starts.clear();
    m_starts.reserve(std::size_t(length > 511 ? length / 32 : 16));
    m_starts.push_back(0);
    const auto *units = reinterpret_cast<const char16_t *>(text.utf16());
    for (qsizetype chunk = 0; chunk < length; chunk += kChunkUnits)
        appendLineStarts(units + chunk, std::min(kChunkUnits, length - chunk), chunk, m_starts);
}

qsizetype LineIndex::line(qint64 utf16Offset) const
{
    if (m_starts.size() <= 1)
        return 0;
    const auto after = std::upper_bound(m_starts.begin(), m_starts.end(), utf16Offset);
    return after == m_starts.begin() ? 0 : qsizetype(after - m_starts.begin()) - 1;
}

TextRange LineIndex::range(qsizetype lineNumber, qint64 textLength) const
{
    const qsizetype last = lineCount() - 1;
    const qsizetype lineIndex = std::clamp<qsizetype>(lineNumber, 0, last);
    const qint64 start = m_starts[std::size_t(lineIndex)];
    const qint64 end = lineIndex < last ? m_starts[std::size_t(lineIndex) + 1] - 1 : textLength;
    return TextRange{start, std::max<qint64>(0, end - start)};
}

} // namespace mirtex
