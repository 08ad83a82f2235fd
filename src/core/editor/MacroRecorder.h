// The application's one macro recorder: the recording in progress and the last finished macro.
// The editor's input, its named commands and the command dispatch report steps here; playback
// sets isPlaying so that nothing it does is recorded. Main thread only.
#pragma once

#include "core/editor/MacroStep.h"

#include <functional>
#include <utility>

namespace mirtex {

class MacroRecorder
{
public:
    bool isRecording() const { return m_isRecording; }

    bool isPlaying() const { return m_isPlaying; }

    const Macro &recording() const { return m_recording; }

    const Macro &macro() const { return m_macro; }

    // Steps are wanted now: recording and not playing.
    bool wantsSteps() const { return m_isRecording && !m_isPlaying; }

    // Appends `step` when steps are wanted. Text typed right after text typed joins the same
    // insertion, so that a typed word is one step.
    void record(const MacroStep &step);

    // Empties the recording and records from now on; the last macro stays.
    void start();
    // Stops recording; a recording with steps becomes the macro, an empty one keeps the last.
    void stop();
    // Starts or stops; returns whether it is now recording.
    bool toggle();

    // Makes `steps` the macro played by the play commands (a saved macro chosen by the user).
    void setMacro(Macro steps) { m_macro = std::move(steps); }

    // Sets isPlaying for the lifetime of the returned guard (playbacks may nest: a saved macro
    // played from within another).
    class Playing
    {
    public:
        explicit Playing(MacroRecorder &recorder)
            : m_recorder(recorder)
            , m_was(std::exchange(recorder.m_isPlaying, true))
        {}

        ~Playing() { m_recorder.m_isPlaying = m_was; }

        Playing(const Playing &) = delete;
        Playing &operator=(const Playing &) = delete;

    private:
        MacroRecorder &m_recorder;
        bool m_was;
    };

    // Told after every start and stop (menus, the status bar indicator).
    void setOnStateChange(std::function<void()> onStateChange)
    {
        m_onStateChange = std::move(onStateChange);
    }

private:
    bool m_isRecording = false;
    bool m_isPlaying = false;
    Macro m_recording;
    Macro m_macro;
    std::function<void()> m_onStateChange;
};

} // namespace mirtex
