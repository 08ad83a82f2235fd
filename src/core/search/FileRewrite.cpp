#include "core/search/FileRewrite.h"

#include "core/document/FileSaver.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mirtex {

namespace {

bool sameBytes(int fd, QByteArrayView original)
{
    QByteArray buffer(64 * 1024, Qt::Uninitialized);
    qsizetype offset = 0;
    while (true) {
        const ssize_t got = ::read(fd, buffer.data(), size_t(buffer.size()));
        if (got < 0)
            return false;
        if (got == 0)
            return offset == original.size();
        if (offset + got > original.size()
            || std::memcmp(buffer.constData(), original.data() + offset, size_t(got)) != 0)
            return false;
        offset += got;
    }
}

} // namespace

RewriteResult rewriteIfUnchanged(const std::string &path,
                                 const FileStamp &stamp,
                                 QByteArrayView original,
                                 QByteArrayView replacement)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0)
        return RewriteResult::changedOnDisk;

    struct stat info
    {};

    const bool unchanged
        = ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size == stamp.size
          && info.st_mtim.tv_sec == stamp.modified.tv_sec
          && info.st_mtim.tv_nsec == stamp.modified.tv_nsec && sameBytes(fd, original);
    ::close(fd);
    if (!unchanged)
        return RewriteResult::changedOnDisk;
    // A file nobody may write stays as it is, even for a process that could.
    if ((info.st_mode & 0222) == 0 || ::access(path.c_str(), W_OK) != 0)
        return RewriteResult::failed;
    const QString name = QFile::decodeName(path.c_str());
    if (QFile::encodeName(name) != QByteArrayView(path.data(), qsizetype(path.size())))
        return RewriteResult::failed;
    return FileSaver::save(name, replacement) ? RewriteResult::written : RewriteResult::failed;
}

} // namespace mirtex
