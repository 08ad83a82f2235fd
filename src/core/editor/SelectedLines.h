// The whole lines that a set of selections touches, the unit that line and comment commands work
// on. Pure helpers over a text with LF line breaks.
#pragma once

#include "core/editor/LineIndex.h"
#include "core/text/Selections.h"

#include <QStringView>

#include <vector>

namespace mirtex {

// Lines `first` to `last` (from 0, both included).
struct LineBlock
{
    qsizetype first = 0;
    qsizetype last = 0;

    friend bool operator==(const LineBlock &, const LineBlock &) = default;
};

// The lines of one text: starts from a LineIndex, plus the text's length for the last line.
class DocumentLines
{
public:
    explicit DocumentLines(QStringView text);

    QStringView text() const { return m_text; }

    qsizetype count() const { return m_index.lineCount(); }

    qsizetype lineOf(qsizetype utf16Offset) const { return m_index.line(utf16Offset); }

    qsizetype start(qsizetype lineIndex) const { return qsizetype(m_index.starts()[lineIndex]); }

    // Where the line's content ends (before its LF, or the text's end for the last line).
    qsizetype end(qsizetype lineIndex) const;

    QStringView content(qsizetype lineIndex) const
    {
        return m_text.sliced(start(lineIndex), end(lineIndex) - start(lineIndex));
    }

    // The lines a selection touches. A selection over several lines that ends at the start of a
    // line does not take that line.
    LineBlock spanOf(const Selection &selection) const;

    // The lines of every selection, ascending; spans that overlap or touch are merged when
    // `mergeAdjacent`, spans that overlap always.
    std::vector<LineBlock> spansOf(const Selections &selections, bool mergeAdjacent = true) const;

private:
    QStringView m_text;
    LineIndex m_index;
};

// Leading spaces and TABs of a line.
qsizetype indentLength(QStringView line);

// Whether a line holds only white space.
bool isBlank(QStringView line);

} // namespace mirtex
