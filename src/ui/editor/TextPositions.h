// The one place where Scintilla byte positions and UTF-16 offsets meet. Uses Scintilla's UTF-16
// line index (allocated per document) plus a walk inside one line, so a conversion costs
// O(log lines + line length).
#pragma once

#include <QtGlobal>

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
    qsizetype utf16Length() const;
    qsizetype byteLength() const;

    // Call after the pane was given another Scintilla document.
    void attachToCurrentDocument();

private:
    QsciScintillaBase *m_sci;
};

} // namespace mirtex
