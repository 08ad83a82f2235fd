// Files are named by the time they were set aside and their backup name, so that the same id set
// aside twice never overwrites the first copy.
#include "core/document/SessionRecovery.h"

#include "core/document/SessionFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace mirtex::SessionRecovery {

namespace {

constexpr qsizetype kFirstLineBytes = 4096;
constexpr qsizetype kFirstLineChars = 80;

QString freeName(const QDir &folder, const QString &sourceName)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString base = stamp + u'-' + QFileInfo(sourceName).completeBaseName();
    QString name = base + QStringLiteral(".txt");
    for (int n = 1; folder.exists(name); ++n)
        name = base + u'-' + QString::number(n) + QStringLiteral(".txt");
    return name;
}

bool bringIn(const QString &stateFolder, const QString &path, bool move)
{
    const QString folder = folderPath(stateFolder);
    if (!SessionFolder::makePrivate(folder))
        return false;
    const QString target = QDir(folder).filePath(freeName(QDir(folder), path));
    const bool done = move ? QFile::rename(path, target) : QFile::copy(path, target);
    if (done)
        SessionFolder::makePrivateFile(target);
    return done;
}

QString firstLineOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString head = QString::fromUtf8(file.read(kFirstLineBytes));
    for (QStringView line : QStringView(head).split(u'\n')) {
        const QString trimmed = line.trimmed().toString();
        if (!trimmed.isEmpty())
            return trimmed.size() > kFirstLineChars ? trimmed.left(kFirstLineChars) + u'…'
                                                    : trimmed;
    }
    return {};
}

} // namespace

QString folderPath(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("recovery"));
}

bool moveIn(const QString &stateFolder, const QString &path)
{
    return bringIn(stateFolder, path, true);
}

bool copyIn(const QString &stateFolder, const QString &path)
{
    return bringIn(stateFolder, path, false);
}

void expire(const QString &stateFolder, const QDateTime &now)
{
    const QDir folder(folderPath(stateFolder));
    const QDateTime limit = now.addDays(-kKeepDays);
    for (const QFileInfo &file : folder.entryInfoList(QDir::Files | QDir::Hidden)) {
        if (file.lastModified() < limit)
            QFile::remove(file.filePath());
    }
}

QList<RecoveredText> list(const QString &stateFolder)
{
    QList<RecoveredText> texts;
    const QDir folder(folderPath(stateFolder));
    for (const QFileInfo &file : folder.entryInfoList(QDir::Files | QDir::Hidden, QDir::Time))
        texts.append({file.absoluteFilePath(), firstLineOf(file.filePath()), file.lastModified()});
    return texts;
}

} // namespace mirtex::SessionRecovery
