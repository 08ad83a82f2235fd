// Command-line entries for the line operations and digests, timed against sort, perl and the
// digest tools (see BenchCommands.h).
#pragma once

#include <QStringList>

#include <optional>

namespace mirtex {

// sort-lines [--bytewise | --ignore-case | --locale NAME] [--descending] [--unique] FILE;
// dedupe-lines FILE; uniq-lines FILE; hash --md5|--sha1|--sha256|--sha512 FILE. The result goes
// to standard output. Nothing when arguments[0] names none of them.
std::optional<int> runTransformCommand(const QStringList &arguments);

} // namespace mirtex
