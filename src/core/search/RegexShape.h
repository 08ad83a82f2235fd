// What a conservative reading of a regex-mode query can prove about every match: that none spans
// a line break, and a piece of text every match contains. Used to run the regex engine only on
// the lines that hold that piece. Anything the reading does not understand proves nothing.
#pragma once

#include "core/search/SearchOptions.h"

#include <QString>

namespace mirtex {

struct RegexShape
{
    // No match contains a line break, and no part of the pattern looks past the line it matches
    // in (no look-around, back-reference, \s, [^…], \R, "." with dot-all, \z…).
    bool withinOneLine = false;
    // Text every match contains exactly as written here (characters without case, or case
    // significant); empty when none is known.
    QString requiredText;
    // The most code points a match can span, or -1 when unbounded (or not known).
    qsizetype maxLength = -1;
};

// For regex mode; other modes have nothing to prove (their query is a literal).
RegexShape regexShapeOf(const SearchOptions &options);

} // namespace mirtex
