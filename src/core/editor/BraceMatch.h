// Finding the bracket at the caret and its partner.
#pragma once

#include "core/text/TextRange.h"

#include <QStringView>

#include <optional>

namespace mirtex {

// How far from the bracket the partner is looked for, so that large texts stay responsive.
inline constexpr qsizetype kBraceScanLimit = 100000;

struct BraceMatch
{
    TextRange brace;                  // the bracket at the caret (length 1)
    std::optional<TextRange> partner; // its partner, when found within the scan limit

    friend bool operator==(const BraceMatch &, const BraceMatch &) = default;
};

// Looks at the character just before the caret, then at the one after it, for one of ( ) [ ] { },
// and searches its partner counting nested brackets of the same kind, at most `scanLimit` units
// away. Nothing when neither character is a bracket. Offsets are UTF-16 units; pure.
std::optional<BraceMatch>
matchBraces(QStringView text, qsizetype caret, qsizetype scanLimit = kBraceScanLimit);

} // namespace mirtex
