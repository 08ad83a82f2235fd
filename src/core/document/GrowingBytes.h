// An output buffer for converters whose output size is only known at the end.
#pragma once

#include "core/document/HugePageHint.h"

#include <QByteArray>

#include <algorithm>

namespace mirtex {

// A QByteArray written through a raw pointer and grown a chunk at a time, so that the worst case
// of a conversion (say three UTF-8 bytes per input byte) is never allocated for a whole large
// file. Reserve room for a chunk, write it through the pointer, then advance() to where writing
// stopped.
class GrowingBytes
{
public:
    explicit GrowingBytes(qsizetype expected)
        : m_bytes(std::max<qsizetype>(expected, 0), Qt::Uninitialized)
    {
        adviseHugePages(m_bytes.data(), size_t(m_bytes.size()));
    }

    // Room for `more` bytes after the current end.
    uchar *reserve(qsizetype more)
    {
        if (m_written + more > m_bytes.size())
            m_bytes.resize(std::max(m_written + more, m_bytes.size() + m_bytes.size() / 2));
        return reinterpret_cast<uchar *>(m_bytes.data()) + m_written;
    }

    void advance(uchar *to) { m_written = to - reinterpret_cast<uchar *>(m_bytes.data()); }

    QByteArray take()
    {
        m_bytes.truncate(m_written);
        return std::move(m_bytes);
    }

private:
    QByteArray m_bytes;
    qsizetype m_written = 0;
};

} // namespace mirtex
