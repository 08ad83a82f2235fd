// Writing back a file that find in files read: only when the file on disk is still what was read
// (same size, modification time and bytes), atomically through FileSaver.
#pragma once

#include <QByteArrayView>

#include <ctime>
#include <string>

namespace mirtex {

// What a file looked like when it was read.
struct FileStamp
{
    qint64 size = -1;
    timespec modified{};
};

enum class RewriteResult {
    written,
    changedOnDisk, // someone wrote it since it was read: left alone
    failed         // read-only, full disk, a name the program cannot pass on…: left alone
};

// `path` is the file system's bytes; `original` the bytes read under `stamp`.
RewriteResult rewriteIfUnchanged(const std::string &path,
                                 const FileStamp &stamp,
                                 QByteArrayView original,
                                 QByteArrayView replacement);

} // namespace mirtex
