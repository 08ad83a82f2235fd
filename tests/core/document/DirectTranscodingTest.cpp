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

// Wide-unit bytes that are mostly text: ASCII runs long enough for the vector paths, breaks of
// every kind, BMP letters, pairs, and now and then a lone surrogate, a value out of range or a
// stray byte; sometimes after a mark.
QByteArray randomWideBytes(QRandomGenerator &random, int unitSize, bool bigEndian)
{
    QList<char32_t> units;
    const int length = random.bounded(0, 90);
    for (int i = 0; i < length; ++i) {
        const int kind = random.bounded(40);
        if (kind < 20) {
            for (int run = random.bounded(1, 20); run > 0; --run)
                units.append(char32_t('a' + random.bounded(26)));
        } else if (kind < 24) {
            units.append(std::array<char32_t, 4>{'\r', '\n', '\r', 0x2028}[kind - 20]);
            if (kind == 22)
                units.append('\n');
        } else if (kind < 30) {
            units.append(
                std::array<char32_t, 6>{0xE8, 0x20AC, 0x65E5, 0x7FF, 0x800, 0xFFFD}[kind - 24]);
        } else if (kind < 37) {
            const char32_t code = 0x10000 + char32_t(random.bounded(0x100000));
            if (unitSize == 4) {
                units.append(code);
            } else {
                units.append(QChar::highSurrogate(code));
                units.append(QChar::lowSurrogate(code));
            }
        } else if (kind == 37) {
            units.append(char32_t(0xD800 + random.bounded(0x800)));
        } else if (kind == 38 && unitSize == 4) {
            units.append(char32_t(0x110000 + random.bounded(4)));
        } else {
            units.append(0xFEFF);
        }
    }
    QByteArray bytes;
    switch (random.bounded(8)) {
    case 0:
        units.prepend(0xFEFF); // the mark of this width and order
        break;
    case 1:
        bytes += unitSize == 2 ? QByteArray("\xFF\xFE", 2) : QByteArray("\xFE\xFF", 2);
        break;
    default:
        break;
    }
    for (const char32_t unit : units) {
        for (int i = 0; i < unitSize; ++i)
            bytes += char(unit >> (8 * (bigEndian ? unitSize - 1 - i : i)));
    }
    if (random.bounded(30) == 0)
        bytes += 'x';
    return bytes;
}

TEST(DirectTranscoding, WideDecodingMatchesTheUtf16Path)
{
    struct Form
    {
        TextEncoding encoding;
        int unitSize;
        bool bigEndian;
    };

    const Form forms[] = {
        {{CharacterSet::utf16LE, false}, 2, false},
        {{CharacterSet::utf16BE, false}, 2, true},
        {{CharacterSet::utf32LE, false}, 4, false},
        {{CharacterSet::utf32BE, false}, 4, true},
    };
    QRandomGenerator random(13);
    for (int round = 0; round < 4000; ++round) {
        const Form &form = forms[round % 4];
        const QByteArray bytes = randomWideBytes(random, form.unitSize, form.bigEndian);
        std::optional<TextEncoding> forced;
        if (round % 3 == 1)
            forced = form.encoding;
        else if (round % 3 == 2)
            forced = TextEncoding{form.encoding.encoding, true};
        const auto direct = TextCodec::decodeToUtf8(bytes, forced, LineEnding::crlf);
        const auto reference = throughUtf16(bytes, forced);
        ASSERT_EQ(direct, reference) << bytes.toHex().toStdString() << " in "
                                     << (forced ? forced->label().toStdString() : "detected");
    }
}

TEST(DirectTranscoding, WideEncodingOfLongRunsMatchesTheUtf16Path)
{
    QRandomGenerator random(14);
    const TextEncoding wide[] = {
        {CharacterSet::utf16LE, true},
        {CharacterSet::utf16BE, false},
        {CharacterSet::utf32LE, false},
        {CharacterSet::utf32BE, true},
    };
    for (int round = 0; round < 800; ++round) {
        QString text;
        for (int piece = random.bounded(0, 12); piece > 0; --piece) {
            switch (random.bounded(5)) {
            case 0:
                text += u'\n';
                break;
            case 1:
                text += std::array{u"é", u"€", u"😀", u"\u07FF\u0800"}[random.bounded(4)];
                break;
            default:
                text += QString(random.bounded(1, 40), QChar(u'a' + random.bounded(26)));
            }
        }
        const TextEncoding &encoding = wide[round % 4];
        const LineEnding ending
            = std::array{LineEnding::lf, LineEnding::crlf, LineEnding::cr}[round % 3];
        ASSERT_EQ(TextCodec::encodeFromUtf8(text.toUtf8(), encoding, ending),
                  TextCodec::encode(text, encoding, ending))
            << qPrintable(encoding.label()) << ": " << qPrintable(text);
    }
}

} // namespace
} // namespace mirtex
