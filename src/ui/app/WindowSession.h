// The session of the main window: its tabs (with the unsaved text as backups), the selected tab,
// the workspace and the sidebar, written to and restored from the state folder by the one
// process that holds the folder's lock.
#pragma once

#include "core/document/SessionStore.h"
#include "ui/app/SessionKeeper.h"

#include <memory>

namespace mirtex {

class Preferences;
class SessionLock;
struct SessionState;

class WindowSession : public SessionKeeper
{
public:
    // Takes the folder's lock at once; without it the session is another instance's.
    explicit WindowSession(Preferences &prefs,
                           const QString &folder = SessionStore::defaultFolderPath());
    ~WindowSession() override;

    bool isWriter() const override;
    bool restore(DocumentFlows &flows) override;
    std::optional<QString> write(MainWindow &window) override;
    void remove() override;

    QString folderPath() const override { return m_store.folderPath(); }

private:
    bool restoreEntry(DocumentFlows &flows, const SessionState::Entry &entry);

    Preferences &m_prefs;
    std::unique_ptr<SessionLock> m_lock;
    SessionStore m_store;
    // While restoring: the entries not restored yet, written back as they are if the session
    // must be written before the restore is over (a termination signal during a question).
    std::optional<QList<SessionState::Entry>> m_notRestored;
};

} // namespace mirtex
