// Carrying one difference from one side of a comparison to the other: the replacement that makes
// the target's lines of a hunk equal to the source's, in the target text's UTF-16 offsets.
#pragma once

#include "core/compare/DiffHunk.h"
#include "core/compare/TextLines.h"
#include "core/text/TextReplacement.h"

namespace mirtex {

// `sourceRange` and `targetRange` are the two ranges of one hunk (both end at the end of their
// texts, or neither does, since everything after a hunk is matched line for line).
TextReplacement carriedLines(const TextLines &source,
                             LineRange sourceRange,
                             const TextLines &target,
                             LineRange targetRange);

} // namespace mirtex
