#include "core/tools/LineDuplicates.h"

#include <QHashFunctions>
#include <QString>

#include <unicode/unorm2.h>

#include <bit>
#include <deque>

namespace mirtex {

namespace {

// Lines as their NFC form: the line itself when it already is one (every line below U+0300, and
// most others by ICU's quick check), otherwise a normalised copy kept here.
class CanonicalForms
{
public:
    CanonicalForms()
    {
        UErrorCode status = U_ZERO_ERROR;
        m_nfc = unorm2_getNFCInstance(&status);
        if (U_FAILURE(status))
            m_nfc = nullptr;
    }

    QStringView of(QStringView line)
    {
        bool simple = true;
        for (const QChar c : line) {
            if (c.unicode() >= 0x300) {
                simple = false;
                break;
            }
        }
        if (simple || !m_nfc)
            return line;
        UErrorCode status = U_ZERO_ERROR;
        const auto *units = reinterpret_cast<const UChar *>(line.utf16());
        const auto size = int32_t(line.size());
        if (unorm2_spanQuickCheckYes(m_nfc, units, size, &status) == size && U_SUCCESS(status))
            return line;
        QString normal(line.size() + 8, Qt::Uninitialized);
        status = U_ZERO_ERROR;
        int32_t written = unorm2_normalize(m_nfc,
                                           units,
                                           size,
                                           reinterpret_cast<UChar *>(normal.data()),
                                           int32_t(normal.size()),
                                           &status);
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            normal.resize(written);
            status = U_ZERO_ERROR;
            written = unorm2_normalize(m_nfc,
                                       units,
                                       size,
                                       reinterpret_cast<UChar *>(normal.data()),
                                       int32_t(normal.size()),
                                       &status);
        }
        if (U_FAILURE(status))
            return line;
        normal.truncate(written);
        m_made.push_back(std::move(normal));
        return m_made.back();
    }

private:
    const UNormalizer2 *m_nfc = nullptr;
    std::deque<QString> m_made; // a deque never moves what it holds
};

} // namespace

std::vector<QStringView> removeDuplicateLines(std::span<const QStringView> lines)
{
    CanonicalForms canonical;
    // Open addressing over the kept lines' indexes, with each slot's hash beside it so that
    // most probes compare no text.
    std::size_t capacity = std::bit_ceil(std::max<std::size_t>(16, lines.size() * 2));
    const std::size_t mask = capacity - 1;
    std::vector<std::uint32_t> slots(capacity, UINT32_MAX);
    std::vector<std::size_t> slotHashes(capacity);
    std::vector<QStringView> kept;
    std::vector<QStringView> keptForms;
    kept.reserve(lines.size());
    keptForms.reserve(lines.size());
    for (const QStringView line : lines) {
        const QStringView form = canonical.of(line);
        const std::size_t hash = qHash(form, 0x9e3779b9u);
        std::size_t slot = hash & mask;
        bool seen = false;
        while (slots[slot] != UINT32_MAX) {
            if (slotHashes[slot] == hash && keptForms[slots[slot]] == form) {
                seen = true;
                break;
            }
            slot = (slot + 1) & mask;
        }
        if (seen)
            continue;
        slots[slot] = std::uint32_t(kept.size());
        slotHashes[slot] = hash;
        kept.push_back(line);
        keptForms.push_back(form);
    }
    return kept;
}

std::vector<QStringView> removeConsecutiveDuplicateLines(std::span<const QStringView> lines)
{
    CanonicalForms canonical;
    std::vector<QStringView> kept;
    QStringView previous;
    for (const QStringView line : lines) {
        const QStringView form = canonical.of(line);
        if (!kept.empty() && form == previous)
            continue;
        kept.push_back(line);
        previous = form;
    }
    return kept;
}

} // namespace mirtex
