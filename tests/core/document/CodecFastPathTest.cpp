// The hand-written converters must agree with ICU's own converters byte for byte.
#include "core/document/IcuCodec.h"
#include "core/document/SingleByteCodec.h"
#include "core/document/Utf8Codec.h"
#include "core/document/WideUnicodeCodec.h"

#include <gtest/gtest.h>

#include <random>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

QByteArray bytes(std::string_view data)
{
    return QByteArray(data.data(), qsizetype(data.size()));
}

// Tricky sequences are placed at every alignment of the 16-byte blocks and at the very end, so
// both the vector loop and the scalar tail meet them.
TEST(CodecFastPath, Utf8DecodeMatchesIcuOnTrickySequences)
{
    const std::string_view sequences[] = {
        "\xC3\xA8",                 // è
        "\xE2\x82\xAC",             // €
        "\xF0\x9F\x98\x80",         // emoji, a surrogate pair in UTF-16
        "\xF4\x8F\xBF\xBF",         // U+10FFFF
        "\xEF\xBF\xBF",             // U+FFFF, a noncharacter but well-formed
        "\xEF\xBB\xBF",             // U+FEFF inside the text
        "\xC0\xAF",                 // overlong '/'
        "\xC1\xBF",                 // overlong
        "\xE0\x80\xAF",             // overlong three-byte
        "\xE0\x9F\xBF",             // overlong three-byte, upper edge
        "\xF0\x8F\xBF\xBF",         // overlong four-byte
        "\xED\xA0\x80",             // U+D800 encoded
        "\xED\xBF\xBF",             // U+DFFF encoded
        "\xED\xA0\xBD\xED\xB8\x80", // surrogate pair encoded separately (CESU-8)
        "\xED\x9F\xBF",             // U+D7FF, last before the surrogates
        "\xF4\x90\x80\x80",         // U+110000
        "\xF5\x80\x80\x80",         // lead byte beyond the range
        "\xFF",
        "\x80",                 // stray continuation
        "\xC3",                 // truncated two-byte
        "\xE2\x82",             // truncated three-byte
        "\xF0\x9F\x98",         // truncated four-byte
        "\xC3\x28",             // lead followed by ASCII
        "\xF0\x9F\x98\x80\x80", // one continuation too many
        "\r\n",
    };
    for (const std::string_view sequence : sequences) {
        for (const int before : {0, 1, 7, 15, 16, 17, 31}) {
            for (const int after : {0, 3, 16, 20}) {
                const QByteArray data
                    = QByteArray(before, 'a') + bytes(sequence) + QByteArray(after, 'z');
                SCOPED_TRACE(data.toHex(' ').toStdString());
                bool containsCR = false;
                const auto ours = Utf8Codec::decode(data, &containsCR);
                EXPECT_EQ(ours, IcuCodec::decode(data, "UTF-8"));
                if (ours) {
                    EXPECT_EQ(containsCR, data.contains('\r'));
                }
            }
        }
    }
}

QByteArray randomUtf8ish(std::mt19937 &random, int length)
{
    // Mostly ASCII and valid sequences, with some raw high bytes thrown in.
    static const char *const pieces[]
        = {"a", "bc", "\n", "\r", "\xC3\xA8", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xED\x9F\xBF"};
    QByteArray data;
    std::uniform_int_distribution<int> choice(0, 40);
    while (data.size() < length) {
        const int pick = choice(random);
        if (pick < 8)
            data += pieces[pick];
        else if (pick == 8)
            data += char(0x80 + random() % 128);
        else
            data += QByteArray(pick % 20, char('a' + pick));
    }
    return data;
}

TEST(CodecFastPath, Utf8RandomRoundTripsMatchIcu)
{
    std::mt19937 random(20240611);
    for (int round = 0; round < 400; ++round) {
        const QByteArray data = randomUtf8ish(random, 1 + round % 97);
        SCOPED_TRACE(data.toHex(' ').toStdString());
        const auto ours = Utf8Codec::decode(data);
        ASSERT_EQ(ours, IcuCodec::decode(data, "UTF-8"));
        if (ours) {
            EXPECT_EQ(Utf8Codec::encode(*ours), data);
        }
    }
}

TEST(CodecFastPath, EncodersMatchIcuIncludingLoneSurrogates)
{
    std::mt19937 random(7);
    const char16_t units[] = {u'a', u'\n', 0xE8, 0x20AC, 0xFFFF, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF};
    for (int round = 0; round < 400; ++round) {
        QString text;
        const int length = 1 + round % 40;
        for (int i = 0; i < length; ++i)
            text += QChar(units[random() % std::size(units)]);
        if (round % 3 == 0)
            text.prepend(QString(17, u'x'));
        SCOPED_TRACE(text.toUtf8().toHex(' ').toStdString());
        using WideUnicodeCodec::ByteOrder;
        EXPECT_EQ(Utf8Codec::encode(text), IcuCodec::encode(text, "UTF-8"));
        EXPECT_EQ(WideUnicodeCodec::encodeUtf16(text, ByteOrder::bigEndian),
                  IcuCodec::encode(text, "UTF-16BE"));
        EXPECT_EQ(WideUnicodeCodec::encodeUtf32(text, ByteOrder::littleEndian),
                  IcuCodec::encode(text, "UTF-32LE"));
        if (auto utf16 = IcuCodec::encode(text, "UTF-16LE")) {
            EXPECT_EQ(WideUnicodeCodec::decodeUtf16(*utf16, ByteOrder::littleEndian), text);
        } else {
            // ICU refused an unpaired surrogate; decoding the raw units must refuse it too.
            const QByteArray raw(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
            EXPECT_FALSE(WideUnicodeCodec::decodeUtf16(raw, ByteOrder::littleEndian));
        }
    }
}

// The surrogate check works in blocks of 64 units; pairs and strays meet every block edge.
TEST(CodecFastPath, SurrogatesAcrossBlockEdges)
{
    const auto paired
        = [](const QString &text) { return WideUnicodeCodec::hasPairedSurrogates(text); };
    for (int at = 60; at <= 130; ++at) {
        const QString before(at, u'x');
        EXPECT_TRUE(paired(before + u"\U0001F600"_s + before)) << at;
        EXPECT_TRUE(paired(before + u"\U0001F600\U0001F600"_s)) << at;
        EXPECT_FALSE(paired(before + QChar(0xD83D) + before)) << at;
        EXPECT_FALSE(paired(before + QChar(0xDE00) + before)) << at;
        EXPECT_FALSE(paired(before + QChar(0xD83D))) << at;
        EXPECT_FALSE(paired(before + u"\U0001F600"_s + QChar(0xDE00))) << at;
    }
}

TEST(CodecFastPath, SingleByteTablesMatchIcu)
{
    const char *const converters[] = {"windows-1252",
                                      "ISO-8859-1",
                                      "ISO-8859-15",
                                      "macintosh",
                                      "IBM850",
                                      "IBM437",
                                      "windows-1250",
                                      "IBM852",
                                      "KOI8-R",
                                      "IBM866",
                                      "ISO-8859-7",
                                      "windows-1255",
                                      "windows-874"};
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte += char(byte);
    for (const char *name : converters) {
        SCOPED_TRACE(name);
        const auto codec = SingleByteCodec::forConverter(name);
        ASSERT_TRUE(codec);
        int defined = 0;
        for (int byte = 0; byte < 256; ++byte) {
            // Surrounded by ASCII so that both the block path and the tail see the byte.
            const QByteArray data = QByteArray(15, 'a') + char(byte) + QByteArray(17, 'b');
            const auto ours = codec->decode(data);
            const bool hole = qstrcmp(name, "windows-1252") == 0
                              && QByteArrayView("\x81\x8D\x8F\x90\x9D").contains(char(byte));
            if (hole) {
                EXPECT_FALSE(ours);
                continue;
            }
            ASSERT_EQ(ours, IcuCodec::decode(data, name)) << byte;
            if (ours) {
                ++defined;
                EXPECT_EQ(codec->encode(*ours), data) << byte;
            }
        }
        EXPECT_GT(defined, 200);
    }
    EXPECT_FALSE(SingleByteCodec::forConverter("Shift_JIS"));
    EXPECT_FALSE(SingleByteCodec::forConverter("no-such-set"));
}

} // namespace
