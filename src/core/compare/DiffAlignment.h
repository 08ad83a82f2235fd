// Two texts laid side by side by their diff: rows where equal lines face each other, a changed
// stretch shown next to its replacement, and empty filler rows on the shorter side of a difference.
// Pure value; built on any thread.
#pragma once

#include "core/compare/TextDiff.h"

#include <cstdint>
#include <vector>

namespace mirtex {

enum class AlignedRowKind : uint8_t {
    equal,
    changed, // part of a difference with lines on both sides
    added,   // only on the right
    removed, // only on the left
    filler,  // no line: the other side has one here
};

struct AlignedSide
{
    std::vector<int32_t> lineOfRow; // line index shown on each row; -1 on filler rows
    std::vector<AlignedRowKind> kindOfRow;
};

struct DiffAlignment
{
    AlignedSide left;
    AlignedSide right;
    std::vector<LineRange> hunkRows; // rows of each hunk, in hunk order

    qsizetype rowCount() const { return qsizetype(left.lineOfRow.size()); }

    static DiffAlignment of(const TextDiff &diff);

    // The hunk whose rows hold `row`, or the first hunk after it when `orAfter`; -1 when none.
    qsizetype hunkAtRow(qsizetype row, bool orAfter = false) const;
};

// The side's rows as one text, a line per row (empty on filler rows).
QString alignedText(const TextLines &lines, const AlignedSide &side);

} // namespace mirtex
