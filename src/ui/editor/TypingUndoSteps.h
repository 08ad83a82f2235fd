// Where the undo steps of typing end. Scintilla merges every run of adjacent typing (and every run
// of single-character deletions) into one undo step, however long; this ends the step where users
// expect: before a space, punctuation or a new line typed after a word, after a pause, when the
// caret or the selection moved other than by typing, when input moves to the other pane, and when
// a command runs. One per Scintilla document (shared by its panes). Main thread only.
#pragma once

#include <QStringView>

#include <chrono>
#include <functional>

class QKeyEvent;
class QsciScintillaBase;

namespace mirtex {

class TypingUndoSteps
{
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds kDefaultPause{1000};

    enum class Input {
        typing,   // text typed (a key, an input method's commit)
        newLine,  // Enter
        deletion, // Backspace, Delete and their word forms
        caretKey, // any other key but a lone modifier: a move, a selection, a shortcut
        none,     // a lone modifier (Shift before a capital): changes nothing
    };

    static Input classify(const QKeyEvent &event);

    // Keys typed further apart than this start a new step.
    void setPauseInterval(std::chrono::milliseconds pause) { m_pause = pause; }

    // Where the time of each input comes from (tests make their own pauses).
    void setClock(std::function<Clock::time_point()> now) { m_now = std::move(now); }

    // Around every input `pane` handles. Before it, ends the current step if the input must start a
    // new one; after it, remembers where the caret was left. `text` is what is typed, for typing.
    // Both cost a few constant-time Scintilla queries.
    void beforeInput(QsciScintillaBase &pane, Input input, QStringView text = {});
    void afterInput(QsciScintillaBase &pane);

    // The next input starts a new step (a command ran, the caret was moved by the user, a new
    // text was loaded).
    void closeStep() { m_closed = true; }

private:
    struct CaretState
    {
        long caret = -1;
        long anchor = -1;
        long selectionCount = 0;
        long length = -1;

        friend bool operator==(const CaretState &, const CaretState &) = default;
    };

    static CaretState caretState(QsciScintillaBase &pane);

    std::chrono::milliseconds m_pause = kDefaultPause;
    std::function<Clock::time_point()> m_now = &Clock::now;
    bool m_closed = true;
    const QsciScintillaBase *m_lastPane = nullptr;
    CaretState m_caretAfter;
    Input m_current = Input::none; // the input being handled
    Input m_lastInput = Input::none;
    bool m_lastTypedWord = false; // the last character typed belongs to a word
    Clock::time_point m_lastTime;
};

} // namespace mirtex
