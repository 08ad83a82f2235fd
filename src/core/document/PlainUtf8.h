// Recognises files whose bytes already are the text the editor holds (UTF-8, LF breaks), so that
// opening them needs no decoding into UTF-16 and back.
#pragma once

#include "core/document/LineEnding.h"

#include <QByteArrayView>

#include <optional>

namespace mirtex::PlainUtf8 {

// The line ending of `data` when TextCodec::decode without a forced encoding would read it as
// UTF-8 without a mark and leave its bytes unchanged: no byte-order mark, not UTF-16-shaped, no
// CR, well-formed UTF-8. Then decode's text, encoded as UTF-8, equals `data`, and its encoding is
// UTF-8 without BOM. Nothing otherwise: the caller decodes. `fallback` is the ending of a text
// without line breaks (the preference). Pure; any thread.
std::optional<LineEnding> lineEnding(QByteArrayView data, LineEnding fallback);

} // namespace mirtex::PlainUtf8
