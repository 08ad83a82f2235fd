// The one-pass paths between a file's bytes and the editor's UTF-8 give exactly what the UTF-16
// paths give, on random bytes and texts in every encoding of the menus, failures included.
#include "core/document/TextCodec.h"
#include "support/MenuEncodings.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

std::optional<TextCodec::DecodedUtf8> throughUtf16(QByteArrayView bytes,
                                                   std::optional<TextEncoding> forced)
{
    const auto decoded = TextCodec::decode(bytes, forced, LineEnding::crlf);
    if (!decoded)
        return std::nullopt;
    return TextCodec::DecodedUtf8{decoded->text.toUtf8(), decoded->encoding, decoded->lineEnding};
}

// Bytes that are mostly text: ASCII words, line breaks of every kind, high bytes, now and then
// a UTF-8 sequence or a zero.
QByteArray randomBytes(QRandomGenerator &random)
{
    QByteArray bytes;
    const int length = random.bounded(0, 120);
    for (int i = 0; i < length; ++i) {
        switch (random.bounded(10)) {
        case 0:
            bytes += "\r\n";
            break;
        case 1:
            bytes += random.bounded(2) ? '\r' : '\n';
            break;
        case 2:
            bytes += char(0x80 + random.bounded(128));
            break;
        case 3:
            bytes += random.bounded(2) ? "\xC3\xA8" : "\xE2\x82\xAC";
            break;
        default:
            bytes += char('a' + random.bounded(26));
        }
    }
    return bytes;
}

TEST(DirectTranscoding, DecodingMatchesTheUtf16Path)
{
    QRandomGenerator random(11);
    const QList<TextEncoding> encodings = everyMenuEncoding();
    for (int round = 0; round < 3000; ++round) {
        const QByteArray bytes = randomBytes(random);
        std::optional<TextEncoding> forced;
        if (round % 3 != 0)
            forced = encodings[random.bounded(int(encodings.size()))];
        const auto direct = TextCodec::decodeToUtf8(bytes, forced, LineEnding::crlf);
        const auto reference = throughUtf16(bytes, forced);
        ASSERT_EQ(direct, reference) << bytes.toHex().toStdString() << " in "
                                     << (forced ? forced->label().toStdString() : "detected");
    }
}

TEST(DirectTranscoding, EncodingMatchesTheUtf16Path)
{
    QRandomGenerator random(12);
    const QString pool = QStringLiteral("abc \n€èßœŠ日本Жα\u00A0\u200B😀");
    for (const TextEncoding &encoding : everyMenuEncoding()) {
        for (int round = 0; round < 200; ++round) {
            QString text;
            const int length = random.bounded(0, 60);
            for (int i = 0; i < length; ++i) {
                const qsizetype at = random.bounded(int(pool.size()));
                // The emoji is two units; never split it.
                if (pool.at(at).isLowSurrogate())
                    continue;
                text += pool.at(at);
                if (pool.at(at).isHighSurrogate())
                    text += pool.at(at + 1);
            }
            const LineEnding ending
                = std::array{LineEnding::lf, LineEnding::crlf, LineEnding::cr}[round % 3];
            ASSERT_EQ(TextCodec::encodeFromUtf8(text.toUtf8(), encoding, ending),
                      TextCodec::encode(text, encoding, ending))
                << qPrintable(encoding.label()) << ": " << qPrintable(text);
        }
        // A text that starts with U+FEFF keeps it (Qt's own UTF-8 decoding drops it).
        ASSERT_EQ(
            TextCodec::encodeFromUtf8(QByteArrayView("\xEF\xBB\xBFx"), encoding, LineEnding::lf),
            TextCodec::encode(u"\uFEFFx", encoding, LineEnding::lf))
            << qPrintable(encoding.label());
        for (const char *broken : {"\xC3", "a\xFF", "\xED\xA0\x80", "\xC0\xAF", "\xF4\x90\x80\x80"})
            EXPECT_FALSE(
                TextCodec::encodeFromUtf8(QByteArrayView(broken), encoding, LineEnding::lf))
                << qPrintable(encoding.label()) << " " << QByteArray(broken).toHex().toStdString();
    }
}

} // namespace
} // namespace mirtex
