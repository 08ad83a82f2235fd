// One side of a comparison: a tab's editor (carried differences become undoable edits there, and
// the comparison follows its edits) or a fixed text (a file on disk, the clipboard).
#pragma once

#include "core/languages/Language.h"
#include "ui/editor/EditorView.h"

#include <QPointer>
#include <QString>

namespace mirtex {

struct CompareSide
{
    QString title;     // shown above the side: the displayed path, or the tab's or source's name
    QString patchName; // the name in a saved patch's "---" or "+++" line
    QPointer<EditorView> editor;
    QString text; // the text when there is no editor
    LanguagePtr language;

    // The side's text now: the editor's while it lives (kept, so that a closed tab's last text
    // stays compared), else the fixed one.
    QString currentText()
    {
        if (editor)
            text = editor->text();
        return text;
    }
};

} // namespace mirtex
