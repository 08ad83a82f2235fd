#include "core/document/TextCodec.h"

#include "core/document/CharacterSetTable.h"
#include "core/document/HugePageHint.h"
#include "core/document/IcuCodec.h"
#include "core/document/SingleByteCodec.h"
#include "core/document/Utf8Codec.h"
#include "core/document/WideUnicodeCodec.h"
#include "core/document/WideUnicodeUtf8.h"

#include <QList>

#include <cstring>
#include <memory>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace mirtex::TextCodec {

namespace {
using WideUnicodeCodec::ByteOrder;

constexpr qsizetype kUtf16SniffLength = 4096;
constexpr qsizetype kBinarySniffLength = 8000;

// What the decoder learnt about CRs on the way: `absent` (only the UTF-8 path knows it) lets
// decode() skip the normalisation scan.
enum class CarriageReturns {
    unknown,
    absent,
    present,
};

bool startsWith(QByteArrayView data, const char *prefix, qsizetype length)
{
    return data.size() >= length && std::memcmp(data.data(), prefix, size_t(length)) == 0;
}

std::optional<QString>
decodeIn(quint64 characterSet, QByteArrayView bytes, CarriageReturns *carriageReturns = nullptr)
{
    if (carriageReturns)
        *carriageReturns = CarriageReturns::unknown;
    switch (characterSet) {
    case CharacterSet::utf8: {
        bool containsCR = true;
        std::optional<QString> text = Utf8Codec::decode(bytes, &containsCR);
        if (text && carriageReturns)
            *carriageReturns = containsCR ? CarriageReturns::present : CarriageReturns::absent;
        return text;
    }
    case CharacterSet::utf16LE:
        return WideUnicodeCodec::decodeUtf16(bytes, ByteOrder::littleEndian);
    case CharacterSet::utf16BE:
        return WideUnicodeCodec::decodeUtf16(bytes, ByteOrder::bigEndian);
    case CharacterSet::utf32LE:
        return WideUnicodeCodec::decodeUtf32(bytes, ByteOrder::littleEndian);
    case CharacterSet::utf32BE:
        return WideUnicodeCodec::decodeUtf32(bytes, ByteOrder::bigEndian);
    default:
        break;
    }
    const CharacterSetInfo *info = findCharacterSet(characterSet);
    if (!info)
        return std::nullopt;
    if (auto table = SingleByteCodec::forConverter(info->converterName))
        return table->decode(bytes);
    return IcuCodec::decode(bytes, info->converterName);
}

std::optional<QByteArray> encodeIn(quint64 characterSet, QStringView text)
{
    switch (characterSet) {
    case CharacterSet::utf8:
        return Utf8Codec::encode(text);
    case CharacterSet::utf16LE:
        return WideUnicodeCodec::encodeUtf16(text, ByteOrder::littleEndian);
    case CharacterSet::utf16BE:
        return WideUnicodeCodec::encodeUtf16(text, ByteOrder::bigEndian);
    case CharacterSet::utf32LE:
        return WideUnicodeCodec::encodeUtf32(text, ByteOrder::littleEndian);
    case CharacterSet::utf32BE:
        return WideUnicodeCodec::encodeUtf32(text, ByteOrder::bigEndian);
    default:
        break;
    }
    const CharacterSetInfo *info = findCharacterSet(characterSet);
    if (!info)
        return std::nullopt;
    if (auto table = SingleByteCodec::forConverter(info->converterName))
        return table->encode(text);
    return IcuCodec::encode(text, info->converterName);
}

std::optional<DecodedText>
decodeAs(QByteArrayView bytes, TextEncoding encoding, CarriageReturns *carriageReturns)
{
    std::optional<QString> text = decodeIn(encoding.encoding, bytes, carriageReturns);
    if (!text)
        return std::nullopt;
    return DecodedText{std::move(*text), encoding};
}

std::optional<DecodedText>
decodeForced(QByteArrayView data, TextEncoding forced, CarriageReturns *carriageReturns)
{
    const QByteArray mark = forced.bomBytes();
    if (!mark.isEmpty() && data.startsWith(mark))
        data = data.sliced(mark.size());
    else if (forced.encoding == CharacterSet::utf8 && startsWith(data, "\xEF\xBB\xBF", 3))
        data = data.sliced(3);
    return decodeAs(data, forced, carriageReturns);
}

std::optional<DecodedText> detectAndDecode(QByteArrayView data, CarriageReturns *carriageReturns)
{
    struct Mark
    {
        const char *bytes;
        qsizetype length;
        quint64 characterSet;
    };

    // UTF-32 LE before UTF-16 LE: the latter's mark is a prefix of the former's.
    static constexpr Mark kMarks[] = {
        {"\xEF\xBB\xBF", 3, CharacterSet::utf8},
        {"\xFF\xFE\x00\x00", 4, CharacterSet::utf32LE},
        {"\x00\x00\xFE\xFF", 4, CharacterSet::utf32BE},
        {"\xFF\xFE", 2, CharacterSet::utf16LE},
        {"\xFE\xFF", 2, CharacterSet::utf16BE},
    };
    for (const Mark &mark : kMarks) {
        if (startsWith(data, mark.bytes, mark.length))
            return decodeAs(data.sliced(mark.length), {mark.characterSet, true}, carriageReturns);
    }
    if (std::optional<TextEncoding> utf16 = detectUTF16(data)) {
        if (auto decoded = decodeAs(data, *utf16, carriageReturns))
            return decoded;
    }
    if (auto decoded = decodeAs(data, TextEncoding::utf8(), carriageReturns))
        return decoded;
    if (auto decoded = decodeAs(data, TextEncoding::windows1252(), carriageReturns))
        return decoded;
    return decodeAs(data, TextEncoding::isoLatin1(), carriageReturns);
}

std::optional<DecodedText> decodeTextNoting(QByteArrayView data,
                                            std::optional<TextEncoding> forced,
                                            CarriageReturns *carriageReturns)
{
    *carriageReturns = CarriageReturns::unknown;
    return forced ? decodeForced(data, *forced, carriageReturns)
                  : detectAndDecode(data, carriageReturns);
}

// The first break of ASCII-compatible bytes, by the same rule as detectLineEnding().
LineEnding lineEndingOfBytes(QByteArrayView bytes, LineEnding fallback)
{
    const qsizetype lineFeed = bytes.indexOf('\n');
    const QByteArrayView beforeLineFeed = lineFeed < 0 ? bytes : bytes.first(lineFeed);
    const qsizetype carriageReturn = beforeLineFeed.indexOf('\r');
    if (carriageReturn >= 0)
        return carriageReturn + 1 == lineFeed ? LineEnding::crlf : LineEnding::cr;
    return lineFeed >= 0 ? LineEnding::lf : fallback;
}

// normalizeLineEndings() on UTF-8 bytes: a CR before an LF is dropped, any other CR becomes LF.
QByteArray normalizeUtf8Breaks(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return QByteArray();
    QByteArray out(bytes.size(), Qt::Uninitialized);
    adviseHugePages(out.data(), size_t(out.size()));
    char *to = out.data();
    qsizetype from = 0;
    for (qsizetype cr = bytes.indexOf('\r'); cr >= 0; cr = bytes.indexOf('\r', from)) {
        std::memcpy(to, bytes.data() + from, size_t(cr - from));
        to += cr - from;
        if (cr + 1 >= bytes.size() || bytes[cr + 1] != '\n')
            *to++ = '\n';
        from = cr + 1;
    }
    std::memcpy(to, bytes.data() + from, size_t(bytes.size() - from));
    to += bytes.size() - from;
    out.truncate(to - out.data());
    return out;
}

// Copies UTF-8 `bytes` with each LF replaced by `lineBreak`, one memcpy per line.
QByteArray expandUtf8Breaks(QByteArrayView bytes, QByteArrayView lineBreak)
{
    if (bytes.isEmpty())
        return QByteArray();
    const qsizetype breaks = bytes.count('\n');
    QByteArray out(bytes.size() + breaks * (lineBreak.size() - 1), Qt::Uninitialized);
    adviseHugePages(out.data(), size_t(out.size()));
    char *to = out.data();
    qsizetype from = 0;
    for (qsizetype at = bytes.indexOf('\n'); at >= 0; at = bytes.indexOf('\n', from)) {
        std::memcpy(to, bytes.data() + from, size_t(at - from));
        to += at - from;
        std::memcpy(to, lineBreak.data(), size_t(lineBreak.size()));
        to += lineBreak.size();
        from = at + 1;
    }
    std::memcpy(to, bytes.data() + from, size_t(bytes.size() - from));
    return out;
}

// The single-byte codec of a set when the one-pass paths apply to it.
std::shared_ptr<const SingleByteCodec> directSingleByte(quint64 characterSet)
{
    const CharacterSetInfo *info = findCharacterSet(characterSet);
    if (!info)
        return nullptr;
    auto table = SingleByteCodec::forConverter(info->converterName);
    return table && table->isAsciiCompatible() ? table : nullptr;
}

// The width and byte order of UTF-16 and UTF-32 sets; nothing for the others.
std::optional<std::pair<WideUnicodeUtf8::UnitWidth, ByteOrder>> wideForm(quint64 characterSet)
{
    using WideUnicodeUtf8::UnitWidth;
    switch (characterSet) {
    case CharacterSet::utf16LE:
        return std::pair{UnitWidth::utf16, ByteOrder::littleEndian};
    case CharacterSet::utf16BE:
        return std::pair{UnitWidth::utf16, ByteOrder::bigEndian};
    case CharacterSet::utf32LE:
        return std::pair{UnitWidth::utf32, ByteOrder::littleEndian};
    case CharacterSet::utf32BE:
        return std::pair{UnitWidth::utf32, ByteOrder::bigEndian};
    default:
        return std::nullopt;
    }
}

// The first break of UTF-16 or UTF-32 units, by the same rule as detectLineEnding().
LineEnding lineEndingOfUnits(QByteArrayView bytes,
                             WideUnicodeUtf8::UnitWidth width,
                             ByteOrder order,
                             LineEnding fallback)
{
    const qsizetype unitSize = qsizetype(width);
    const auto *p = reinterpret_cast<const uchar *>(bytes.data());
    const qsizetype units = bytes.size() / unitSize;
    const auto unitAt = [&](qsizetype index) {
        const uchar *unit = p + index * unitSize;
        char32_t value = 0;
        for (qsizetype i = 0; i < unitSize; ++i) {
            const uchar byte = unit[order == ByteOrder::littleEndian ? unitSize - 1 - i : i];
            value = value << 8 | byte;
        }
        return value;
    };
    for (qsizetype i = 0; i < units; ++i) {
        const char32_t unit = unitAt(i);
        if (unit == '\n')
            return LineEnding::lf;
        if (unit == '\r')
            return i + 1 < units && unitAt(i + 1) == '\n' ? LineEnding::crlf : LineEnding::cr;
    }
    return fallback;
}

// One-pass decoding in a set known to the caller, with its line ending; nothing when the bytes
// do not decode in it, and also nothing (with `handled` false) when the set has no one-pass path.
std::optional<std::pair<QByteArray, LineEnding>>
decodeDirect(quint64 characterSet, QByteArrayView bytes, LineEnding fallback, bool *handled)
{
    *handled = true;
    std::optional<QByteArray> utf8;
    if (characterSet == CharacterSet::utf8) {
        bool containsCR = true;
        if (!Utf8Codec::isValid(bytes, &containsCR))
            return std::nullopt;
        utf8 = containsCR ? normalizeUtf8Breaks(bytes) : bytes.toByteArray();
    } else if (auto table = directSingleByte(characterSet)) {
        utf8 = table->decodeToUtf8(bytes);
    } else if (auto wide = wideForm(characterSet)) {
        utf8 = WideUnicodeUtf8::decodeToUtf8(bytes, wide->first, wide->second);
        if (!utf8)
            return std::nullopt;
        return std::pair{std::move(*utf8),
                         lineEndingOfUnits(bytes, wide->first, wide->second, fallback)};
    } else {
        *handled = false;
        return std::nullopt;
    }
    if (!utf8)
        return std::nullopt;
    return std::pair{std::move(*utf8), lineEndingOfBytes(bytes, fallback)};
}

// `bytes` after the encoding's byte-order mark, if it has one. Not prepend(): that would
// reallocate without the huge-page hint.
std::optional<QByteArray> withMark(std::optional<QByteArray> bytes, TextEncoding encoding)
{
    const QByteArray mark = encoding.bomBytes();
    if (!bytes || mark.isEmpty())
        return bytes;
    QByteArray marked(mark.size() + bytes->size(), Qt::Uninitialized);
    adviseHugePages(marked.data(), size_t(marked.size()));
    std::memcpy(marked.data(), mark.constData(), size_t(mark.size()));
    std::memcpy(marked.data() + mark.size(), bytes->constData(), size_t(bytes->size()));
    return marked;
}

// Copies `text` with each LF replaced by `lineBreak`, one memcpy per line.
QString expandLineBreaks(QStringView text, QStringView lineBreak)
{
    const qsizetype breaks = text.count(u'\n');
    if (breaks == 0)
        return text.toString();
    QString expanded(text.size() + breaks * (lineBreak.size() - 1), Qt::Uninitialized);
    adviseHugePages(expanded.data(), size_t(expanded.size()) * sizeof(QChar));
    QChar *out = expanded.data();
    qsizetype from = 0;
    for (qsizetype at = text.indexOf(u'\n'); at >= 0; at = text.indexOf(u'\n', from)) {
        std::memcpy(out, text.data() + from, size_t(at - from) * sizeof(QChar));
        out += at - from;
        std::memcpy(out, lineBreak.data(), size_t(lineBreak.size()) * sizeof(QChar));
        out += lineBreak.size();
        from = at + 1;
    }
    std::memcpy(out, text.data() + from, size_t(text.size() - from) * sizeof(QChar));
    return expanded;
}
} // namespace

std::optional<Decoded>
decode(QByteArrayView data, std::optional<TextEncoding> forced, LineEnding fallback)
{
    CarriageReturns carriageReturns;
    std::optional<DecodedText> decoded = decodeTextNoting(data, forced, &carriageReturns);
    if (!decoded)
        return std::nullopt;
    const LineEnding ending = detectLineEnding(decoded->text, fallback);
    QString text = carriageReturns == CarriageReturns::absent
                       ? std::move(decoded->text)
                       : normalizeLineEndings(std::move(decoded->text));
    return Decoded{std::move(text), decoded->encoding, ending};
}

std::optional<DecodedUtf8>
decodeToUtf8(QByteArrayView data, std::optional<TextEncoding> forced, LineEnding fallback)
{
    // The sets and the order detectAndDecode() and decodeForced() would try. After a mark (or
    // with `forced`) only the first counts.
    struct Mark
    {
        const char *bytes;
        qsizetype length;
        TextEncoding encoding;
    };

    static const Mark kMarks[] = {
        {"\xEF\xBB\xBF", 3, TextEncoding::utf8WithBom()},
        {"\xFF\xFE\x00\x00", 4, {CharacterSet::utf32LE, true}},
        {"\x00\x00\xFE\xFF", 4, {CharacterSet::utf32BE, true}},
        {"\xFF\xFE", 2, {CharacterSet::utf16LE, true}},
        {"\xFE\xFF", 2, {CharacterSet::utf16BE, true}},
    };
    QList<TextEncoding> candidates;
    QByteArrayView body = data;
    bool onlyFirst = true;
    if (forced) {
        const QByteArray mark = forced->bomBytes();
        if (forced->encoding == CharacterSet::utf8 && startsWith(data, "\xEF\xBB\xBF", 3))
            body = data.sliced(3);
        else if (!mark.isEmpty() && data.startsWith(mark))
            body = data.sliced(mark.size());
        candidates = {*forced};
    } else {
        for (const Mark &mark : kMarks) {
            if (startsWith(data, mark.bytes, mark.length)) {
                body = data.sliced(mark.length);
                candidates = {mark.encoding};
                break;
            }
        }
        if (candidates.isEmpty()) {
            onlyFirst = false;
            if (std::optional<TextEncoding> utf16 = detectUTF16(data))
                candidates.append(*utf16);
            candidates
                += {TextEncoding::utf8(), TextEncoding::windows1252(), TextEncoding::isoLatin1()};
        }
    }
    for (const TextEncoding &candidate : candidates) {
        bool handled = false;
        auto utf8 = decodeDirect(candidate.encoding, body, fallback, &handled);
        if (!handled)
            break;
        if (utf8)
            return DecodedUtf8{std::move(utf8->first), candidate, utf8->second};
        if (onlyFirst)
            return std::nullopt;
    }
    // The multi-byte sets: through UTF-16.
    std::optional<Decoded> decoded = decode(data, forced, fallback);
    if (!decoded)
        return std::nullopt;
    return DecodedUtf8{decoded->text.toUtf8(), decoded->encoding, decoded->lineEnding};
}

std::optional<DecodedText> decodeText(QByteArrayView data, std::optional<TextEncoding> forced)
{
    CarriageReturns carriageReturns;
    return decodeTextNoting(data, forced, &carriageReturns);
}

bool isBinary(QByteArrayView data)
{
    const QByteArrayView head = data.first(std::min(data.size(), kBinarySniffLength));
    if (!head.contains('\0'))
        return false;
    if (startsWith(head, "\xFF\xFE", 2) || startsWith(head, "\xFE\xFF", 2))
        return false;
    return !detectUTF16(data).has_value();
}

std::optional<TextEncoding> detectUTF16(QByteArrayView data)
{
    const qsizetype length = std::min(data.size(), kUtf16SniffLength);
    if (length < 4 || length % 2 != 0)
        return std::nullopt;
    qsizetype evenZeros = 0;
    qsizetype oddZeros = 0;
    for (qsizetype i = 0; i < length; i += 2) {
        evenZeros += data[i] == '\0';
        oddZeros += data[i + 1] == '\0';
    }
    // Over 40% of the odd (or even) bytes zero, and at most 5% of the other half.
    if (10 * oddZeros > 2 * length && 20 * evenZeros <= length / 2)
        return TextEncoding{CharacterSet::utf16LE, false};
    if (10 * evenZeros > 2 * length && 20 * oddZeros <= length / 2)
        return TextEncoding{CharacterSet::utf16BE, false};
    return std::nullopt;
}

LineEnding detectLineEnding(QStringView text, LineEnding fallback)
{
    // Two vectorised searches instead of one character loop: the first LF bounds the CR search.
    const qsizetype lineFeed = text.indexOf(u'\n');
    const QStringView beforeLineFeed = lineFeed < 0 ? text : text.first(lineFeed);
    const qsizetype carriageReturn = beforeLineFeed.indexOf(u'\r');
    if (carriageReturn >= 0)
        return carriageReturn + 1 == lineFeed ? LineEnding::crlf : LineEnding::cr;
    return lineFeed >= 0 ? LineEnding::lf : fallback;
}

QString normalizeLineEndings(QString text)
{
    const qsizetype first = text.indexOf(u'\r');
    if (first < 0)
        return text;
    // One pass in place: a CR before an LF is dropped, any other CR becomes LF. This equals
    // replacing every CR LF and then every remaining CR. Writing never overtakes reading.
    const qsizetype size = text.size();
    char16_t *data = reinterpret_cast<char16_t *>(text.data());
    qsizetype read = first;
    qsizetype written = first;
    const auto compactUntil = [&](qsizetype until) {
        for (; read < until; ++read) {
            const char16_t unit = data[read];
            if (unit != u'\r')
                data[written++] = unit;
            else if (read + 1 >= size || data[read + 1] != u'\n')
                data[written++] = u'\n';
        }
    };
#if defined(__SSE2__)
    // Blocks without CR move as a whole; the block is loaded before the store, and the store
    // lands at or before the load, so no unread unit is overwritten.
    const __m128i carriageReturn = _mm_set1_epi16(u'\r');
    while (size - read >= 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(data + read));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(block, carriageReturn)) == 0) {
            _mm_storeu_si128(reinterpret_cast<__m128i *>(data + written), block);
            read += 8;
            written += 8;
        } else {
            compactUntil(read + 8);
        }
    }
#endif
    compactUntil(size);
    text.truncate(written);
    return text;
}

std::optional<QByteArray> encode(QStringView text, TextEncoding encoding, LineEnding ending)
{
    std::optional<QByteArray> bytes;
    if (ending == LineEnding::lf)
        bytes = encodeIn(encoding.encoding, text);
    else
        bytes = encodeIn(encoding.encoding, expandLineBreaks(text, lineBreak(ending)));
    return withMark(std::move(bytes), encoding);
}

std::optional<QByteArray>
encodeFromUtf8(QByteArrayView utf8, TextEncoding encoding, LineEnding ending)
{
    const QByteArray lineBreakBytes = lineBreak(ending).toLatin1();
    std::optional<QByteArray> bytes;
    if (encoding.encoding == CharacterSet::utf8) {
        if (!Utf8Codec::isValid(utf8))
            return std::nullopt;
        bytes = ending == LineEnding::lf ? utf8.toByteArray()
                                         : expandUtf8Breaks(utf8, lineBreakBytes);
    } else if (auto table = directSingleByte(encoding.encoding)) {
        bytes = table->encodeFromUtf8(utf8, lineBreakBytes);
    } else if (auto wide = wideForm(encoding.encoding)) {
        // The mark is written first into the one buffer rather than copied in front afterwards.
        return WideUnicodeUtf8::encodeFromUtf8(
            utf8, wide->first, wide->second, lineBreakBytes, encoding.bomBytes());
    } else {
        if (!Utf8Codec::isValid(utf8))
            return std::nullopt;
        return encode(Utf8Codec::toUtf16(utf8), encoding, ending);
    }
    return withMark(std::move(bytes), encoding);
}

} // namespace mirtex::TextCodec
