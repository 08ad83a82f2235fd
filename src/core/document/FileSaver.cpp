#include "core/document/FileSaver.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mirtex::FileSaver {

namespace {

std::unexpected<FileProblem> failure(int error)
{
    return std::unexpected(fileProblemFromErrno(error));
}

// Writes everything from `offset` on, through short writes and interruptions.
std::expected<void, FileProblem> writeAll(int fd, QByteArrayView bytes, off_t offset)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t wrote
            = ::pwrite(fd, bytes.data() + done, size_t(bytes.size() - done), offset + done);
        if (wrote < 0) {
            if (errno == EINTR)
                continue;
            return failure(errno);
        }
        if (wrote == 0)
            return std::unexpected(FileProblem::shortWrite);
        done += wrote;
    }
    return {};
}

// The process's umask without changing it (umask() itself would, for every thread at once).
mode_t currentUmask()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
            if (line.startsWith("Umask:"))
                return mode_t(line.mid(6).trimmed().toUInt(nullptr, 8));
        }
    }
    return 022;
}

void syncFolder(const QByteArray &folder)
{
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

// For a file in a folder the user may not write: the old bytes are overwritten, so the space is
// reserved first and the result measured.
std::expected<void, FileProblem> saveInPlace(const QByteArray &target, QByteArrayView bytes)
{
    const int fd = ::open(target.constData(), O_WRONLY | O_CLOEXEC);
    if (fd < 0)
        return failure(errno);
    auto fail = [fd](std::unexpected<FileProblem> why) {
        ::close(fd);
        return why;
    };
    const int reserved = ::posix_fallocate(fd, 0, off_t(bytes.size()));
    if (reserved != 0 && reserved != EOPNOTSUPP && reserved != EINVAL)
        return fail(failure(reserved));
    if (auto written = writeAll(fd, bytes, 0); !written)
        return fail(std::unexpected(written.error()));
    if (::ftruncate(fd, off_t(bytes.size())) != 0 || ::fsync(fd) != 0)
        return fail(failure(errno));

    struct stat after
    {};

    if (::fstat(fd, &after) != 0 || after.st_size != off_t(bytes.size()))
        return fail(std::unexpected(FileProblem::shortWrite));
    if (::close(fd) != 0)
        return failure(errno);
    return {};
}

} // namespace

std::expected<void, FileProblem> save(const QString &path, QByteArrayView bytes)
{
    QByteArray target = QFile::encodeName(path);
    if (char *resolved = ::realpath(target.constData(), nullptr)) {
        target = resolved;
        std::free(resolved);
    }

    struct stat old
    {};

    const bool existed = ::stat(target.constData(), &old) == 0;
    if (!existed && errno != ENOENT)
        return failure(errno);
    if (existed && S_ISDIR(old.st_mode))
        return std::unexpected(FileProblem::isFolder);
    if (existed && !S_ISREG(old.st_mode))
        return std::unexpected(FileProblem::notRegularFile);

    const qsizetype slash = target.lastIndexOf('/');
    const QByteArray folder = slash < 0    ? QByteArray(".")
                              : slash == 0 ? QByteArray("/")
                                           : target.left(slash);
    const QByteArray name = target.mid(slash + 1);

    // Private until renamed: the text may be, and the final mode is set only once it is whole.
    QByteArray temporary;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 16; ++attempt) {
        temporary = folder + "/." + name + ".mirtex-"
                    + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        fd = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0 && errno != EEXIST)
            break;
    }
    if (fd < 0) {
        const int error = errno;
        if (existed && (error == EACCES || error == EPERM)
            && ::access(target.constData(), W_OK) == 0)
            return saveInPlace(target, bytes);
        return failure(error);
    }
    auto fail = [&](std::unexpected<FileProblem> why) {
        ::close(fd);
        ::unlink(temporary.constData());
        return why;
    };
    if (auto written = writeAll(fd, bytes, 0); !written)
        return fail(std::unexpected(written.error()));
    if (existed && (old.st_uid != ::geteuid() || old.st_gid != ::getegid())) {
        // Only root may give the file away; anyone may keep a group they belong to.
        if (::fchown(fd, old.st_uid, old.st_gid) != 0)
            (void)::fchown(fd, uid_t(-1), old.st_gid);
    }
    const mode_t mode = existed ? (old.st_mode & 07777) : (0666 & ~currentUmask());
    if (::fchmod(fd, mode) != 0 || ::fsync(fd) != 0)
        return fail(failure(errno));
    if (::close(fd) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return failure(error);
    }
    if (::rename(temporary.constData(), target.constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return failure(error);
    }
    syncFolder(folder);
    return {};
}

} // namespace mirtex::FileSaver
