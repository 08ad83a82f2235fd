#include "TextLines.h"

namespace mirtex {

TextLines::TextLines(QString text)
    : m_text(std::move(text))
{
    const auto *data = reinterpret_cast<const char16_t *>(m_text.constData());
    const qsizetype length = m_text.size();
    m_starts.reserve(size_t(length / 32 + 2));
    m_starts.push_back(0);
    const char16_t *at = data;
    const char16_t *end = data + length;
    while (at < end) {
        // memchr-like scan; the compiler vectorises this loop well enough.
        while (at < end && *at != u'\n')
            ++at;
        if (at == end)
            break;
        ++at;
        m_starts.push_back(at - data);
    }
    m_starts.push_back(length + 1);
}

TextLines TextLines::fromList(const QStringList &lines)
{
    return TextLines(lines.join(u'\n'));
}

QStringList TextLines::toList() const
{
    QStringList lines;
    lines.reserve(size());
    for (qsizetype i = 0; i < size(); ++i)
        lines.append((*this)[i].toString());
    return lines;
}

} // namespace mirtex
