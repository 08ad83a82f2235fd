// A second opinion on the detection rules: when they fell back to a Western single-byte set, the
// text may well be Japanese, Chinese, Cyrillic or UTF-16 without a mark. The rules stay the
// contract; the hint only offers to reopen the file in the encoding it names.
#pragma once

#include "core/document/TextEncoding.h"

#include <QByteArrayView>

#include <optional>

namespace mirtex::EncodingHint {

// The encoding to offer for `bytes`, which the rules decoded as `detected`; nothing when the
// rules did not fall back to Windows-1252 or ISO 8859-1, when no other encoding is clearly more
// likely, or when the bytes do not decode in it. Looks at a bounded prefix, then checks the whole
// file in the suggested encoding. Any thread.
std::optional<TextEncoding> suggest(QByteArrayView bytes, TextEncoding detected);

} // namespace mirtex::EncodingHint
