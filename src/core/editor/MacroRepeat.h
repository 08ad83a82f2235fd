// How many times "Esegui la macro più volte" plays a macro: a given number of times, or, for 0,
// until the caret reaches the end of the text, stopping early when a run makes no progress and
// after kMaxRunsToEnd runs at most. Pure: the runs and the editor's state come in as functions.
#pragma once

#include <QtGlobal>

#include <functional>

namespace mirtex {

struct MacroProgress
{
    qsizetype caretOffset = 0; // the start of the active pane's main selection, UTF-16
    qsizetype textLength = 0;  // UTF-16

    friend bool operator==(const MacroProgress &, const MacroProgress &) = default;
};

class MacroRepeat
{
public:
    static constexpr int kMaxRunsToEnd = 100'000;

    // The count asked for: more than 0 plays that many times, 0 to the end of the text; a
    // negative count plays nothing.
    explicit MacroRepeat(int count)
        : m_count(count)
    {}

    // Plays `runOnce` until a stop rule holds; `state` tells the caret and the length of the text
    // before and after each run. A run that returns false (its macro could not act) ends the
    // repetition. Returns the number of runs made.
    int run(const std::function<bool()> &runOnce,
            const std::function<MacroProgress()> &state) const;

    // After a run that went from `before` to `after`, the `runs`-th: whether to stop.
    bool stopsAfter(int runs, MacroProgress before, MacroProgress after) const;

private:
    int m_count;
};

} // namespace mirtex
