// Launch timing seen from outside: with MIRTEX_FIRST_PAINT_PROBE set, the first time an editor
// pane holding text has been painted, the process prints the monotonic clock and its memory
// high-water mark to stderr and exits at once (bench/outside/launch_to_paint.py reads them).
// Without the variable nothing is installed.
#pragma once

namespace mirtex::FirstPaintProbe {

// Call once the QApplication exists.
void installFromEnvironment();

} // namespace mirtex::FirstPaintProbe
