// Runs a command that is a pure function of the text and the selections on the current editor,
// as one undo step named by its label: a read-only text refuses it with a beep, and a command
// with nothing to do adds no undo step (and beeps when asked to).
#pragma once

#include "core/text/EditBatch.h"

#include <QString>
#include <QStringView>

#include <functional>

namespace mirtex {

class CommandContext;

using EditComputation = std::function<EditBatch(QStringView text, const Selections &selections)>;

enum class WhenNothingToDo {
    stayQuiet,
    beep
};

// Returns whether the text changed.
bool runEditCommand(CommandContext &context,
                    const QString &undoLabel,
                    const EditComputation &compute,
                    WhenNothingToDo nothing = WhenNothingToDo::stayQuiet);

} // namespace mirtex
