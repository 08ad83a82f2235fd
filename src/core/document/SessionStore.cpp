// Writing and reading the session folder. The periodic write runs every few seconds with many
// tabs, so a write where nothing changed must not touch the disk at all.
#include "core/document/SessionStore.h"

#include "core/document/FileProblem.h"
#include "core/document/SessionFolder.h"
#include "core/document/SessionRecovery.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QUuid>

#include <cerrno>

namespace mirtex {

namespace {

Q_LOGGING_CATEGORY(lcSession, "mirtex.session")

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

bool isUsableBackupName(const QString &id, const QString &name)
{
    return isUsableId(name) && name.startsWith(id + u'.') && name.endsWith(kBackupSuffix);
}

QString failureText(const QString &path, int error)
{
    return path + QStringLiteral(": ") + describe(fileProblemFromErrno(error));
}

// Unbuffered, so that a short write (disk full, file size limit) is seen here: a buffered
// QSaveFile can commit a truncated file when the final flush fails.
bool writeAtomically(const QString &path, const QByteArray &bytes, QString *failure)
{
    QSaveFile file(path);
    errno = 0;
    bool written = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (written)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    written = written && file.write(bytes) == bytes.size() && file.error() == QFileDevice::NoError;
    const int writeError = errno;
    if (written && file.commit())
        return true;
    if (failure)
        *failure = failureText(path, writeError != 0 ? writeError : errno);
    file.cancelWriting();
    return false;
}

std::optional<QByteArray> readAll(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

// Every entry keeps a distinct id. When ids repeat, the entry that owns the backup keeps the id
// (the first with one, else the first); the others are given new ids and lose their claim to a
// backup file that is not theirs.
void giveRepeatedIdsFreshOnes(QList<SessionState::Entry> &entries)
{
    QHash<QString, qsizetype> keeper;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const auto found = keeper.constFind(entries[i].id);
        if (found == keeper.constEnd())
            keeper.insert(entries[i].id, i);
        else if (entries[i].hasBackup && !entries[*found].hasBackup)
            keeper[entries[i].id] = i;
    }
    for (qsizetype i = 0; i < entries.size(); ++i) {
        SessionState::Entry &entry = entries[i];
        if (keeper.value(entry.id) == i)
            continue;
        entry.id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        entry.hasBackup = false;
        entry.backupName.reset();
    }
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

QString SessionStore::backupName(const QString &id) const
{
    const QMutexLocker lock(&m_namesMutex);
    return m_backupNames.value(id, id + kBackupSuffix);
}

std::optional<QString> SessionStore::recordedBackupName(const QString &id) const
{
    const QMutexLocker lock(&m_namesMutex);
    const auto found = m_backupNames.constFind(id);
    return found == m_backupNames.constEnd() ? std::nullopt : std::optional<QString>(*found);
}

void SessionStore::setBackupName(const QString &id, const QString &name)
{
    const QMutexLocker lock(&m_namesMutex);
    m_backupNames.insert(id, name);
}

QString SessionStore::backupFilePath(const QString &id) const
{
    return QDir(m_folder).filePath(kBackupFolder + u'/' + backupName(id));
}

QString SessionStore::backupFilePath(const QString &id, const std::optional<QString> &name) const
{
    if (name && isUsableBackupName(id, *name))
        return QDir(m_folder).filePath(kBackupFolder + u'/' + *name);
    return backupFilePath(id);
}

SessionWriteResult SessionStore::write(const QList<SessionDocument> &documents,
                                       qsizetype selected,
                                       const QStringList &workspace,
                                       bool sidebarVisible,
                                       const QList<SessionState::Entry> &carried)
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
    state.entries.reserve(documents.size() + carried.size());
    QSet<QString> keep;
    bool folderMade = false;
    for (const SessionDocument &document : documents) {
        if (document.carried) {
            if (document.entry.hasBackup && isUsableId(document.entry.id))
                keep.insert(document.entry.backupName.value_or(document.entry.id + kBackupSuffix));
            state.entries.append(document.entry);
            continue;
        }
        SessionState::Entry entry = document.entry;
        entry.hasBackup = document.needsBackup && isUsableId(entry.id);
        if (entry.hasBackup) {
            const bool current = document.changeCount == document.backedUpChangeCount
                                 && m_backupsOnDisk->contains(backupName(entry.id));
            if (!current) {
                if (!folderMade)
                    folderMade
                        = SessionFolder::makePrivate(m_folder)
                          && SessionFolder::makePrivate(QDir(m_folder).filePath(kBackupFolder));
                QString failure;
                // Never an empty backup for a text that was not handed over: the old file stays.
                if (!document.utf8Text)
                    result.textNeeded.append(entry.id);
                else if (writeBackup(entry.id, document.utf8Text(), &failure))
                    result.backedUpChangeCounts.insert(entry.id, document.changeCount);
                else
                    fail(failure);
            }
            keep.insert(backupName(entry.id));
            if (auto recorded = recordedBackupName(entry.id))
                entry.backupName = std::move(recorded);
        }
        state.entries.append(std::move(entry));
    }
    // Not restored yet: written back as they were read, their backups left alone.
    for (const SessionState::Entry &entry : carried) {
        if (entry.hasBackup && isUsableId(entry.id))
            keep.insert(entry.backupName.value_or(entry.id + kBackupSuffix));
        state.entries.append(entry);
    }

    const QByteArray bytes = state.toJsonBytes();
    if (bytes == m_lastWritten)
        return result;

    if (!SessionFolder::makePrivate(m_folder)) {
        fail(failureText(m_folder, errno));
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
    pruneBackups(keep);
    return result;
}

bool SessionStore::writeBackup(const QString &id, const QByteArray &utf8, QString *failure)
{
    // A folder where the backup belongs would fail every write: the backup goes beside it.
    if (QFileInfo(backupFilePath(id)).isDir()) {
        const QDir folder(QDir(m_folder).filePath(kBackupFolder));
        QString name;
        for (int n = 1; name.isEmpty() || QFileInfo::exists(folder.filePath(name)); ++n)
            name = id + u'.' + QString::number(n) + kBackupSuffix;
        qCWarning(lcSession).noquote()
            << "the backup path" << folder.filePath(id + kBackupSuffix)
            << "is a folder; the backup is written to" << folder.filePath(name);
        setBackupName(id, name);
    }
    if (!writeAtomically(backupFilePath(id), utf8, failure))
        return false;
    m_backupsOnDisk->insert(backupName(id));
    return true;
}

void SessionStore::rememberBackupsOnDisk()
{
    if (m_backupsOnDisk)
        return;
    m_backupsOnDisk.emplace();
    const QDir folder(QDir(m_folder).filePath(kBackupFolder));
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden))
        m_backupsOnDisk->insert(name);
}

void SessionStore::pruneBackups(const QSet<QString> &keep)
{
    QDir folder(QDir(m_folder).filePath(kBackupFolder));
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (keep.contains(name))
            continue;
        const bool removed = !name.endsWith(kBackupSuffix) || m_owned.contains(name)
                                 ? folder.remove(name) // a closed or saved tab's, or a leftover
                                 : SessionRecovery::moveIn(m_folder, folder.filePath(name));
        if (removed)
            m_backupsOnDisk->remove(name);
    }
    m_owned = keep;
    if (!m_recoveryExpired) {
        m_recoveryExpired = true;
        SessionRecovery::expire(m_folder, QDateTime::currentDateTime());
    }
}

std::optional<SessionState> SessionStore::load()
{
    for (const QString &name : {kSessionFile, kPreviousSessionFile}) {
        const auto bytes = readAll(QDir(m_folder).filePath(name));
        if (!bytes)
            continue;
        auto state = SessionState::fromJson(*bytes);
        if (!state) {
            qCWarning(lcSession).noquote() << name << "is damaged or not a session; not used";
            continue;
        }
        giveRepeatedIdsFreshOnes(state->entries);
        for (SessionState::Entry &entry : state->entries) {
            if (entry.backupName && !isUsableBackupName(entry.id, *entry.backupName))
                entry.backupName.reset();
            if (entry.backupName)
                setBackupName(entry.id, *entry.backupName);
            if (entry.hasBackup && isUsableId(entry.id))
                m_owned.insert(backupName(entry.id));
        }
        return state;
    }
    return std::nullopt;
}

std::optional<QByteArray>
SessionStore::readBackup(const QString &id, const std::optional<QString> &name, bool *repaired)
{
    if (repaired)
        *repaired = false;
    if (!isUsableId(id))
        return std::nullopt;
    if (name && isUsableBackupName(id, *name))
        setBackupName(id, *name);
    auto bytes = readAll(backupFilePath(id));
    if (!bytes || bytes->isValidUtf8())
        return bytes;
    // The text is kept with each bad sequence shown as U+FFFD; the bytes as they were stay in
    // the recovery folder, since the repaired text replaces the backup at the next write.
    SessionRecovery::copyIn(m_folder, backupFilePath(id));
    if (repaired)
        *repaired = true;
    qCWarning(lcSession).noquote()
        << backupFilePath(id) << "is not valid UTF-8; a copy is kept in the recovery folder";
    return QString::fromUtf8(*bytes).toUtf8();
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
