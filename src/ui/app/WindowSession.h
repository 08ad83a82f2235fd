// The session of the main window: its tabs (with the unsaved text as backups), the selected tab,
// the workspace and the sidebar, written to and restored from the state folder by the one
// process that holds the folder's lock.
#pragma once

#include "core/document/SessionStore.h"
#include "core/document/SessionWriter.h"
#include "ui/app/SessionKeeper.h"

#include <QHash>
#include <QPointer>

#include <memory>

namespace mirtex {

class DocumentTab;
class PendingTab;
class Preferences;
class SessionLock;
struct SessionState;

class WindowSession : public SessionKeeper
{
public:
    // Sessions of more tabs restore only the selected one at once, the others when shown.
    static constexpr qsizetype kLoadedAtOnce = 20;

    // Takes the folder's lock at once; without it the session is another instance's.
    explicit WindowSession(Preferences &prefs,
                           const QString &folder = SessionStore::defaultFolderPath());
    ~WindowSession() override;

    bool isWriter() const override;
    bool restore(DocumentFlows &flows) override;
    std::optional<QString> write(MainWindow &window) override;
    void writeInBackground(MainWindow &window) override;
    void remove() override;

    QString folderPath() const override { return m_store.folderPath(); }

    // Waits for the background write in progress and counts what it wrote.
    void finishWriting() { m_writer.finishPending(); }

private:
    // Makes the entry's tab (in the place of `replacing` when given); nullptr when there is
    // nothing to show, or when `keptPending` is set: the user declined a large backup and the
    // entry stays a tab not loaded.
    DocumentTab *restoreEntry(DocumentFlows &flows,
                              const SessionState::Entry &entry,
                              PendingTab *replacing,
                              bool *keptPending);
    // A tab that loads the entry when first shown; false when there is nothing to show.
    bool addPending(DocumentFlows &flows, const SessionState::Entry &entry);
    // What the store is handed: every tab in order, the text copied (UTF-8, as the editor holds
    // it) only where the backup is behind the document.
    SessionWriteRequest request(MainWindow &window) const;
    // Backups written count for their tabs (a tab closed meanwhile is simply not there).
    void apply(const SessionWriteResult &result);

    Preferences &m_prefs;
    std::unique_ptr<SessionLock> m_lock;
    SessionStore m_store;
    SessionWriter m_writer{m_store};
    QPointer<MainWindow> m_window;
    // What pending tabs' loaders hold: gone with this session, they no longer load.
    std::shared_ptr<WindowSession *> m_self = std::make_shared<WindowSession *>(
        this); // the window of the last write, whose tabs results go to
    // While restoring: the entries not restored yet, written back as they are if the session
    // must be written before the restore is over (a termination signal during a question).
    std::optional<QList<SessionState::Entry>> m_notRestored;
    // The last copy of each dirty document's text, by id: the next copy reuses its memory once
    // the write that held it is over (fresh memory for a large text is mostly page faults).
    mutable QHash<QString, QByteArray> m_textCopies;
};

} // namespace mirtex
