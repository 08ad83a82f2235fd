#include "core/editor/MacroRepeat.h"

namespace mirtex {

bool MacroRepeat::stopsAfter(int runs, MacroProgress before, MacroProgress after) const
{
    if (m_count > 0)
        return runs >= m_count;
    if (after.caretOffset >= after.textLength)
        return true;
    // The macro did not move the caret and changed no length: it would do the same forever.
    if (after == before)
        return true;
    return runs >= kMaxRunsToEnd;
}

int MacroRepeat::run(const std::function<bool()> &runOnce,
                     const std::function<MacroProgress()> &state) const
{
    if (m_count < 0)
        return 0;
    int runs = 0;
    for (;;) {
        const MacroProgress before = state();
        const bool acted = runOnce();
        ++runs;
        if (!acted || stopsAfter(runs, before, state()))
            return runs;
    }
}

} // namespace mirtex
