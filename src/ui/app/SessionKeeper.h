// What the launch/quit sequence asks of the saved session: the one seam between it and session
// storage.
#pragma once

namespace mirtex {

class DocumentFlows;
class MainWindow;

class SessionKeeper
{
public:
    virtual ~SessionKeeper() = default;

    // Reopens the saved tabs in the flows' window (files above the large-file threshold are
    // asked about); true when it opened at least one.
    virtual bool restore(DocumentFlows &flows) = 0;
    // Writes the tabs (and the unsaved text) now.
    virtual void write(MainWindow &window) = 0;
    // Forgets the saved session (quit with the preference off).
    virtual void remove() = 0;
};

} // namespace mirtex
