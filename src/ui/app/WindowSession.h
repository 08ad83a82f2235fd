// The session of the main window: its tabs (with the unsaved text as backups), the selected tab,
// the workspace and the sidebar, written to and restored from the state folder.
#pragma once

#include "core/document/SessionStore.h"
#include "ui/app/SessionKeeper.h"

namespace mirtex {

class Preferences;
struct SessionState;

class WindowSession : public SessionKeeper
{
public:
    explicit WindowSession(Preferences &prefs,
                           const QString &folder = SessionStore::defaultFolderPath());

    bool restore(DocumentFlows &flows) override;
    void write(MainWindow &window) override;
    void remove() override;

private:
    bool restoreEntry(DocumentFlows &flows, const SessionState::Entry &entry);

    Preferences &m_prefs;
    SessionStore m_store;
};

} // namespace mirtex
