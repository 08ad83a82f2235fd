// The editor's side of macros. Panes report here what the user types and the key-bound commands
// they give (recorded by name through EditorCommandNames), and playback puts a macro's typing and
// commands into a pane through the same input path, so that they act at every caret and with
// auto-close and auto-indent exactly as the user's own keys. Main thread only.
#pragma once

#include <QString>

class QKeyEvent;
class QsciScintilla;

namespace mirtex {

class EditorPane;
class MacroRecorder;

class MacroInput
{
public:
    // The application's recorder (not owned); null records nothing.
    static void setRecorder(MacroRecorder *recorder);

    // Before `pane` handles a key: records the command the key is bound to, or the text it types.
    static void keyPressed(QsciScintilla &pane, const QKeyEvent &event);
    // Text an input method commits.
    static void textCommitted(const QString &text);

    // Types `text` into `pane` as keys would, one character at a time (a line break performs
    // "insertNewline:").
    static void type(EditorPane &pane, const QString &text);
    // Performs the command named `name`; false when there is no such command.
    static bool perform(EditorPane &pane, const QString &name);
};

} // namespace mirtex
