// The edits of the line operations, case conversions, text tools and date insertion, as batches
// over the text and its selections: pure functions, applied by the editor as one undo step named
// by the batch's label. An empty batch changes nothing and adds no undo step.
#pragma once

#include "core/text/EditBatch.h"
#include "core/tools/CaseConversion.h"
#include "core/tools/LineOperation.h"
#include "core/tools/TextTool.h"

#include <optional>

namespace mirtex {

// The whole lines each selection touches (a selection ending at the start of a line does not
// take that line), or the whole text when no selection holds text. A block's final LF stays where
// it is; each changed block is selected afterwards.
EditBatch lineOperationBatch(QStringView text,
                             const Selections &selections,
                             LineOperation operation,
                             const LineOperationOptions &options);

// Each selection, or the word around each empty caret (nothing when there is none), converted and
// selected.
EditBatch
caseConversionBatch(QStringView text, const Selections &selections, CaseConversion conversion);

// Each selection's text through the tool; one caret with nothing selected takes the whole text.
// Nothing when the tool refuses any of them (invalid input).
std::optional<EditBatch> textToolBatch(QStringView text,
                                       const Selections &selections,
                                       TextTool tool,
                                       QStringView indentUnit);

// `inserted` in place of every selection, each caret left after it.
EditBatch
insertionBatch(const Selections &selections, const QString &inserted, const QString &label);

// The word around `utf16Offset` (letters, digits, marks and "_"), empty when there is none.
TextRange wordRangeAt(QStringView text, qsizetype utf16Offset);

} // namespace mirtex
