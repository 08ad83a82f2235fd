// What the application asks of the saved session at launch and quit: the one seam between the
// launch/quit sequence and session storage.
#pragma once

namespace mirtex {

class MainWindow;

class SessionKeeper
{
public:
    virtual ~SessionKeeper() = default;

    // Reopens the saved tabs; true when it opened at least one.
    virtual bool restore(MainWindow &window) = 0;
    // Writes the tabs (and the unsaved text) now.
    virtual void write(MainWindow &window) = 0;
    // Forgets the saved session (quit with the preference off).
    virtual void remove() = 0;
};

} // namespace mirtex
