// The folding state of one text: its foldable regions, the folded blocks and what they hide.
// Folds are keyed by the header line's start offset, so they move with their text when lines come
// or go above them; the regions come from detection (FoldDetection) and are replaced whole.
#pragma once

#include "core/editor/FoldRegion.h"
#include "core/editor/LineLookup.h"
#include "core/text/TextRange.h"

#include <optional>
#include <vector>

namespace mirtex {

// One folded block: the offset where its header line starts and the text it hides, plus where
// the header line's line break is (the fold goes when that goes).
struct Fold
{
    qint64 key = 0;
    TextRange hidden;
    qint64 lineBreak = 0;

    friend constexpr bool operator==(const Fold &, const Fold &) = default;
};

// What carrying the folds through an edit did.
struct FoldCarry
{
    bool hiddenChanged = false; // the hidden ranges moved or changed
    bool reshaped = false;      // a fold was dropped, stretched or shrunk (not only moved)
};

// Owned by the tab's editor (main thread). Offsets are UTF-16 units into the current text; lines
// are numbered from 0 and looked up through a LineLookup over the current text. Invariants: the
// regions are sorted by start, one per start line; folds are sorted by key, one per key, none with
// an empty hidden range after installRegions(); hiddenRanges() is sorted with overlapping or
// touching ranges merged.
class FoldState
{
public:
    const std::vector<FoldRegion> &regions() const { return m_regions; }

    const std::vector<Fold> &folds() const { return m_folds; }

    const std::vector<TextRange> &hiddenRanges() const { return m_hidden; }

    // Installs newly detected regions: keeps the folds whose header line still starts a region,
    // recomputes their hidden ranges from it, drops empty ones. Returns whether the hidden ranges
    // changed.
    bool installRegions(std::vector<FoldRegion> regions, const LineLookup &lines);
    // Forgets regions and folds (a language without fold style); returns whether text was hidden.
    bool clear();

    // Carries the folds through one change of the text (editedInNewText as it stands in the new
    // text, changeInLength new minus old): folds after it move, folds before it stay, a fold
    // whose hidden text holds the edit keeps its key and stretches or shrinks. A fold whose
    // header line lost its line break is dropped.
    FoldCarry carryThroughEdit(TextRange editedInNewText, qint64 changeInLength);

    // The region whose header is the line, if any (binary search).
    const FoldRegion *regionStartingAt(qint64 lineIndex) const;
    // The text a region hides: from the start of the line after its header to the start of the
    // line after its end (or the end of the text).
    static TextRange hiddenRangeOf(const FoldRegion &region, const LineLookup &lines);

    bool isFolded(qint64 lineIndex, const LineLookup &lines) const;
    // Each returns whether the hidden ranges changed.
    bool fold(qint64 lineIndex, const LineLookup &lines);
    bool unfold(qint64 lineIndex, const LineLookup &lines);
    // The region starting on the line if it is not folded, otherwise the innermost unfolded one
    // whose hidden lines hold the line.
    bool foldCurrentBlock(qint64 lineIndex, const LineLookup &lines);
    bool foldAll(const LineLookup &lines);
    bool unfoldAll();
    bool foldLevel(int depth, const LineLookup &lines);
    // Folds every region except those holding the line (its own block and the ones around it).
    bool foldAllExcept(qint64 lineIndex, const LineLookup &lines);
    // Removes every fold whose hidden range intersects the range (an empty range at an offset
    // intersects a fold hiding that offset). Returns whether something was unfolded.
    bool unfoldAround(TextRange range);

    // The merged hidden range holding the offset, if any.
    std::optional<TextRange> hiddenRangeContaining(qint64 utf16Offset) const;
    // Where a caret at the offset belongs: just before the hidden range holding it (the end of
    // the header line), or the offset itself.
    qint64 visibleOffset(qint64 utf16Offset) const;
    // The header lines of the folds, ascending.
    std::vector<qint64> foldedLines(const LineLookup &lines) const;

private:
    bool setFolds(std::vector<Fold> folds);
    bool rebuildHidden();
    std::vector<Fold>::iterator findFold(qint64 key);

    std::vector<FoldRegion> m_regions;
    std::vector<Fold> m_folds;
    std::vector<TextRange> m_hidden;
};

} // namespace mirtex
