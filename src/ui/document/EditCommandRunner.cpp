#include "ui/document/EditCommandRunner.h"

#include "ui/commands/Beep.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorView.h"

namespace mirtex {

bool runEditCommand(CommandContext &context,
                    const QString &undoLabel,
                    const EditComputation &compute,
                    WhenNothingToDo nothing)
{
    EditorView *editor = context.currentEditor();
    if (!editor)
        return false;
    if (!context.isEditable()) {
        beep();
        return false;
    }
    EditBatch batch = compute(editor->text(), editor->selections());
    if (batch.isEmpty()) {
        if (nothing == WhenNothingToDo::beep)
            beep();
        return false;
    }
    batch.undoLabel = undoLabel;
    return editor->applyBatch(batch);
}

} // namespace mirtex
