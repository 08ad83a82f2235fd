#include "core/tools/Graphemes.h"

#include <unicode/ubrk.h>

namespace mirtex {

Graphemes::Graphemes()
{
    UErrorCode status = U_ZERO_ERROR;
    m_iterator = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
    if (U_FAILURE(status))
        m_iterator = nullptr;
}

Graphemes::~Graphemes()
{
    if (m_iterator)
        ubrk_close(m_iterator);
}

bool Graphemes::isOneUnitEach(QStringView text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x300)
            return false;
    }
    return true;
}

qsizetype Graphemes::count(QStringView text)
{
    if (isOneUnitEach(text))
        return text.size();
    qsizetype n = 0;
    setText(text);
    while (next() >= 0)
        ++n;
    return n;
}

void Graphemes::setText(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    if (m_iterator)
        ubrk_setText(m_iterator,
                     reinterpret_cast<const UChar *>(text.utf16()),
                     int32_t(text.size()),
                     &status);
    m_size = text.size();
    m_at = 0;
}

qsizetype Graphemes::next()
{
    if (!m_iterator) // without ICU data, one character per code point
        return m_at < m_size ? ++m_at : -1;
    const int32_t end = ubrk_next(m_iterator);
    return end == UBRK_DONE ? -1 : end;
}

} // namespace mirtex
