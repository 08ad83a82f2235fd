// Writing and reading the session folder. The periodic write runs every few seconds with many
// tabs, so a write where nothing changed must not touch the disk at all.
#include "core/document/SessionStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace mirtex {

namespace {

const auto kSessionFile = QStringLiteral("session.json");
const auto kPreviousSessionFile = QStringLiteral("session.json.bak");
const auto kBackupFolder = QStringLiteral("backup");
const auto kBackupSuffix = QStringLiteral(".txt");

// Ids are UUIDs, but the session file may have been edited or damaged: an id must never reach
// outside the backup folder.
bool isUsableId(const QString &id)
{
    return !id.isEmpty() && !id.startsWith(u'.') && !id.contains(u'/') && !id.contains(QChar())
           && id.size() <= 200;
}

// Unbuffered, so that a short write (disk full, file size limit) is seen here: a buffered
// QSaveFile can commit a truncated file when the final flush fails.
bool writeAtomically(const QString &path, const QByteArray &bytes, QString *failure)
{
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
                         && file.write(bytes) == bytes.size()
                         && file.error() == QFileDevice::NoError;
    if (written && file.commit())
        return true;
    if (failure)
        *failure = path + QStringLiteral(": ") + file.errorString();
    file.cancelWriting();
    return false;
}

std::optional<QByteArray> readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

} // namespace

SessionStore::SessionStore()
    : SessionStore(defaultFolderPath())
{}

SessionStore::SessionStore(const QString &folderPath)
    : m_folder(folderPath)
{}

QString SessionStore::defaultFolderPath()
{
    // Qt 6.4 has no state location; the XDG rule is applied here.
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty() || QDir::isRelativePath(base))
        base = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir(base).filePath(QStringLiteral("Mirtex"));
}

QString SessionStore::sessionFilePath() const
{
    return QDir(m_folder).filePath(kSessionFile);
}

QString SessionStore::backupFilePath(const QString &id) const
{
    return QDir(m_folder).filePath(kBackupFolder + u'/' + id + kBackupSuffix);
}

SessionWriteResult SessionStore::write(const QList<SessionDocument> &documents,
                                       qsizetype selected,
                                       const QStringList &workspace,
                                       bool sidebarVisible)
{
    SessionWriteResult result;
    auto fail = [&result](const QString &what) {
        result.succeeded = false;
        if (result.failure.isEmpty())
            result.failure = what;
    };
    rememberBackupsOnDisk();

    SessionState state;
    state.selected = selected;
    state.workspace = workspace;
    state.sidebarVisible = sidebarVisible;
    state.entries.reserve(documents.size());
    QSet<QString> keep;
    bool folderMade = false;
    for (const SessionDocument &document : documents) {
        SessionState::Entry entry = document.entry;
        entry.hasBackup = document.needsBackup && isUsableId(entry.id);
        if (entry.hasBackup) {
            keep.insert(entry.id);
            const bool current = document.changeCount == document.backedUpChangeCount
                                 && m_backupsOnDisk->contains(entry.id);
            if (!current) {
                if (!folderMade)
                    folderMade = QDir().mkpath(QDir(m_folder).filePath(kBackupFolder));
                QString failure;
                const QByteArray utf8 = document.utf8Text ? document.utf8Text() : QByteArray();
                if (writeBackup(entry.id, utf8, &failure))
                    result.backedUpChangeCounts.insert(entry.id, document.changeCount);
                else
                    fail(failure);
            }
        }
        state.entries.append(std::move(entry));
    }

    const QByteArray bytes = state.toJsonBytes();
    if (bytes == m_lastWritten)
        return result;

    if (!QDir().mkpath(m_folder)) {
        fail(m_folder + QStringLiteral(": cannot create the folder"));
        return result;
    }
    // The file on disk is good if this store wrote it; otherwise (first write of the run) it is
    // kept as the previous session only if it decodes, so a damaged file never replaces a good
    // copy.
    std::optional<QByteArray> previous;
    if (!m_lastWritten.isEmpty())
        previous = m_lastWritten;
    else if (auto onDisk = readAll(sessionFilePath()); onDisk && SessionState::fromJson(*onDisk))
        previous = std::move(onDisk);

    QString failure;
    if (!writeAtomically(sessionFilePath(), bytes, &failure)) {
        fail(failure);
        return result;
    }
    m_lastWritten = bytes;
    if (previous && *previous != bytes)
        writeAtomically(QDir(m_folder).filePath(kPreviousSessionFile), *previous, nullptr);
    removeStaleBackups(keep);
    return result;
}

bool SessionStore::writeBackup(const QString &id, const QByteArray &utf8, QString *failure)
{
    if (!writeAtomically(backupFilePath(id), utf8, failure))
        return false;
    m_backupsOnDisk->insert(id);
    return true;
}

void SessionStore::rememberBackupsOnDisk()
{
    if (m_backupsOnDisk)
        return;
    m_backupsOnDisk.emplace();
    const QDir folder(QDir(m_folder).filePath(kBackupFolder));
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (name.endsWith(kBackupSuffix))
            m_backupsOnDisk->insert(name.chopped(kBackupSuffix.size()));
    }
}

void SessionStore::removeStaleBackups(const QSet<QString> &keep)
{
    QDir folder(QDir(m_folder).filePath(kBackupFolder));
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        const QString id
            = name.endsWith(kBackupSuffix) ? name.chopped(kBackupSuffix.size()) : QString();
        if (!id.isEmpty() && keep.contains(id))
            continue;
        if (folder.remove(name) && !id.isEmpty())
            m_backupsOnDisk->remove(id);
    }
}

std::optional<SessionState> SessionStore::load() const
{
    for (const QString &name : {kSessionFile, kPreviousSessionFile}) {
        if (const auto bytes = readAll(QDir(m_folder).filePath(name))) {
            if (auto state = SessionState::fromJson(*bytes))
                return state;
        }
    }
    return std::nullopt;
}

std::optional<QByteArray> SessionStore::readBackup(const QString &id) const
{
    if (!isUsableId(id))
        return std::nullopt;
    auto bytes = readAll(backupFilePath(id));
    if (!bytes || !bytes->isValidUtf8())
        return std::nullopt;
    return bytes;
}

void SessionStore::removeSessionFile()
{
    // The previous copy goes too: it would otherwise come back as the session if remembering is
    // switched on again and the program stops before its first write.
    QFile::remove(sessionFilePath());
    QFile::remove(QDir(m_folder).filePath(kPreviousSessionFile));
    m_lastWritten.clear();
}

} // namespace mirtex
