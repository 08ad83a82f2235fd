// The one beep of the program: a command that cannot act (read-only text, nothing to do where a
// user expects something) says so with it. Silenced while the built-in self-test runs; counted so
// that tests can tell a refusal from a silent no-op. Main thread only.
#pragma once

namespace mirtex {

void beep();

// While silenced, beeps are counted but not heard.
void setBeepSilenced(bool silenced);

// Beeps since the program started.
int beepCount();

} // namespace mirtex
