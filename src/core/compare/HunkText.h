// The compact unified text of differences, as given to the writing assistant: a header
// "@@ a,b → c,d @@" (1-based starts, also for empty ranges), context from the right side, "-" and
// "+" lines, long lines cut. Pure; any thread.
#pragma once

#include "core/compare/DiffHunk.h"
#include "core/compare/DiffOptions.h"
#include "core/compare/TextLines.h"

#include <QStringList>

#include <vector>

namespace mirtex {

// Lines longer than this (in user-perceived characters) are cut and end with "…".
inline constexpr qsizetype kHunkTextLineLimit = 400;

// The lines of hunk `hunkIndex` with `context` lines around it, without line terminators.
QStringList hunkText(qsizetype hunkIndex,
                     int context,
                     const TextLines &left,
                     const TextLines &right,
                     const std::vector<DiffHunk> &hunks,
                     DiffOptions options);

// Every hunk's text, packed into chunks of at most `maxCharacters` characters (grapheme
// clusters), each line followed by "\n"; a longer single line forms a chunk of its own.
QStringList assistantChunks(int context,
                            qsizetype maxCharacters,
                            const TextLines &left,
                            const TextLines &right,
                            const std::vector<DiffHunk> &hunks,
                            DiffOptions options);

// Number of grapheme clusters in `text`.
qsizetype graphemeCount(QStringView text);

} // namespace mirtex
