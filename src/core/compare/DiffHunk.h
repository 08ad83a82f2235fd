// One difference between two texts: a stretch of left lines that became a stretch of right lines.
#pragma once

#include <QtGlobal>

namespace mirtex {

// Half-open range of 0-based line indices.
struct LineRange
{
    qsizetype start = 0;
    qsizetype end = 0;

    constexpr qsizetype count() const { return end - start; }

    constexpr bool isEmpty() const { return end == start; }

    friend constexpr bool operator==(const LineRange &, const LineRange &) = default;
};

// At least one of the two ranges is non-empty.
struct DiffHunk
{
    enum class Kind {
        changed,
        deleted,
        inserted,
    };

    LineRange left;
    LineRange right;

    constexpr Kind kind() const
    {
        if (left.isEmpty())
            return Kind::inserted;
        return right.isEmpty() ? Kind::deleted : Kind::changed;
    }

    friend constexpr bool operator==(const DiffHunk &, const DiffHunk &) = default;
};

} // namespace mirtex
