// Which words changed inside one pair of changed lines, for highlighting them. Pure; any thread.
#pragma once

#include "core/compare/DiffOptions.h"
#include "core/text/TextRange.h"

#include <QStringView>

#include <optional>
#include <vector>

namespace mirtex {

struct WordChangeRanges
{
    std::vector<TextRange> left;  // UTF-16 ranges in the left line, in order
    std::vector<TextRange> right; // the same in the right line
};

// Lines of this many UTF-16 units or more are not compared word by word.
inline constexpr qsizetype kWordCompareLimit = 4000;
// Below this share of matched text, the lines are shown as changed as a whole.
inline constexpr double kWordSimilarityFloor = 0.3;

// Nothing when either line is empty or too long, or when the lines have too little in common:
// the whole line is then shown as changed.
std::optional<WordChangeRanges>
wordChanges(QStringView left, QStringView right, DiffOptions options);

} // namespace mirtex
