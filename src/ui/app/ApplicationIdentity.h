// The names the application gives itself: the settings folder ("Mirtex/Mirtex++"), the desktop
// file. No display name is set: on X11 and Wayland Qt appends one to every window title that does
// not already end with it, and the secondary windows' titles are to read exactly as written (the
// main window puts the name in its own title).
#pragma once

namespace mirtex::ApplicationIdentity {

// Call once, after the QApplication exists.
void apply();

} // namespace mirtex::ApplicationIdentity
