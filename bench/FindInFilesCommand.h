// mirtex-bench's find in files: the editor's engine over a folder, printing counts like `rg -c`.
#pragma once

#include <QStringList>

#include <optional>

namespace mirtex {

// find-in-files [--count | --list] [--regex] [-i] [--hidden] [--gitignore] [--include PATTERNS]
// [--threads N] PATTERN FOLDER: "path:N" per file with hits (--count, the default), or
// "path:line:text" per hit (--list). Nothing when arguments[0] is not "find-in-files".
std::optional<int> runFindInFilesCommand(const QStringList &arguments);

} // namespace mirtex
