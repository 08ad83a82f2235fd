// A foldable block of lines: its header line stays visible, the lines after it up to `end` can be
// hidden.
#pragma once

#include <QtGlobal>

namespace mirtex {

// Lines are numbered from 0. Invariant: end > start; depth is 1 for an outermost block.
struct FoldRegion
{
    qint64 start = 0; // the header line
    qint64 end = 0;   // the last line the fold hides
    int depth = 1;

    friend constexpr bool operator==(const FoldRegion &, const FoldRegion &) = default;
};

// A block as a detector finds it, before normalisation (end may be at or before start).
struct FoldLines
{
    qint64 start = 0;
    qint64 end = 0;

    friend constexpr bool operator==(const FoldLines &, const FoldLines &) = default;
};

} // namespace mirtex
