#include "core/document/LineEndingCount.h"

#include <QList>

#include <algorithm>
#include <cstring>

namespace mirtex {

namespace {

// Code units of `width` bytes; `order` says where the low byte sits.
template<int width>
LineEndingCount countUnits(QByteArrayView bytes, bool bigEndian)
{
    LineEndingCount count;
    const qsizetype units = bytes.size() / width;
    const auto *data = reinterpret_cast<const uchar *>(bytes.data());
    auto unitAt = [&](qsizetype i) {
        quint32 value = 0;
        for (int b = 0; b < width; ++b) {
            const int shift = bigEndian ? 8 * (width - 1 - b) : 8 * b;
            value |= quint32(data[i * width + b]) << shift;
        }
        return value;
    };
    for (qsizetype i = 0; i < units; ++i) {
        const quint32 unit = unitAt(i);
        if (unit == '\n') {
            ++count.lf;
        } else if (unit == '\r') {
            if (i + 1 < units && unitAt(i + 1) == '\n') {
                ++count.crlf;
                ++i;
            } else {
                ++count.cr;
            }
        }
    }
    return count;
}

LineEndingCount countBytes(QByteArrayView bytes)
{
    LineEndingCount count;
    const char *data = bytes.data();
    const char *const end = data + bytes.size();
    const bool anyCr = std::memchr(data, '\r', size_t(bytes.size())) != nullptr;
    if (!anyCr) {
        count.lf = std::count(data, end, '\n');
        return count;
    }
    for (const char *p = data; p < end; ++p) {
        if (*p == '\n') {
            ++count.lf;
        } else if (*p == '\r') {
            if (p + 1 < end && p[1] == '\n') {
                ++count.crlf;
                ++p;
            } else {
                ++count.cr;
            }
        }
    }
    return count;
}

} // namespace

LineEndingCount countLineEndings(QByteArrayView bytes, TextEncoding encoding)
{
    switch (encoding.encoding) {
    case CharacterSet::utf16LE:
        return countUnits<2>(bytes, false);
    case CharacterSet::utf16BE:
        return countUnits<2>(bytes, true);
    case CharacterSet::utf32LE:
        return countUnits<4>(bytes, false);
    case CharacterSet::utf32BE:
        return countUnits<4>(bytes, true);
    default:
        return countBytes(bytes);
    }
}

QString LineEndingCount::summary() const
{
    QList<std::pair<qsizetype, const char *>> kinds = {{crlf, "CRLF"}, {lf, "LF"}, {cr, "CR"}};
    std::stable_sort(
        kinds.begin(), kinds.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    QStringList parts;
    for (const auto &[number, name] : kinds) {
        if (number > 0)
            parts.append(QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(number));
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace mirtex
