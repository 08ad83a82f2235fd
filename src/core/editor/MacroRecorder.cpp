#include "core/editor/MacroRecorder.h"

namespace mirtex {

void MacroRecorder::record(const MacroStep &step)
{
    if (!wantsSteps())
        return;
    if (step.kind == MacroStep::Kind::insert && !m_recording.isEmpty()
        && m_recording.back().kind == MacroStep::Kind::insert) {
        m_recording.back().text += step.text;
        return;
    }
    m_recording.append(step);
}

void MacroRecorder::start()
{
    m_recording.clear();
    m_isRecording = true;
    if (m_onStateChange)
        m_onStateChange();
}

void MacroRecorder::stop()
{
    m_isRecording = false;
    if (!m_recording.isEmpty())
        m_macro = std::exchange(m_recording, {});
    if (m_onStateChange)
        m_onStateChange();
}

bool MacroRecorder::toggle()
{
    if (m_isRecording)
        stop();
    else
        start();
    return m_isRecording;
}

} // namespace mirtex
