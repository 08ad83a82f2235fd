// A comparison as a standard unified diff ("--- a", "+++ b", "@@ -a,b +c,d @@"), the form that
// `patch` and version-control tools apply. Lines are terminated as in the files: a last line
// without "\n" is followed by "\ No newline at end of file". Pure; any thread.
#pragma once

#include "core/compare/TextDiff.h"

#include <QString>

namespace mirtex {

// `leftName` and `rightName` go into the "---" and "+++" lines as given. Empty when the two texts
// are equal as compared.
QString unifiedDiff(const TextDiff &diff,
                    const QString &leftName,
                    const QString &rightName,
                    int context = 3);

} // namespace mirtex
