#include "core/document/TextCodec.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace mirtex;
using namespace Qt::StringLiterals;

// Readable failure messages: found by argument-dependent lookup, hence global.
static void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

namespace {

QByteArray bytes(std::string_view data)
{
    return QByteArray(data.data(), qsizetype(data.size()));
}

const QString kItalian
    = QStringLiteral("Perché sì: caffè, città, naïve 123\nseconda riga\tcon tab\n");
const QString kEnglish = QStringLiteral("Hello world 123\nsecond line\twith tab\n");

const TextEncoding kUtf16LE{CharacterSet::utf16LE, false};
const TextEncoding kUtf16BE{CharacterSet::utf16BE, false};

TEST(TextCodec, SamplesRoundTripInEveryUnicodeEncoding)
{
    const TextEncoding encodings[] = {TextEncoding::utf8(),
                                      TextEncoding::utf8WithBom(),
                                      TextEncoding::utf16LEWithBom(),
                                      kUtf16LE,
                                      TextEncoding::utf16BEWithBom(),
                                      {CharacterSet::utf32LE, true},
                                      {CharacterSet::utf32BE, true}};
    for (const QString &sample : {kItalian, kEnglish}) {
        for (const TextEncoding &encoding : encodings) {
            SCOPED_TRACE(encoding.label().toStdString());
            const auto data = TextCodec::encode(sample, encoding, LineEnding::lf);
            ASSERT_TRUE(data);
            const auto decoded = TextCodec::decodeText(*data, std::nullopt);
            ASSERT_TRUE(decoded);
            EXPECT_EQ(decoded->encoding, encoding);
            EXPECT_EQ(decoded->text, sample) << "il BOM finisce nel testo?";
        }
    }
}

TEST(TextCodec, SingleByteFallbacksOnlyWhenUtf8Fails)
{
    const auto italian = TextCodec::encode(kItalian, TextEncoding::windows1252(), LineEnding::lf);
    ASSERT_TRUE(italian);
    const auto decoded = TextCodec::decodeText(*italian, std::nullopt);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->encoding, TextEncoding::windows1252());
    EXPECT_EQ(decoded->text, kItalian);

    const auto ascii = TextCodec::encode(kEnglish, TextEncoding::windows1252(), LineEnding::lf);
    ASSERT_TRUE(ascii);
    EXPECT_EQ(TextCodec::decodeText(*ascii, std::nullopt)->encoding, TextEncoding::utf8());
}

TEST(TextCodec, DetectionOrder)
{
    // Twenty UTF-16 LE letters then an unpaired low surrogate: UTF-16-shaped but undecodable,
    // not UTF-8 either (DC is a lead byte with nothing after it), so Windows-1252 takes it.
    const QByteArray brokenUtf16
        = bytes(std::string_view("A\0", 2)).repeated(20) + bytes({"\0\xDC", 2});

    struct Case
    {
        QByteArray data;
        std::optional<TextEncoding> encoding;
        QString text;
    };

    const Case cases[] = {
        {bytes("\xEF\xBB\xBFhi"), TextEncoding::utf8WithBom(), u"hi"_s},
        {bytes({"\xFF\xFE\0\0h\0\0\0", 8}), TextEncoding{CharacterSet::utf32LE, true}, u"h"_s},
        {bytes({"\0\0\xFE\xFF\0\0\0h", 8}), TextEncoding{CharacterSet::utf32BE, true}, u"h"_s},
        {bytes({"\xFF\xFEh\0", 4}), TextEncoding::utf16LEWithBom(), u"h"_s},
        {bytes({"\xFE\xFF\0h", 4}), TextEncoding::utf16BEWithBom(), u"h"_s},
        {bytes({"A\0B\0", 4}), kUtf16LE, u"AB"_s},
        {bytes({"\0A\0B", 4}), kUtf16BE, u"AB"_s},
        {bytes("caff\xC3\xA8 \xF0\x9F\x98\x80"), TextEncoding::utf8(), u"caffè 😀"_s},
        {bytes("caff\xE8 \x80"), TextEncoding::windows1252(), u"caffè €"_s},
        {bytes("caff\xE8 \x81"), TextEncoding::isoLatin1(), u"caffè \u0081"_s},
        {bytes(""), TextEncoding::utf8(), u""_s},
        {brokenUtf16, TextEncoding::windows1252(), QString::fromLatin1(brokenUtf16)},
        // A mark whose rest does not decode is never retried in another encoding.
        {bytes("\xEF\xBB\xBF\xE8"), std::nullopt, {}},
        {bytes({"\xFF\xFEh", 3}), std::nullopt, {}},
        {bytes({"\xFE\xFF\xDC\x00", 4}), std::nullopt, {}},
        {bytes({"\xFF\xFE\0\0\0\0\x11\0", 8}), std::nullopt, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.data.toHex(' ').toStdString());
        const auto decoded = TextCodec::decodeText(c.data, std::nullopt);
        ASSERT_EQ(decoded.has_value(), c.encoding.has_value());
        if (!decoded)
            continue;
        EXPECT_EQ(decoded->encoding, *c.encoding);
        EXPECT_EQ(decoded->text, c.text);
    }
}

TEST(TextCodec, ForcedEncodings)
{
    struct Case
    {
        QByteArray data;
        TextEncoding forced;
        std::optional<QString> text;
    };

    const Case cases[] = {
        {bytes("\xEF\xBB\xBF"
               "a"),
         TextEncoding::utf8(),
         u"a"_s},
        {bytes("\xEF\xBB\xBF"
               "a"),
         TextEncoding::utf8WithBom(),
         u"a"_s},
        {bytes({"\xFF\xFE"
                "a\0",
                4}),
         TextEncoding::utf16LEWithBom(),
         u"a"_s},
        // Without a mark of its own the forced encoding keeps U+FEFF as a character.
        {bytes({"\xFF\xFE"
                "a\0",
                4}),
         kUtf16LE,
         u"\uFEFFa"_s},
        {bytes("caff\xC3\xA8"), TextEncoding::windows1252(), u"caffÃ¨"_s},
        {bytes("caff\xC3\xA8"), TextEncoding::isoLatin1(), u"caffÃ¨"_s},
        {bytes("\x93\xFA\x96\x7B"), TextEncoding{CharacterSet::shiftJIS, false}, u"日本"_s},
        {bytes("caff\xE8"), TextEncoding::utf8(), std::nullopt},
        {bytes("\x81"), TextEncoding::windows1252(), std::nullopt},
        {bytes("\x93"), TextEncoding{CharacterSet::shiftJIS, false}, std::nullopt},
        {bytes("abc"), TextEncoding{CharacterSet::fromPlatformCode(9999), false}, std::nullopt},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.data.toHex(' ').toStdString() + " as " + c.forced.id().toStdString());
        const auto decoded = TextCodec::decodeText(c.data, c.forced);
        ASSERT_EQ(decoded.has_value(), c.text.has_value());
        if (!decoded)
            continue;
        EXPECT_EQ(decoded->encoding, c.forced);
        EXPECT_EQ(decoded->text, *c.text);
    }
}

TEST(TextCodec, LineEndingDetectionAndNormalisation)
{
    struct Case
    {
        QByteArray data;
        LineEnding ending;
        QString text;
    };

    const Case cases[] = {
        {bytes("a\r\nb\r\n"), LineEnding::crlf, u"a\nb\n"_s},
        {bytes("a\rb"), LineEnding::cr, u"a\nb"_s},
        {bytes("0123456789abcdefghij\r\nb"), LineEnding::crlf, u"0123456789abcdefghij\nb"_s},
        {bytes("a\r\nb\nc\rd"), LineEnding::crlf, u"a\nb\nc\nd"_s},
        {bytes("a\nb\r\n"), LineEnding::lf, u"a\nb\n"_s},
        {bytes("a\r\r\nb\r"), LineEnding::cr, u"a\n\nb\n"_s},
        {bytes("no breaks"), LineEnding::cr, u"no breaks"_s},
        {bytes(""), LineEnding::cr, u""_s},
        {bytes("\xE8\r\n"), LineEnding::crlf, u"è\n"_s},
        {bytes("\xC3\xA8\r"), LineEnding::cr, u"è\n"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.data.toStdString());
        const auto decoded = TextCodec::decode(c.data, std::nullopt, LineEnding::cr);
        ASSERT_TRUE(decoded);
        EXPECT_EQ(decoded->lineEnding, c.ending);
        EXPECT_EQ(decoded->text, c.text);
    }
    EXPECT_EQ(TextCodec::detectLineEnding(u"x", LineEnding::crlf), LineEnding::crlf);
    EXPECT_EQ(TextCodec::decode({}, std::nullopt, LineEnding::lf)->encoding, TextEncoding::utf8());
}

TEST(TextCodec, EncodeWritesLineEndingAndMark)
{
    struct Case
    {
        TextEncoding encoding;
        LineEnding ending;
        QByteArray expected;
    };

    const Case cases[] = {
        {TextEncoding::utf8(), LineEnding::lf, bytes("a\nb\n")},
        {TextEncoding::utf8(), LineEnding::crlf, bytes("a\r\nb\r\n")},
        {TextEncoding::utf8WithBom(),
         LineEnding::cr,
         bytes("\xEF\xBB\xBF"
               "a\rb\r")},
        {TextEncoding::utf16BEWithBom(),
         LineEnding::crlf,
         bytes({"\xFE\xFF\0a\0\r\0\n\0b\0\r\0\n", 14})},
        {TextEncoding{CharacterSet::utf32LE, false},
         LineEnding::lf,
         bytes({"a\0\0\0\n\0\0\0b\0\0\0\n\0\0\0", 16})},
        {TextEncoding{CharacterSet::windows1252, true}, LineEnding::lf, bytes("a\nb\n")},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.encoding.id().toStdString());
        EXPECT_EQ(TextCodec::encode(u"a\nb\n", c.encoding, c.ending), c.expected);
    }
}

TEST(TextCodec, EncodeRefusesWhatTheSetCannotHold)
{
    EXPECT_EQ(TextCodec::encode(u"€", TextEncoding::windows1252(), LineEnding::lf), bytes("\x80"));
    for (const QStringView text : {u"ł", u"日本", u"\u0081", u"😀"})
        EXPECT_FALSE(TextCodec::encode(text, TextEncoding::windows1252(), LineEnding::lf));
    EXPECT_FALSE(TextCodec::encode(u"€", TextEncoding::isoLatin1(), LineEnding::lf));
    const QString loneSurrogate = QString(QChar(0xD83D)) + u"x"_s;
    for (const TextEncoding &unicode : {TextEncoding::utf8(),
                                        TextEncoding::utf16LEWithBom(),
                                        TextEncoding{CharacterSet::utf32BE, false}})
        EXPECT_FALSE(TextCodec::encode(loneSurrogate, unicode, LineEnding::lf));
}

TEST(TextCodec, BinaryDetection)
{
    const QByteArray nullsLate = QByteArray(8000, 'a') + bytes({"\0\0\0", 3});
    const std::pair<QByteArray, bool> cases[] = {
        {bytes("plain text\n"), false},
        {bytes({"AB\0", 3}), true},
        {bytes({"A\0B\0", 4}), false},
        {bytes({"\xFF\xFE\0\0\0\x01\x02", 7}), false},
        {bytes({"\xFE\xFF\0\0\x01", 5}), false},
        {bytes({"\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x01\0", 20}), true},
        {nullsLate, false},
        {bytes(""), false},
    };
    for (const auto &[data, binary] : cases)
        EXPECT_EQ(TextCodec::isBinary(data), binary) << data.left(20).toHex(' ').toStdString();
}

TEST(TextCodec, Utf16WithoutMark)
{
    // 100 units: `odd` of them zero at the odd byte, `even` zero at the even byte. The
    // thresholds are "more than 40%" and "at most 5%" of the 100 pairs.
    const auto units = [](int odd, int even) {
        QByteArray data;
        for (int i = 0; i < 100; ++i)
            data
                += i < odd ? bytes({"a\0", 2}) : (i < odd + even ? bytes({"\0a", 2}) : bytes("ab"));
        return data;
    };
    const QByteArray utf16Late = QByteArray(4096, 'a') + bytes({"a\0", 2}).repeated(4000);
    const std::pair<QByteArray, std::optional<TextEncoding>> cases[] = {
        {bytes(""), std::nullopt},
        {bytes({"A\0B", 3}), std::nullopt},
        {bytes({"A\0B\0", 4}), kUtf16LE},
        {bytes({"\0A\0B", 4}), kUtf16BE},
        {bytes("ABCD"), std::nullopt},
        {bytes({"\0\0\0\0", 4}), std::nullopt},
        {units(41, 5), kUtf16LE},
        {units(40, 5), std::nullopt},
        {units(41, 6), std::nullopt},
        {units(5, 41), kUtf16BE},
        {units(6, 41), std::nullopt},
        {utf16Late, std::nullopt},
    };
    for (const auto &[data, expected] : cases)
        EXPECT_EQ(TextCodec::detectUTF16(data), expected) << data.left(20).toHex(' ').toStdString();
}

TEST(TextCodec, NormalisationLeavesTextWithoutCarriageReturnsAlone)
{
    const QString text = u"one\ntwo"_s;
    const QString normalised = TextCodec::normalizeLineEndings(text);
    EXPECT_EQ(normalised.constData(), text.constData());
    // Breaks at every offset of the 8-unit blocks, against a literal two-step replacement.
    for (const QString &breaks : {u"\r\n"_s, u"\r"_s, u"\r\r\n\n\r"_s, u"\r\r"_s}) {
        for (int at = 0; at < 20; ++at) {
            const QString input = QString(at, u'x') + breaks + QString(at % 11, u'y') + breaks;
            const QString expected
                = QString(input).replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
            EXPECT_EQ(TextCodec::normalizeLineEndings(input), expected) << at;
        }
    }
}

} // namespace
