// The common run of a command that edits through a batch: on the current tab's editor, refused
// with a beep when the document is read-only or when the batch cannot be made (invalid input),
// applied as one undo step otherwise, and nothing at all when the batch is empty.
#pragma once

#include "core/text/EditBatch.h"

#include <functional>
#include <optional>

namespace mirtex {

class CommandContext;

using BatchMaker
    = std::function<std::optional<EditBatch>(QStringView text, const Selections &selections)>;

// Returns whether the text changed.
bool runBatchCommand(CommandContext &context, const BatchMaker &make);

} // namespace mirtex
