#include "core/document/SessionFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace mirtex::SessionFolder {

namespace {
constexpr auto kFolderMode = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto kFileMode = QFile::ReadOwner | QFile::WriteOwner;
} // namespace

bool makePrivate(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return false;
    QFile::setPermissions(folder, kFolderMode);
    return true;
}

bool makePrivateFile(const QString &path)
{
    return QFile::setPermissions(path, kFileMode);
}

void makeAllPrivate(const QString &folder)
{
    if (!QFileInfo(folder).isDir())
        return;
    QFile::setPermissions(folder, kFolderMode);
    for (const QString &sub : {QString(), QStringLiteral("backup"), QStringLiteral("recovery")}) {
        const QDir dir(QDir(folder).filePath(sub));
        if (!dir.exists())
            continue;
        if (!sub.isEmpty())
            QFile::setPermissions(dir.path(), kFolderMode);
        // Symbolic links are left alone: changing their target's mode is not ours to do.
        for (const QFileInfo &file :
             dir.entryInfoList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks))
            QFile::setPermissions(file.filePath(), kFileMode);
    }
}

} // namespace mirtex::SessionFolder
