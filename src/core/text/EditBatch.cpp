#include "core/text/EditBatch.h"

#include <algorithm>
#include <numeric>

namespace mirtex {

bool isWellFormed(const EditBatch &batch, qsizetype textLength)
{
    qsizetype previousEnd = 0;
    for (const TextReplacement &replacement : batch.replacements) {
        const TextRange &range = replacement.range;
        if (range.location < previousEnd || range.length < 0 || range.end() > textLength)
            return false;
        previousEnd = range.end();
    }
    return true;
}

QString applyEditBatch(QStringView text, const EditBatch &batch)
{
    return applyReplacements(text, batch.replacements);
}

QString applyReplacements(QStringView text,
                          const std::vector<TextReplacement> &replacements,
                          qsizetype textStart)
{
    qsizetype size = text.size();
    for (const TextReplacement &replacement : replacements)
        size += replacement.text.size() - replacement.range.length;
    QString result;
    result.reserve(size);
    qsizetype copied = 0; // relative to textStart
    for (const TextReplacement &replacement : replacements) {
        const qsizetype location = replacement.range.location - textStart;
        result.append(text.sliced(copied, location - copied));
        result.append(replacement.text);
        copied = location + replacement.range.length;
    }
    result.append(text.sliced(copied));
    return result;
}

Selections mapSelections(const Selections &selections,
                         const std::vector<TextReplacement> &replacements)
{
    // Every anchor and caret, visited in ascending order in one walk over the replacements.
    std::vector<qsizetype> offsets;
    offsets.reserve(selections.size() * 2);
    for (const Selection &selection : selections) {
        offsets.push_back(selection.anchor);
        offsets.push_back(selection.caret);
    }
    std::vector<std::size_t> order(offsets.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return offsets[i]; });

    std::vector<qsizetype> mapped(offsets.size());
    std::size_t next = 0;
    qsizetype delta = 0;
    for (const std::size_t i : order) {
        const qsizetype offset = offsets[i];
        // A replacement affects the offset unless it starts after it, or starts at it and
        // replaces something (the offset then sits before the replaced text).
        while (next < replacements.size()) {
            const TextRange &range = replacements[next].range;
            if (offset < range.location || (offset == range.location && range.length > 0))
                break;
            delta += replacements[next].text.size() - range.length;
            ++next;
        }
        const qsizetype floor = next > 0 ? replacements[next - 1].range.end() : 0;
        mapped[i] = std::max(offset, floor) + delta;
    }

    std::vector<Selection> result;
    result.reserve(selections.size());
    for (std::size_t i = 0; i < selections.size(); ++i)
        result.push_back({mapped[2 * i], mapped[2 * i + 1]});
    return Selections(std::move(result), selections.mainIndex());
}

} // namespace mirtex
