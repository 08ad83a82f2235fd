// The session on disk: session.json, its previous good copy and the backups of unsaved text.
#pragma once

#include "core/document/SessionState.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

namespace mirtex {

// What the session writer needs of one open document, in tab order. Cheap to build: the text is
// asked for only when a backup is really written.
struct SessionDocument
{
    SessionState::Entry entry; // entry.hasBackup is set by the writer from needsBackup
    bool needsBackup = false;  // dirty, or untitled and not empty
    // A tab not loaded yet: its entry is written as it is and its backup left untouched.
    bool carried = false;
    qint64 changeCount = 0;
    qint64 backedUpChangeCount = -1;
    // The document's text as the editor holds it (UTF-8, LF line breaks); asked for only when a
    // backup is written, which stores exactly these bytes. May be empty when the caller believes
    // the backup current: if it is not, nothing is written and the id is in `textNeeded`.
    std::function<QByteArray()> utf8Text;
};

struct SessionWriteResult
{
    // The new backedUpChangeCount of every document whose backup was written by this call, by
    // id. A backup that failed is absent, so the next write tries it again.
    QHash<QString, qint64> backedUpChangeCounts;
    // Documents whose backup had to be written but came without text (see utf8Text).
    QStringList textNeeded;
    bool succeeded = true; // false when session.json or a backup could not be written
    // What failed first and why, in Italian ("/…/session.json: spazio esaurito sul disco").
    QString failure;
};

// One thread at a time (SessionWriter runs the writes on its own thread; readBackup may be
// called on another meanwhile); one store per folder and process (it remembers what it last wrote
// there), and only the process holding the folder's SessionLock may use one. Layout of the folder:
// session.json, session.json.bak (the previous good session), backup/<id>.txt (UTF-8; another
// name when a folder is in the way, recorded in the entry) and recovery/ (SessionRecovery). Every
// file is replaced atomically and made 0600, so a failed write leaves the previous files whole.
class SessionStore
{
public:
    // The default folder: $XDG_STATE_HOME/Mirtex, or ~/.local/state/Mirtex when unset or empty.
    SessionStore();
    explicit SessionStore(const QString &folderPath);

    static QString defaultFolderPath();

    QString folderPath() const { return m_folder; }

    QString sessionFilePath() const;
    // Where the backup of `id` is written: backup/<id>.txt unless that path was found taken.
    QString backupFilePath(const QString &id) const;
    // Where the backup of an entry is read from (its recorded name when usable).
    QString backupFilePath(const QString &id, const std::optional<QString> &backupName) const;

    // Writes the backups that changed, then session.json when its bytes differ from the last
    // ones written, keeping the previous good session.json as session.json.bak. Then, and only
    // when session.json was written, backups named by the session this store last wrote or
    // loaded but not by the new one are deleted (their tab was closed or saved), and every other
    // backup no entry names is moved to recovery/. A call where nothing changed touches no file.
    // `carried` entries (not restored yet) are written as they are, their backups kept untouched.
    SessionWriteResult write(const QList<SessionDocument> &documents,
                             qsizetype selected,
                             const QStringList &workspace,
                             bool sidebarVisible,
                             const QList<SessionState::Entry> &carried = {});

    // session.json, or session.json.bak when session.json is missing or does not decode (see
    // SessionState::fromJson). Of entries sharing an id, one keeps it (the first with a backup)
    // and the others get fresh ids and no backup, so that no tab gets another's text. The
    // backups the loaded session names are this store's to prune from then on.
    std::optional<SessionState> load();
    // The backup text of an entry (UTF-8); nullopt when missing, unreadable or the id is not
    // usable as a file name. Ill-formed UTF-8 is repaired (each bad sequence becomes U+FFFD)
    // after the original bytes were copied to recovery/, and `repaired` is set.
    std::optional<QByteArray> readBackup(const QString &id,
                                         const std::optional<QString> &backupName = {},
                                         bool *repaired = nullptr);
    // Deletes session.json and its previous copy (at quit when the session is not remembered).
    // Failures are ignored.
    void removeSessionFile();

private:
    QString backupName(const QString &id) const;
    void setBackupName(const QString &id, const QString &name);
    std::optional<QString> recordedBackupName(const QString &id) const;
    bool writeBackup(const QString &id, const QByteArray &utf8, QString *failure);
    void rememberBackupsOnDisk();
    void pruneBackups(const QSet<QString> &keep);

    QString m_folder;
    // The bytes of session.json as this store last wrote them; empty before the first write.
    QByteArray m_lastWritten;
    // Backup file names that exist, as far as this store knows; read from disk once.
    std::optional<QSet<QString>> m_backupsOnDisk;
    // Backup file names the session this store last wrote (or loaded) names: the only ones it
    // may delete once a new session no longer names them.
    QSet<QString> m_owned;
    // Backup file names other than "<id>.txt", by id.
    QHash<QString, QString> m_backupNames;
    mutable QMutex m_namesMutex; // m_backupNames is read by readBackup while a write may run
    bool m_recoveryExpired = false;
};

} // namespace mirtex
