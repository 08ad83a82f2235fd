// "Contrassegna tutto" as a pure function: the ranges to mark in the scope and, when asked, the
// lines to bookmark, with the status line. Any thread.
#pragma once

#include "core/search/SearchOptions.h"
#include "core/search/SearchRegex.h"
#include "core/search/SearchStatus.h"
#include "core/text/TextRange.h"

#include <QStringView>

#include <span>
#include <vector>

namespace mirtex {

// Mark all stops enumerating after this many marks.
inline constexpr qsizetype kMarkLimit = 50'000;

struct MarkAllResult
{
    std::vector<TextRange> ranges; // the editor's marks become exactly these (ascending)
    // Lines (from 0) holding a mark's start, ascending and each once; filled only when bookmarking.
    std::vector<qsizetype> lines;
    SearchStatus status;
    bool beep = false; // the query or the pattern failed: marks and bookmarks stay as they are
};

// The non-empty matches in the scope (see searchScope), at most `limit`. With `bookmarkLines`
// each mark's line is found by binary search in `lineStarts` (ascending, starting with 0: the
// line index of `text`).
MarkAllResult markAll(QStringView text,
                      TextRange selection,
                      bool inSelection,
                      const SearchOptions &options,
                      bool bookmarkLines,
                      std::span<const qint64> lineStarts,
                      qsizetype limit = kMarkLimit,
                      int timeLimitSteps = kSearchTimeLimitSteps);

// The line (from 0) holding `utf16Offset`: the last start not greater than it.
qsizetype lineHolding(std::span<const qint64> lineStarts, qint64 utf16Offset);

} // namespace mirtex
