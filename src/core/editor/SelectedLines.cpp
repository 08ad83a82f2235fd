#include "core/editor/SelectedLines.h"

#include <algorithm>

namespace mirtex {

DocumentLines::DocumentLines(QStringView text)
    : m_text(text)
{
    m_index.rebuild(text);
}

qsizetype DocumentLines::end(qsizetype lineIndex) const
{
    return lineIndex + 1 < count() ? start(lineIndex + 1) - 1 : m_text.size();
}

LineBlock DocumentLines::spanOf(const Selection &selection) const
{
    const qsizetype first = lineOf(selection.start());
    qsizetype last = lineOf(selection.end());
    if (last > first && start(last) == selection.end())
        --last;
    return {first, last};
}

std::vector<LineBlock> DocumentLines::spansOf(const Selections &selections,
                                              bool mergeAdjacent) const
{
    std::vector<LineBlock> spans;
    spans.reserve(selections.size());
    for (const Selection &selection : selections)
        spans.push_back(spanOf(selection));
    std::ranges::sort(spans, {}, &LineBlock::first);
    std::vector<LineBlock> merged;
    merged.reserve(spans.size());
    const qsizetype gap = mergeAdjacent ? 1 : 0;
    for (const LineBlock &span : spans) {
        if (!merged.empty() && span.first <= merged.back().last + gap)
            merged.back().last = std::max(merged.back().last, span.last);
        else
            merged.push_back(span);
    }
    return merged;
}

qsizetype indentLength(QStringView line)
{
    qsizetype length = 0;
    while (length < line.size() && (line[length] == u' ' || line[length] == u'\t'))
        ++length;
    return length;
}

bool isBlank(QStringView line)
{
    return line.trimmed().isEmpty();
}

} // namespace mirtex
