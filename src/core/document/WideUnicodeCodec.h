// Strict UTF-16 and UTF-32 conversion in either byte order, without byte-order marks.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex::WideUnicodeCodec {

enum class ByteOrder {
    littleEndian,
    bigEndian,
};

// An odd byte count, an unpaired surrogate, or (UTF-32) a value above U+10FFFF or inside the
// surrogate range gives nothing. Marks are not stripped: callers do that. Thread-safe.
std::optional<QString> decodeUtf16(QByteArrayView bytes, ByteOrder order);
std::optional<QString> decodeUtf32(QByteArrayView bytes, ByteOrder order);

// An unpaired surrogate in `text` gives nothing.
std::optional<QByteArray> encodeUtf16(QStringView text, ByteOrder order);
std::optional<QByteArray> encodeUtf32(QStringView text, ByteOrder order);

// Whether every surrogate in `text` belongs to a high-low pair.
bool hasPairedSurrogates(QStringView text);

} // namespace mirtex::WideUnicodeCodec
