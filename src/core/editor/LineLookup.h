// Where the lines of the current text start, for models that keep offsets but are asked about
// lines. Core declares it; the editor answers from its own line table, tests from a LineIndex.
#pragma once

#include "core/editor/LineIndex.h"

#include <QtGlobal>

namespace mirtex {

class LineLookup
{
public:
    virtual ~LineLookup() = default;

    virtual qint64 textLength() const = 0;
    virtual qint64 lineCount() const = 0;
    // UTF-16 offset of a line's first unit; the line is clamped to [0, lineCount).
    virtual qint64 lineStart(qint64 lineIndex) const = 0;
    // The line holding an offset (offsets past the end give the last line).
    virtual qint64 lineOf(qint64 utf16Offset) const = 0;
};

// A LineLookup over a LineIndex that is valid for a text of `textLength` units.
class IndexLineLookup final : public LineLookup
{
public:
    IndexLineLookup(const LineIndex &index, qint64 textLength)
        : m_index(index)
        , m_length(textLength)
    {}

    qint64 textLength() const override { return m_length; }

    qint64 lineCount() const override { return m_index.lineCount(); }

    qint64 lineStart(qint64 lineIndex) const override
    {
        return m_index.starts()[std::size_t(std::clamp<qint64>(lineIndex, 0, lineCount() - 1))];
    }

    qint64 lineOf(qint64 utf16Offset) const override { return m_index.line(utf16Offset); }

private:
    const LineIndex &m_index;
    qint64 m_length;
};

} // namespace mirtex
