// The keys the editor panes handle themselves: Scintilla's bindings that move the caret, select,
// scroll, type a new line or a tab and delete a character or a word. Every other binding
// QScintilla makes (line cut, transpose and duplicate, case changes, its own undo, clipboard and
// zoom keys...) is removed, so that a key either runs a registered command or does what is listed
// here. Main thread only.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

class QsciScintilla;

namespace mirtex {

class EditorKeys
{
public:
    struct Binding
    {
        QString label; // translated
        QList<QKeySequence> keys;
    };

    // Leaves `pane` with the bindings listed by bindings() and no other.
    static void configure(QsciScintilla &pane);

    // What a configured pane does with keys, in a reading order (moves, selections, edits).
    static const QList<Binding> &bindings();
};

} // namespace mirtex
