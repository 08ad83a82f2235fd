// What the launch/quit sequence asks of the saved session: the one seam between it and session
// storage.
#pragma once

#include <QString>

#include <optional>

namespace mirtex {

class DocumentFlows;
class MainWindow;

class SessionKeeper
{
public:
    virtual ~SessionKeeper() = default;

    // False when another instance keeps the session: this one then neither restores, writes nor
    // removes it, and its tabs are not remembered.
    virtual bool isWriter() const = 0;
    // Reopens the saved tabs in the flows' window (files above the large-file threshold are
    // asked about); true when it opened at least one.
    virtual bool restore(DocumentFlows &flows) = 0;
    // Writes the tabs (and the unsaved text) now; why it could not (Italian, for the user) when
    // the session or a backup was not written.
    virtual std::optional<QString> write(MainWindow &window) = 0;

    // The periodic write: the same, but the files are written off the main thread (a write
    // still in progress makes this one wait for the next call).
    virtual void writeInBackground(MainWindow &window) { write(window); }

    // Forgets the saved session (quit with the preference off).
    virtual void remove() = 0;
    // The state folder, where the recovery folder lives; empty when there is none.
    virtual QString folderPath() const = 0;
};

} // namespace mirtex
