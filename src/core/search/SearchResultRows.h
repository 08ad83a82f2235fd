// The texts of the results panel's rows, with the part of a hit row drawn highlighted.
#pragma once

#include "core/search/SearchResults.h"

namespace mirtex {

// “query” (n risultati in m file) — scope; "1 risultato", "1 file" in the singular.
QString setRowText(const SearchResultSet &set);
QString setRowText(const QString &query, const QString &scope, qsizetype hits, qsizetype files);

// Shown lines longer than this are cut to a window around the match.
inline constexpr qsizetype kHitRowShownLength = 400;

struct HitRow
{
    QString text;        // "Riga " + line number + ": " + the line without its indentation
    TextRange highlight; // the match within `text`
};

// The line without its leading spaces and TABs, the highlight shifted with it (and clipped to
// what remains when the match starts in the indentation). A line too long to show is cut before
// and after the match, each cut marked with "…".
HitRow hitRow(const SearchHit &hit);

qsizetype hitCount(const SearchResultSet &set);

} // namespace mirtex
