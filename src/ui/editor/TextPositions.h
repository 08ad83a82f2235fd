// The one place where Scintilla byte positions and UTF-16 offsets meet. Uses Scintilla's UTF-16
// line index (allocated per document) plus a walk inside one line, so a conversion costs
// O(log lines + line length). Nothing else in the program converts between the two.
#pragma once

#include "core/text/TextRange.h"

#include <QString>

class QsciScintillaBase;

namespace mirtex {

class TextPositions
{
public:
    // `scintilla` shows the document; the index is allocated on its current document.
    explicit TextPositions(QsciScintillaBase *scintilla);

    qsizetype toUtf16(qsizetype bytePosition) const;
    qsizetype toByte(qsizetype utf16Offset) const;
    // UTF-16 units between two byte positions.
    qsizetype utf16Count(qsizetype fromByte, qsizetype toByte) const;
    // The UTF-16 range of the bytes [fromByte, toByte).
    TextRange toUtf16Range(qsizetype fromByte, qsizetype toByte) const;
    qsizetype utf16Length() const;
    qsizetype byteLength() const;

    // The line (from 0) holding a UTF-16 offset.
    qsizetype lineOfUtf16(qsizetype utf16Offset) const;
    // The text of a UTF-16 range, clamped to the text; only that range is converted.
    QString text(TextRange utf16Range) const;
    // The UTF-16 unit at an offset (the first of its character), or a null QChar outside the text.
    QChar unitAt(qsizetype utf16Offset) const;

    // Converts ascending UTF-16 offsets inside one byte range by walking its bytes forward once,
    // for callers that convert many sorted offsets (painting tokens). Valid until the text changes.
    class ForwardWalk
    {
    public:
        // The byte position of `utf16Offset`; offsets must not decrease between calls.
        qsizetype byteAt(qsizetype utf16Offset);

    private:
        friend class TextPositions;
        ForwardWalk(const char *bytes, qsizetype fromByte, qsizetype toByte, qsizetype fromUtf16);

        const unsigned char *m_bytes;
        qsizetype m_fromByte;
        qsizetype m_toByte;
        qsizetype m_cursorByte = 0; // from m_fromByte
        qsizetype m_cursorUnit;
    };

    // A walk over [fromByte, toByte); fromByte must be a character boundary.
    ForwardWalk walk(qsizetype fromByte, qsizetype toByte) const;

    // Call after the pane was given another Scintilla document.
    void attachToCurrentDocument();

private:
    QsciScintillaBase *m_sci;
};

} // namespace mirtex
