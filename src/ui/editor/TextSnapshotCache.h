// The whole text of an editor as one UTF-16 string, made lazily and kept while it is current.
// Once made it follows insertions and deletions instead of being rebuilt from the whole text;
// QString shares its data, so handing it to a background job costs nothing. Main thread only.
#pragma once

#include "core/document/Utf8Codec.h"

#include <QString>

#include <optional>

namespace mirtex {

class TextSnapshotCache
{
public:
    // The snapshot when it is current; nothing when making it would mean converting the text.
    std::optional<QString> ready() const
    {
        return m_valid ? std::optional<QString>(m_text) : std::nullopt;
    }

    // The snapshot, made from `utf8` (the whole text) unless it is current.
    template<typename Utf8Source>
    const QString &get(Utf8Source &&utf8)
    {
        if (!m_valid) {
            m_text = Utf8Codec::toUtf16(utf8());
            m_valid = true;
        }
        return m_text;
    }

    // One change of the text, in UTF-16 units. An insertion whose text is not at hand drops the
    // snapshot.
    void inserted(qsizetype utf16Location, const char *utf8, qsizetype byteLength)
    {
        if (m_valid && utf8)
            m_text.insert(utf16Location, Utf8Codec::toUtf16(QByteArrayView(utf8, byteLength)));
        else
            invalidate();
    }

    void removed(qsizetype utf16Location, qsizetype utf16Length)
    {
        if (m_valid)
            m_text.remove(utf16Location, utf16Length);
        else
            invalidate();
    }

    void invalidate()
    {
        m_valid = false;
        m_text = QString();
    }

private:
    QString m_text;
    bool m_valid = false;
};

} // namespace mirtex
