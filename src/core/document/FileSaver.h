// Writes a whole file so that, whatever fails half-way (a full disk, a size limit, a crash), the
// file holds either its old content or all of the new one, with its exact mode and owner kept.
#pragma once

#include "core/document/FileProblem.h"

#include <QByteArrayView>
#include <QString>

#include <expected>

namespace mirtex::FileSaver {

// Writes `bytes` to a new file beside `path`, flushes it to the disk, gives it the old file's
// mode (for a new file: 0666 less the umask) and owner where the process may, and renames it over
// `path`. A symbolic link stays a link: its target gets the bytes. When the folder cannot take a
// new file but the file itself is writable, the file is rewritten in place after reserving the
// space it needs, and its size is checked. `path` must not name a folder or a device.
// Any thread; nothing is left behind on failure but, in place, a file the disk ran out under.
std::expected<void, FileProblem> save(const QString &path, QByteArrayView bytes);

} // namespace mirtex::FileSaver
