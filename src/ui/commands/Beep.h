// The short sound of a command that cannot act (a read-only document, invalid input for a tool).
// Silent while the built-in self-test runs. Main thread only.
#pragma once

namespace mirtex {

void beep();
void setBeepSilenced(bool silenced);
// How many beeps were asked for so far, sounded or not (tests check refusals by it).
int beepCount();

} // namespace mirtex
