// UTF-16 and UTF-32 bytes <-> the editor's UTF-8 in one pass, line breaks included.
#pragma once

#include "core/document/WideUnicodeCodec.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace mirtex::WideUnicodeUtf8 {

using WideUnicodeCodec::ByteOrder;

enum class UnitWidth {
    utf16 = 2,
    utf32 = 4,
};

// Decodes wide-unit bytes (without their mark) straight to UTF-8, every CR LF and lone CR turned
// into LF. The rules of WideUnicodeCodec::decodeUtf16/decodeUtf32: a byte count that is not a
// whole number of units, an unpaired surrogate, or (UTF-32) a value above U+10FFFF or in the
// surrogate range gives nothing. Thread-safe.
std::optional<QByteArray> decodeToUtf8(QByteArrayView bytes, UnitWidth width, ByteOrder order);

// Encodes UTF-8 with LF breaks, each LF written as `lineBreak` (ASCII), after `prefix` (a
// byte-order mark, or empty). Ill-formed UTF-8 (Utf8Codec::decode's rules) gives nothing.
// Thread-safe.
std::optional<QByteArray> encodeFromUtf8(QByteArrayView utf8,
                                         UnitWidth width,
                                         ByteOrder order,
                                         QByteArrayView lineBreak,
                                         QByteArrayView prefix);

} // namespace mirtex::WideUnicodeUtf8
