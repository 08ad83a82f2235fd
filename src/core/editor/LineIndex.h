// The table of line starts over one text, rebuilt lazily after edits.
#pragma once

#include "core/text/TextRange.h"

#include <QStringView>

#include <vector>

namespace mirtex {

// Line starts of a text whose line breaks are LF only. Offsets are UTF-16 code units; lines are
// numbered from 0. A text of length L with LF at p1 < p2 < ... has the starts 0, p1+1, p2+1, ...,
// so a text ending with LF has a last, empty line starting at L.
//
// Invariant: starts() is ascending and begins with 0. After invalidate() the table keeps its old
// contents until rebuild() is given the current text; the owner rebuilds before it queries.
// Main thread only (owned by the tab's editor), like the text it indexes.
class LineIndex
{
public:
    const std::vector<qint64> &starts() const { return m_starts; }

    bool valid() const { return m_valid; }

    // Called for every change of the text.
    void invalidate() { m_valid = false; }

    // Rescans the text when the table is invalid; does nothing when it is valid.
    void rebuild(QStringView text);

    // The line holding the offset: the last start not greater than it. Offsets past the end give
    // the last line, negative offsets line 0.
    qsizetype line(qint64 utf16Offset) const;

    // The content of a line without its LF. The line number is clamped to the table; the end is
    // the next start minus 1, or textLength for the last line; a negative length becomes 0.
    TextRange range(qsizetype lineNumber, qint64 textLength) const;

    qsizetype lineCount() const { return qsizetype(m_starts.size()); }

private:
    std::vector<qint64> m_starts{0};
    bool m_valid = false;
};

// Appends p + 1 + base for every LF at offset p of the units; the fast scan behind rebuild().
void appendLineStarts(const char16_t *units,
                      qsizetype count,
                      qint64 base,
                      std::vector<qint64> &starts);

} // namespace mirtex
