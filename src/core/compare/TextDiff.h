// The line diff of two texts: their lines as written, the differences between them (hunks) and
// the options they were compared with. Building one never fails; limits only make the result
// coarser. Pure value; safe to build on any thread.
#pragma once

#include "core/compare/DiffHunk.h"
#include "core/compare/DiffOptions.h"
#include "core/compare/TextLines.h"

#include <cstdint>
#include <vector>

namespace mirtex {

class TextDiff
{
public:
    TextDiff() = default;
    TextDiff(QString leftText, QString rightText, DiffOptions diffOptions = {});
    TextDiff(TextLines leftLines, TextLines rightLines, DiffOptions diffOptions = {});

    TextLines left;
    TextLines right;
    std::vector<DiffHunk> hunks; // in text order, never adjacent without a matched line between
    DiffOptions options;

    // Sum of the lengths of the left ranges, and of the right ranges.
    qsizetype removedLineCount() const;
    qsizetype addedLineCount() const;
};

// The comparison key of one line: white space dropped, then lower-cased, as the options say.
QString normalizedLine(QStringView line, DiffOptions options);

// Whether a character counts as horizontal white space (space separators and tab).
bool isHorizontalSpace(char16_t unit);

// Both sides' lines as integer keys through one dictionary (left first, then right); returns the
// number of distinct keys.
int32_t internLines(const TextLines &left,
                    const TextLines &right,
                    DiffOptions options,
                    std::vector<int32_t> &leftKeys,
                    std::vector<int32_t> &rightKeys);

} // namespace mirtex
