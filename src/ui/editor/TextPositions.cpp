#include "ui/editor/TextPositions.h"

#include <Qsci/qsciscintillabase.h>

#include <algorithm>

namespace mirtex {

using Sci = QsciScintillaBase;

TextPositions::TextPositions(QsciScintillaBase *scintilla)
    : m_sci(scintilla)
{
    attachToCurrentDocument();
}

void TextPositions::attachToCurrentDocument()
{
    m_sci->SendScintilla(Sci::SCI_ALLOCATELINECHARACTERINDEX, Sci::SC_LINECHARACTERINDEX_UTF16);
}

qsizetype TextPositions::toUtf16(qsizetype bytePosition) const
{
    const long length = m_sci->SendScintilla(Sci::SCI_GETLENGTH);
    const long pos = long(std::clamp<qsizetype>(bytePosition, 0, length));
    const long line = m_sci->SendScintilla(Sci::SCI_LINEFROMPOSITION, pos);
    const long lineStartByte = m_sci->SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    const long lineStartUtf16 = m_sci->SendScintilla(
        Sci::SCI_INDEXPOSITIONFROMLINE, line, Sci::SC_LINECHARACTERINDEX_UTF16);
    return lineStartUtf16 + m_sci->SendScintilla(Sci::SCI_COUNTCODEUNITS, lineStartByte, pos);
}

qsizetype TextPositions::toByte(qsizetype utf16Offset) const
{
    if (utf16Offset <= 0)
        return 0;
    const qsizetype total = utf16Length();
    if (utf16Offset >= total)
        return byteLength();
    const long offset = long(utf16Offset);
    const long line = m_sci->SendScintilla(
        Sci::SCI_LINEFROMINDEXPOSITION, offset, long(Sci::SC_LINECHARACTERINDEX_UTF16));
    const long lineStartByte = m_sci->SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    const long lineStartUtf16 = m_sci->SendScintilla(
        Sci::SCI_INDEXPOSITIONFROMLINE, line, Sci::SC_LINECHARACTERINDEX_UTF16);
    return m_sci->SendScintilla(
        Sci::SCI_POSITIONRELATIVECODEUNITS, lineStartByte, offset - lineStartUtf16);
}

qsizetype TextPositions::utf16Count(qsizetype fromByte, qsizetype toByteValue) const
{
    return m_sci->SendScintilla(Sci::SCI_COUNTCODEUNITS, long(fromByte), long(toByteValue));
}

qsizetype TextPositions::utf16Length() const
{
    return toUtf16(byteLength());
}

qsizetype TextPositions::byteLength() const
{
    return m_sci->SendScintilla(Sci::SCI_GETLENGTH);
}

} // namespace mirtex
