// Plays a macro on the current editor through the same entry points as the user's own input:
// typing and named commands into the active pane, menu actions through the registry's dispatch.
// One playback, however many runs, is one undo step named "Macro"; nothing is recorded while it
// plays. A step that cannot act (a disabled action, an unknown name) stops the playback and takes
// back everything it did. Main thread only.
#pragma once

#include "core/editor/MacroStep.h"

#include <QString>

namespace mirtex {

class CommandContext;
class CommandRegistry;
class EditorView;
class MacroRecorder;

class MacroPlayer
{
public:
    struct Result
    {
        enum class Outcome {
            played,
            noMacro,
            noEditor,
            readOnly,    // the macro edits and the document is read-only: nothing was done
            stepRefused, // a step could not act: everything was taken back
        };

        Outcome outcome = Outcome::played;
        int runs = 0;
        QString refusedStep; // the name of the step that could not act

        // In Italian; empty when the user need not be told.
        QString message() const;
    };

    MacroPlayer(MacroRecorder &recorder, CommandRegistry &registry, CommandContext &context);

    // Plays `steps` `count` times, or for 0 to the end of the text (see MacroRepeat).
    Result play(const Macro &steps, int count = 1);

private:
    bool playOnce(const Macro &steps, EditorView &editor, QString &refused);

    MacroRecorder &m_recorder;
    CommandRegistry &m_registry;
    CommandContext &m_context;
};

} // namespace mirtex
