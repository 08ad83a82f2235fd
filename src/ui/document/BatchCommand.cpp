#include "ui/document/BatchCommand.h"

#include "ui/commands/Beep.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorView.h"

namespace mirtex {

bool runBatchCommand(CommandContext &context, const BatchMaker &make)
{
    EditorView *editor = context.currentEditor();
    if (!editor)
        return false;
    if (!context.isEditable()) {
        beep();
        return false;
    }
    const QString text = editor->text();
    const std::optional<EditBatch> batch = make(text, editor->selections());
    if (!batch) {
        beep();
        return false;
    }
    return !batch->isEmpty() && editor->applyBatch(*batch);
}

} // namespace mirtex
