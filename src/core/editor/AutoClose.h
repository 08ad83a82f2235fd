// What typing an opening bracket or quote does when auto-close is on: insert the pair, wrap the
// selection in it, or step over the closer that auto-close put after the caret. Pure rules; the
// editor pane applies the result.
#pragma once

#include "core/text/EditBatch.h"

#include <QChar>

#include <algorithm>
#include <functional>
#include <optional>

namespace mirtex {

// The UTF-16 unit at an offset of the text, or a null QChar outside it. The rules only read the
// units right before and after each selection, so a pane answers without converting its text.
using CharAt = std::function<QChar(qsizetype utf16Offset)>;

// Nothing when the key is to be typed as usual. A batch without replacements only moves the
// carets (over a closer); otherwise every selection gets the pair (wrapped around its text, which
// stays selected) and the batch is an unnamed step, like typing.
std::optional<EditBatch>
autoCloseEdit(QChar typed, const Selections &selections, const CharAt &charAt);

} // namespace mirtex
