#include "core/document/FileOperations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mirtex {

namespace {

QString childPath(const QString &folder, const QString &name)
{
    return QDir(folder).filePath(name);
}

// The problem of a path the system would not look at (lstat's errno), or nothing when it exists.
std::optional<FileProblem> missingProblem(const QString &path)
{
    struct stat status
    {};

    if (::lstat(QFile::encodeName(path).constData(), &status) == 0)
        return std::nullopt;
    return fileProblemFromErrno(errno);
}

} // namespace

bool FileOperations::isValidName(const QString &name)
{
    return !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/')
           && !name.contains(QChar(0));
}

std::expected<QString, FileProblem> FileOperations::createFile(const QString &folder,
                                                               const QString &name)
{
    if (!isValidName(name))
        return std::unexpected(FileProblem::invalidName);
    const QString path = childPath(folder, name);
    // O_EXCL: an existing file is never truncated, also when it appeared a moment ago.
    const int fd = ::open(QFile::encodeName(path).constData(),
                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                          S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH);
    if (fd < 0)
        return std::unexpected(fileProblemFromErrno(errno));
    ::close(fd);
    return path;
}

std::expected<QString, FileProblem> FileOperations::createFolder(const QString &folder,
                                                                 const QString &name)
{
    if (!isValidName(name))
        return std::unexpected(FileProblem::invalidName);
    const QString path = childPath(folder, name);
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU | S_IRWXG | S_IRWXO) != 0)
        return std::unexpected(fileProblemFromErrno(errno));
    return path;
}

std::expected<QString, FileProblem> FileOperations::rename(const QString &path,
                                                           const QString &newName)
{
    if (!isValidName(newName))
        return std::unexpected(FileProblem::invalidName);
    if (auto problem = missingProblem(path))
        return std::unexpected(*problem);
    const QString target = childPath(QFileInfo(path).absolutePath(), newName);
    if (target == QFileInfo(path).absoluteFilePath())
        return target;
    const QByteArray from = QFile::encodeName(path);
    const QByteArray to = QFile::encodeName(target);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return target;
    if (errno != EINVAL && errno != ENOSYS)
        return std::unexpected(fileProblemFromErrno(errno));
    // A file system without RENAME_NOREPLACE: look first (a small window remains).
    if (!missingProblem(target))
        return std::unexpected(FileProblem::alreadyExists);
    if (::rename(from.constData(), to.constData()) != 0)
        return std::unexpected(fileProblemFromErrno(errno));
    return target;
}

std::expected<QString, FileProblem> FileOperations::moveToTrash(const QString &path)
{
    if (auto problem = missingProblem(path))
        return std::unexpected(*problem);
    // Qt moves the entry into "./files" of the working folder when it cannot make the home trash
    // (a missing data folder): the folder that holds the trash must exist first.
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (dataHome.isEmpty() || !QDir().mkpath(dataHome))
        return std::unexpected(FileProblem::trashUnavailable);
    QString trashed;
    if (QFile::moveToTrash(path, &trashed)) {
        if (QFileInfo(trashed).isRelative()) // should not happen; say where it went anyway
            trashed = QFileInfo(trashed).absoluteFilePath();
        return trashed;
    }
    // Qt gives no reason; the usual one is a folder the user may not change.
    const QFileInfo holder(QFileInfo(path).absolutePath());
    if (!holder.isWritable())
        return std::unexpected(FileProblem::permissionDenied);
    return std::unexpected(FileProblem::trashUnavailable);
}

} // namespace mirtex
