// The session on disk: session.json, its previous good copy and the backups of unsaved text.
#pragma once

#include "core/document/SessionState.h"

#include <QByteArray>
#include <QHash>
#include <QList>
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
    qint64 changeCount = 0;
    qint64 backedUpChangeCount = -1;
    // The document's text as the editor holds it (UTF-8, LF line breaks); asked for only when a
    // backup is written, which stores exactly these bytes.
    std::function<QByteArray()> utf8Text;
};

struct SessionWriteResult
{
    // The new backedUpChangeCount of every document whose backup was written by this call, by
    // id. A backup that failed is absent, so the next write tries it again.
    QHash<QString, qint64> backedUpChangeCounts;
    bool succeeded = true; // false when session.json or a backup could not be written
    QString failure;       // what failed, for logs; not shown to the user
};

// Main thread only; one store per folder and process (it remembers what it last wrote there).
// Layout of the folder: session.json, session.json.bak (the previous good session) and
// backup/<id>.txt (UTF-8). Every file is replaced atomically, so a failed write leaves the
// previous files whole.
class SessionStore
{
public:
    // The default folder: $XDG_STATE_HOME/Mirtex, or ~/.local/state/Mirtex when unset or empty.
    SessionStore();
    explicit SessionStore(const QString &folderPath);

    static QString defaultFolderPath();

    QString folderPath() const { return m_folder; }

    QString sessionFilePath() const;
    QString backupFilePath(const QString &id) const;

    // Writes the backups that changed, then session.json when its bytes differ from the last
    // ones written, keeping the previous good session.json as session.json.bak, then deletes
    // the backups no entry names. A call where nothing changed touches no file.
    SessionWriteResult write(const QList<SessionDocument> &documents,
                             qsizetype selected,
                             const QStringList &workspace,
                             bool sidebarVisible);

    // session.json, or session.json.bak when session.json is missing or does not decode.
    std::optional<SessionState> load() const;
    // The backup text of a document, the bytes as written (UTF-8); nullopt when missing,
    // unreadable, not well-formed UTF-8 or the id is not usable as a file name.
    std::optional<QByteArray> readBackup(const QString &id) const;
    // Deletes session.json and its previous copy (at quit when the session is not remembered).
    // Failures are ignored.
    void removeSessionFile();

private:
    bool writeBackup(const QString &id, const QByteArray &utf8, QString *failure);
    void rememberBackupsOnDisk();
    void removeStaleBackups(const QSet<QString> &keep);

    QString m_folder;
    // The bytes of session.json as this store last wrote them; empty before the first write.
    QByteArray m_lastWritten;
    // Ids whose backup file exists, as far as this store knows; read from disk once.
    std::optional<QSet<QString>> m_backupsOnDisk;
};

} // namespace mirtex
