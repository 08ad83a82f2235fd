#include "ui/editor/TextPositions.h"

#include "core/document/Utf8Codec.h"

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
    const long line = long(lineOfUtf16(offset));
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

TextRange TextPositions::toUtf16Range(qsizetype fromByte, qsizetype toByteValue) const
{
    return {toUtf16(fromByte), utf16Count(fromByte, toByteValue)};
}

qsizetype TextPositions::utf16Length() const
{
    return toUtf16(byteLength());
}

qsizetype TextPositions::byteLength() const
{
    return m_sci->SendScintilla(Sci::SCI_GETLENGTH);
}

qsizetype TextPositions::lineOfUtf16(qsizetype utf16Offset) const
{
    return m_sci->SendScintilla(Sci::SCI_LINEFROMINDEXPOSITION,
                                long(std::max<qsizetype>(0, utf16Offset)),
                                long(Sci::SC_LINECHARACTERINDEX_UTF16));
}

QString TextPositions::text(TextRange utf16Range) const
{
    const qsizetype fromByte = toByte(utf16Range.location);
    const qsizetype toByteValue = std::max(fromByte, toByte(utf16Range.end()));
    const auto *bytes
        = reinterpret_cast<const char *>(m_sci->SendScintilla(Sci::SCI_GETRANGEPOINTER,
                                                              static_cast<unsigned long>(fromByte),
                                                              long(toByteValue - fromByte)));
    return Utf8Codec::toUtf16(QByteArrayView(bytes, toByteValue - fromByte));
}

QChar TextPositions::unitAt(qsizetype utf16Offset) const
{
    if (utf16Offset < 0)
        return {};
    const QString unit = text({utf16Offset, 1});
    return unit.isEmpty() ? QChar() : unit.front();
}

TextPositions::ForwardWalk TextPositions::walk(qsizetype fromByte, qsizetype toByteValue) const
{
    const auto *bytes
        = reinterpret_cast<const char *>(m_sci->SendScintilla(Sci::SCI_GETRANGEPOINTER,
                                                              static_cast<unsigned long>(fromByte),
                                                              long(toByteValue - fromByte)));
    return ForwardWalk(bytes, fromByte, toByteValue, toUtf16(fromByte));
}

TextPositions::ForwardWalk::ForwardWalk(const char *bytes,
                                        qsizetype fromByte,
                                        qsizetype toByte,
                                        qsizetype fromUtf16)
    : m_bytes(reinterpret_cast<const unsigned char *>(bytes))
    , m_fromByte(fromByte)
    , m_toByte(toByte)
    , m_cursorUnit(fromUtf16)
{}

qsizetype TextPositions::ForwardWalk::byteAt(qsizetype utf16Offset)
{
    // The text is valid UTF-8 (Scintilla in UTF-8 mode): the lead byte gives the length.
    while (m_cursorUnit < utf16Offset && m_fromByte + m_cursorByte < m_toByte) {
        const unsigned char lead = m_bytes[m_cursorByte];
        const int size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        m_cursorByte += size;
        m_cursorUnit += size == 4 ? 2 : 1;
    }
    return m_fromByte + m_cursorByte;
}

} // namespace mirtex
