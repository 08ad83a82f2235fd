// Bytes of a file <-> the text the editor holds: encoding and line-ending detection, strict
// conversion in both directions, line-break normalisation.
#pragma once

#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

// Every function is pure and keeps no state: call it from any thread. Conversion is strict both
// ways (no replacement characters, no best-fit substitutes): where a byte or character cannot be
// converted the answer is nothing, and the caller reports it.
namespace mirtex::TextCodec {

struct Decoded
{
    QString text; // every line break is a single LF
    TextEncoding encoding;
    LineEnding lineEnding;

    friend bool operator==(const Decoded &, const Decoded &) = default;
};

struct DecodedText
{
    QString text; // line breaks as in the file; never starts with the byte-order mark it had
    TextEncoding encoding;

    friend bool operator==(const DecodedText &, const DecodedText &) = default;
};

// Decodes `data` (detecting the encoding unless `forced`), detects the line ending from the first
// break (`fallback`, the preferred ending, when there is none) and normalises breaks to LF.
std::optional<Decoded>
decode(QByteArrayView data, std::optional<TextEncoding> forced, LineEnding fallback);

struct DecodedUtf8
{
    QByteArray utf8; // every line break is a single LF
    TextEncoding encoding;
    LineEnding lineEnding;

    friend bool operator==(const DecodedUtf8 &, const DecodedUtf8 &) = default;
};

// decode() with the text as UTF-8, the form the editor holds. UTF-8 files and the single-byte
// sets go from the file's bytes to UTF-8 in one pass, line breaks included, with no UTF-16 copy;
// the other sets pass through decode().
std::optional<DecodedUtf8>
decodeToUtf8(QByteArrayView data, std::optional<TextEncoding> forced, LineEnding fallback);

// Detection order without `forced`: UTF-8, UTF-32 LE/BE, UTF-16 LE/BE byte-order marks (a file
// with a mark whose rest does not decode gives nothing), UTF-16 without a mark, UTF-8,
// Windows-1252, ISO 8859-1 (which accepts anything). With `forced`: its mark (or, for UTF-8, any
// UTF-8 mark) is skipped and the rest must decode in that set; the result keeps `forced`.
std::optional<DecodedText> decodeText(QByteArrayView data, std::optional<TextEncoding> forced);

// Whether the data is a binary file (looks at the first 8000 bytes): a zero byte, unless the data
// starts with a UTF-16 mark or looks like UTF-16.
bool isBinary(QByteArrayView data);

// The byte order of UTF-16 data without a mark, from the zero bytes among the first 4096 bytes;
// nothing when the data does not look like UTF-16 (or has fewer than 4 or an odd number of bytes).
std::optional<TextEncoding> detectUTF16(QByteArrayView data);

// The ending of the first line break of `text`; `fallback` when it has none.
LineEnding detectLineEnding(QStringView text, LineEnding fallback);

// Every CR LF, then every lone CR, becomes LF. A text without CR comes back untouched (and
// unshared data is rewritten in place).
QString normalizeLineEndings(QString text);

// Writes `text` with every LF turned into `ending`, in `encoding`, after its mark when `bom` is
// set. Nothing when a character cannot be represented or the character set cannot be converted.
std::optional<QByteArray> encode(QStringView text, TextEncoding encoding, LineEnding ending);

// encode() from the editor's UTF-8 (LF breaks): the same bytes, in one pass for UTF-8 and the
// single-byte sets. Ill-formed UTF-8 gives nothing, as an unpaired surrogate does for encode().
std::optional<QByteArray>
encodeFromUtf8(QByteArrayView utf8, TextEncoding encoding, LineEnding ending);

} // namespace mirtex::TextCodec
