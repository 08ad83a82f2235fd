// `mirtex-bench diff [--unified=N] LEFT RIGHT`: the compare window's line diff of two UTF-8 files,
// printed as a unified diff, so that it can be timed beside GNU diff and git diff.
#pragma once

#include <QStringList>

namespace mirtex {

// Exit status as diff's: 0 equal, 1 different, 2 trouble.
int runDiffCommand(const QStringList &arguments);

} // namespace mirtex
