#include "DiffCarry.h"

namespace mirtex {

namespace {

// The text of a stretch of lines with the separators that belong to it: each line's "\n" after
// it, except at the end of the text, where the stretch takes the "\n" before it instead (the last
// line has none after it).
TextRange blockOf(const TextLines &lines, LineRange range)
{
    const qsizetype length = lines.text().size();
    if (range.end < lines.size()) {
        const qsizetype from = lines.lineStart(range.start);
        return {from, lines.lineStart(range.end) - from};
    }
    if (range.start == 0)
        return {0, length};
    const qsizetype from = lines.lineStart(range.start) - 1;
    return {from, length - from};
}

} // namespace

TextReplacement carriedLines(const TextLines &source,
                             LineRange sourceRange,
                             const TextLines &target,
                             LineRange targetRange)
{
    const TextRange from = blockOf(source, sourceRange);
    return {blockOf(target, targetRange), source.text().mid(from.location, from.length)};
}

} // namespace mirtex
