#include "core/document/WideUnicodeCodec.h"

#include "core/document/HugePageHint.h"

#include <QtEndian>

namespace mirtex::WideUnicodeCodec {

namespace {
inline bool isSurrogate(char32_t code)
{
    return (code & 0xFFFFF800) == 0xD800;
}

inline bool isHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

inline bool isLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

inline char32_t loadUtf32(const uchar *p, ByteOrder order)
{
    return order == ByteOrder::littleEndian ? qFromLittleEndian<quint32>(p)
                                            : qFromBigEndian<quint32>(p);
}
} // namespace

bool hasPairedSurrogates(QStringView text)
{
    const char16_t *p = text.utf16();
    const qsizetype size = text.size();
    constexpr qsizetype kBlock = 64;
    for (qsizetype start = 0; start < size; start += kBlock) {
        // Without an early exit this inner test vectorises; surrogates are rare in real text,
        // so the exact walk below almost never runs.
        const qsizetype blockEnd = std::min(size, start + kBlock);
        bool any = false;
        for (qsizetype i = start; i < blockEnd; ++i)
            any |= isSurrogate(p[i]);
        if (!any)
            continue;
        for (qsizetype i = start; i < blockEnd; ++i) {
            if (!isSurrogate(p[i]))
                continue;
            if (!isHighSurrogate(p[i]) || i + 1 >= size || !isLowSurrogate(p[i + 1]))
                return false;
            ++i;
            // A pair may straddle the block boundary; the next block starts after it.
            if (i >= blockEnd)
                start = i + 1 - kBlock;
        }
    }
    return true;
}

std::optional<QString> decodeUtf16(QByteArrayView bytes, ByteOrder order)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    if (bytes.isEmpty()) // Qt's byte-order copy would pass a null source to memcpy
        return QString();
    QString text(bytes.size() / 2, Qt::Uninitialized);
    adviseHugePages(text.data(), size_t(text.size()) * sizeof(QChar));
    if (order == ByteOrder::littleEndian)
        qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    else
        qFromBigEndian<char16_t>(bytes.data(), text.size(), text.data());
    if (!hasPairedSurrogates(text))
        return std::nullopt;
    return text;
}

std::optional<QString> decodeUtf32(QByteArrayView bytes, ByteOrder order)
{
    if (bytes.size() % 4 != 0)
        return std::nullopt;
    // At most two UTF-16 units per code point; shrunk at the end.
    QString text(bytes.size() / 2, Qt::Uninitialized);
    adviseHugePages(text.data(), size_t(text.size()) * sizeof(QChar));
    auto *out = reinterpret_cast<char16_t *>(text.data());
    const auto *p = reinterpret_cast<const uchar *>(bytes.data());
    for (qsizetype i = 0; i < bytes.size(); i += 4) {
        const char32_t code = loadUtf32(p + i, order);
        if (code > 0x10FFFF || isSurrogate(code))
            return std::nullopt;
        if (code < 0x10000) {
            *out++ = char16_t(code);
        } else {
            *out++ = QChar::highSurrogate(code);
            *out++ = QChar::lowSurrogate(code);
        }
    }
    text.truncate(out - reinterpret_cast<char16_t *>(text.data()));
    text.squeeze();
    return text;
}

std::optional<QByteArray> encodeUtf16(QStringView text, ByteOrder order)
{
    if (!hasPairedSurrogates(text))
        return std::nullopt;
    if (text.isEmpty())
        return QByteArray();
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    adviseHugePages(bytes.data(), size_t(bytes.size()));
    if (order == ByteOrder::littleEndian)
        qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    else
        qToBigEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

std::optional<QByteArray> encodeUtf32(QStringView text, ByteOrder order)
{
    if (!hasPairedSurrogates(text))
        return std::nullopt;
    QByteArray bytes;
    bytes.reserve(text.size() * 4);
    const char16_t *p = text.utf16();
    const char16_t *const end = p + text.size();
    while (p < end) {
        char32_t code = *p++;
        if (isHighSurrogate(char16_t(code)))
            code = QChar::surrogateToUcs4(char16_t(code), *p++);
        uchar unit[4];
        if (order == ByteOrder::littleEndian)
            qToLittleEndian<quint32>(code, unit);
        else
            qToBigEndian<quint32>(code, unit);
        bytes.append(reinterpret_cast<const char *>(unit), 4);
    }
    return bytes;
}

} // namespace mirtex::WideUnicodeCodec
