#include "core/editor/FoldState.h"

#include <algorithm>

namespace mirtex {

namespace {

bool byKey(const Fold &a, const Fold &b)
{
    return a.key < b.key;
}

} // namespace

TextRange FoldState::hiddenRangeOf(const FoldRegion &region, const LineLookup &lines)
{
    const qint64 from = lines.lineStart(region.start + 1);
    const qint64 to
        = region.end + 1 < lines.lineCount() ? lines.lineStart(region.end + 1) : lines.textLength();
    return {from, std::max<qint64>(0, to - from)};
}

const FoldRegion *FoldState::regionStartingAt(qint64 lineIndex) const
{
    const auto it = std::lower_bound(
        m_regions.begin(), m_regions.end(), lineIndex, [](const FoldRegion &r, qint64 line) {
            return r.start < line;
        });
    return it != m_regions.end() && it->start == lineIndex ? &*it : nullptr;
}

std::vector<Fold>::iterator FoldState::findFold(qint64 key)
{
    const auto it = std::lower_bound(m_folds.begin(), m_folds.end(), Fold{key, {}}, byKey);
    return it != m_folds.end() && it->key == key ? it : m_folds.end();
}

bool FoldState::rebuildHidden()
{
    std::vector<TextRange> ranges;
    ranges.reserve(m_folds.size());
    for (const Fold &fold : m_folds) {
        if (fold.hidden.length > 0)
            ranges.push_back(fold.hidden);
    }
    if (!std::is_sorted(ranges.begin(), ranges.end(), [](TextRange a, TextRange b) {
            return a.location < b.location;
        }))
        std::sort(ranges.begin(), ranges.end(), [](TextRange a, TextRange b) {
            return a.location < b.location;
        });
    std::vector<TextRange> merged;
    merged.reserve(ranges.size());
    for (const TextRange &range : ranges) {
        if (!merged.empty() && range.location <= merged.back().end()) {
            const qint64 end = std::max(merged.back().end(), range.end());
            merged.back().length = end - merged.back().location;
        } else {
            merged.push_back(range);
        }
    }
    if (merged == m_hidden)
        return false;
    m_hidden = std::move(merged);
    return true;
}

bool FoldState::setFolds(std::vector<Fold> folds)
{
    std::sort(folds.begin(), folds.end(), byKey);
    folds.erase(std::unique(folds.begin(),
                            folds.end(),
                            [](const Fold &a, const Fold &b) { return a.key == b.key; }),
                folds.end());
    m_folds = std::move(folds);
    return rebuildHidden();
}

bool FoldState::installRegions(std::vector<FoldRegion> regions, const LineLookup &lines)
{
    m_regions = std::move(regions);
    std::vector<Fold> kept;
    kept.reserve(m_folds.size());
    for (const Fold &fold : m_folds) {
        const qint64 line = lines.lineOf(fold.key);
        const FoldRegion *region = regionStartingAt(line);
        if (!region)
            continue;
        const TextRange hidden = hiddenRangeOf(*region, lines);
        if (hidden.length > 0)
            kept.push_back({lines.lineStart(line), hidden, hidden.location - 1});
    }
    return setFolds(std::move(kept));
}

bool FoldState::clear()
{
    m_regions.clear();
    m_folds.clear();
    return rebuildHidden();
}

FoldCarry FoldState::carryThroughEdit(TextRange editedInNewText, qint64 changeInLength)
{
    if (m_folds.empty())
        return {};
    bool reshaped = false;
    const qint64 start = editedInNewText.location;
    const qint64 newEnd = editedInNewText.end();
    const qint64 oldEnd = newEnd - changeInLength;
    const bool removes = oldEnd > start;
    std::vector<Fold> carried;
    carried.reserve(m_folds.size());
    for (Fold fold : m_folds) {
        TextRange &h = fold.hidden;
        // The header's line break went: the header line is no longer a line of its own.
        if (removes && fold.lineBreak >= start && fold.lineBreak < oldEnd) {
            reshaped = true;
            continue;
        }
        if (fold.lineBreak >= oldEnd)
            fold.lineBreak += changeInLength;
        if (h.location >= oldEnd) {
            h.location += changeInLength;
        } else if (h.end() > start) {
            // The hidden text holds or overlaps the edit: it keeps what survived, and the new
            // text when that lies strictly inside it (as a deletion followed by an insertion).
            const qint64 from = h.location < start ? h.location : newEnd;
            const qint64 to = h.end() > oldEnd ? h.end() + changeInLength : start;
            h = {from, std::max<qint64>(0, to - from)};
            reshaped = true;
        }
        if (fold.key >= oldEnd)
            fold.key += changeInLength;
        else if (fold.key >= start)
            fold.key = newEnd; // the first of the header's units that survived
        carried.push_back(fold);
    }
    // Keys keep their order (a key never passes another), but two may now be equal.
    const auto duplicates
        = std::unique(carried.begin(), carried.end(), [](const Fold &a, const Fold &b) {
              return a.key == b.key;
          });
    reshaped = reshaped || duplicates != carried.end();
    carried.erase(duplicates, carried.end());
    m_folds = std::move(carried);
    const bool hiddenChanged = rebuildHidden();
    return {hiddenChanged, reshaped};
}

bool FoldState::isFolded(qint64 lineIndex, const LineLookup &lines) const
{
    const qint64 key = lines.lineStart(lineIndex);
    return std::binary_search(m_folds.begin(), m_folds.end(), Fold{key, {}}, byKey);
}

bool FoldState::fold(qint64 lineIndex, const LineLookup &lines)
{
    const FoldRegion *region = regionStartingAt(lineIndex);
    if (!region)
        return false;
    const qint64 key = lines.lineStart(lineIndex);
    const TextRange hidden = hiddenRangeOf(*region, lines);
    if (hidden.length == 0)
        return false;
    if (auto it = findFold(key); it != m_folds.end())
        *it = {key, hidden, hidden.location - 1};
    else
        m_folds.insert(std::lower_bound(m_folds.begin(), m_folds.end(), Fold{key, {}}, byKey),
                       Fold{key, hidden, hidden.location - 1});
    return rebuildHidden();
}

bool FoldState::unfold(qint64 lineIndex, const LineLookup &lines)
{
    const auto it = findFold(lines.lineStart(lineIndex));
    if (it == m_folds.end())
        return false;
    m_folds.erase(it);
    return rebuildHidden();
}

bool FoldState::foldCurrentBlock(qint64 lineIndex, const LineLookup &lines)
{
    if (regionStartingAt(lineIndex) && !isFolded(lineIndex, lines))
        return fold(lineIndex, lines);
    // Regions are sorted by start, so the innermost around the line is the last one holding it.
    auto it = std::lower_bound(m_regions.begin(),
                               m_regions.end(),
                               lineIndex,
                               [](const FoldRegion &r, qint64 line) { return r.start < line; });
    while (it != m_regions.begin()) {
        --it;
        if (it->end >= lineIndex && !isFolded(it->start, lines))
            return fold(it->start, lines);
    }
    return false;
}

bool FoldState::foldAll(const LineLookup &lines)
{
    std::vector<Fold> folds;
    folds.reserve(m_regions.size());
    for (const FoldRegion &region : m_regions) {
        const TextRange hidden = hiddenRangeOf(region, lines);
        if (hidden.length > 0)
            folds.push_back({lines.lineStart(region.start), hidden, hidden.location - 1});
    }
    m_folds = std::move(folds); // regions are sorted by start, so their keys are too
    return rebuildHidden();
}

bool FoldState::unfoldAll()
{
    m_folds.clear();
    return rebuildHidden();
}

bool FoldState::foldLevel(int depth, const LineLookup &lines)
{
    std::vector<Fold> folds = m_folds;
    for (const FoldRegion &region : m_regions) {
        if (region.depth != depth)
            continue;
        const TextRange hidden = hiddenRangeOf(region, lines);
        if (hidden.length > 0)
            folds.push_back({lines.lineStart(region.start), hidden, hidden.location - 1});
    }
    std::stable_sort(folds.begin(), folds.end(), byKey);
    return setFolds(std::move(folds));
}

bool FoldState::foldAllExcept(qint64 lineIndex, const LineLookup &lines)
{
    std::vector<Fold> folds;
    for (const FoldRegion &region : m_regions) {
        if (region.start <= lineIndex && lineIndex <= region.end)
            continue;
        const TextRange hidden = hiddenRangeOf(region, lines);
        if (hidden.length > 0)
            folds.push_back({lines.lineStart(region.start), hidden, hidden.location - 1});
    }
    return setFolds(std::move(folds));
}

bool FoldState::unfoldAround(TextRange range)
{
    const auto size = m_folds.size();
    std::erase_if(m_folds, [range](const Fold &fold) {
        const TextRange &h = fold.hidden;
        if (range.length == 0)
            return h.contains(range.location);
        return h.location < range.end() && range.location < h.end();
    });
    if (m_folds.size() == size)
        return false;
    rebuildHidden();
    return true;
}

std::optional<TextRange> FoldState::hiddenRangeContaining(qint64 utf16Offset) const
{
    auto it = std::upper_bound(
        m_hidden.begin(), m_hidden.end(), utf16Offset, [](qint64 offset, const TextRange &r) {
            return offset < r.location;
        });
    if (it == m_hidden.begin())
        return std::nullopt;
    --it;
    return it->contains(utf16Offset) ? std::optional(*it) : std::nullopt;
}

qint64 FoldState::visibleOffset(qint64 utf16Offset) const
{
    const std::optional<TextRange> hidden = hiddenRangeContaining(utf16Offset);
    return hidden ? std::max<qint64>(0, hidden->location - 1) : utf16Offset;
}

std::vector<qint64> FoldState::foldedLines(const LineLookup &lines) const
{
    std::vector<qint64> result;
    result.reserve(m_folds.size());
    for (const Fold &fold : m_folds)
        result.push_back(lines.lineOf(fold.key));
    return result;
}

} // namespace mirtex
