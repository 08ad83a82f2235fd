// Strict UTF-8 <-> UTF-16 conversion, tuned for large mostly-ASCII files.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex::Utf8Codec {

// Decodes well-formed UTF-8 only: overlong forms, encoded surrogates (ED A0..BF), values above
// U+10FFFF, stray continuation bytes and a sequence cut off by the end all give nothing. A leading
// EF BB BF is kept as U+FEFF (callers strip marks). When `containsCR` is given it is set to
// whether the bytes hold a CR, so callers can skip a separate scan. Thread-safe.
std::optional<QString> decode(QByteArrayView bytes, bool *containsCR = nullptr);

// Whether decode() would accept `bytes` (the same rules), without building the text. When
// `containsCR` is given and the bytes are valid, it is set to whether they hold a CR. Thread-safe.
bool isValid(QByteArrayView bytes, bool *containsCR = nullptr);

// UTF-16 of bytes known to be well-formed UTF-8 (the editor's text or a part of it), as
// QString::fromUtf8 but keeping a leading EF BB BF as U+FEFF, which Qt drops as a byte-order mark:
// here it is a character of the text. Thread-safe.
QString toUtf16(QByteArrayView utf8);

// Encodes to UTF-8; an unpaired surrogate, which no encoding can represent, gives nothing.
std::optional<QByteArray> encode(QStringView text);

} // namespace mirtex::Utf8Codec
