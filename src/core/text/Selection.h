// One selection of an editor pane: where it was started (anchor) and where the caret is, in UTF-16
// units. The caret may lie before the anchor (a selection made backwards).
#pragma once

#include "core/text/TextRange.h"

#include <algorithm>

namespace mirtex {

struct Selection
{
    qsizetype anchor = 0;
    qsizetype caret = 0;

    static constexpr Selection caretAt(qsizetype utf16Offset) { return {utf16Offset, utf16Offset}; }

    constexpr qsizetype start() const { return std::min(anchor, caret); }

    constexpr qsizetype end() const { return std::max(anchor, caret); }

    constexpr bool isEmpty() const { return anchor == caret; }

    constexpr TextRange range() const { return {start(), end() - start()}; }

    friend constexpr bool operator==(const Selection &, const Selection &) = default;
};

} // namespace mirtex
