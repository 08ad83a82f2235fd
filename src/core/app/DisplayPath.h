// Paths as the user sees them: MIRTEX_DISPLAY_ROOT ("prefix=replacement") hides real locations in
// pictures and recordings of the program.
#pragma once

#include <QString>

namespace mirtex {

class DisplayPath
{
public:
    // Reads MIRTEX_DISPLAY_ROOT once per call; cheap enough for tooltips and titles.
    static QString forDisplay(const QString &path);

    // The substitution itself, for a given variable value (tests, and callers that cache it).
    static QString substitute(const QString &path, const QString &rootSetting);
};

} // namespace mirtex
