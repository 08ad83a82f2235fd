#include "core/document/PlainUtf8.h"

#include "core/document/Document.h"
#include "core/document/TextCodec.h"
#include "core/document/Utf8Codec.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

struct Sample
{
    const char *name;
    QByteArray bytes;
    bool plain; // whether the bytes may be taken as the text without decoding
};

QByteArray utf16LeWithLoneSurrogate()
{
    // Shaped like UTF-16 LE, but D800 has no low half; as UTF-8 it is valid (D8 80 is U+0600).
    QByteArray bytes;
    for (int i = 0; i < 20; ++i)
        bytes += QByteArray("A\0", 2);
    return bytes + QByteArray("\x00\xD8\x80\x00", 4);
}

const QList<Sample> &samples()
{
    static const QList<Sample> list = {
        {"empty", QByteArray(), true},
        {"accented", "Perch\xC3\xA9 s\xC3\xAC: caff\xC3\xA8\nseconda riga\tcon tab\n", true},
        {"no line break", "citt\xC3\xA0 senza a capo", true},
        {"emoji", "razzo \xF0\x9F\x9A\x80 e U+10FFFF \xF4\x8F\xBF\xBF\n", true},
        {"zero byte", QByteArray("a\0b\nc", 5), true},
        {"utf-8 mark",
         "\xEF\xBB\xBF"
         "ciao\n",
         false},
        {"utf-16 le mark",
         QByteArray("\xFF\xFE"
                    "a\0\n\0",
                    6),
         false},
        {"utf-32 be mark", QByteArray("\x00\x00\xFE\xFF\x00\x00\x00\x61", 8), false},
        {"utf-16 le shaped", QByteArray("A\0B\0\n\0C\0", 8), false},
        {"utf-16 be shaped", QByteArray("\0A\0B\0\n\0C", 8), false},
        {"utf-16 shaped, invalid utf-16", utf16LeWithLoneSurrogate(), false},
        {"crlf", "uno\r\ndue\r\n", false},
        {"lone cr", "uno\rdue", false},
        {"cr after lf", "uno\ndue\r\n", false},
        {"windows-1252", "caff\xE8\n", false},
        {"overlong", "a\xC0\xAF", false},
        {"encoded surrogate", "a\xED\xA0\x80", false},
        {"above U+10FFFF", "a\xF4\x90\x80\x80", false},
        {"cut off", "a\xE2\x82", false},
        {"stray continuation", "a\x80z", false},
    };
    return list;
}

// Each sample as it is, and after ASCII runs long enough for the block-wise scanning, so that
// the interesting bytes fall inside, across and after 16- and 64-byte blocks.
QList<std::pair<QByteArray, const Sample *>> variants()
{
    QList<std::pair<QByteArray, const Sample *>> list;
    for (const Sample &sample : samples()) {
        list.append({sample.bytes, &sample});
        for (int padding : {13, 16, 63, 70, 130})
            list.append(
                {QByteArray(padding, 'x') + sample.bytes + QByteArray(padding, 'y'), &sample});
    }
    return list;
}

TEST(PlainUtf8, ValidatorAgreesWithTheDecoder)
{
    for (const auto &[bytes, sample] : variants()) {
        SCOPED_TRACE(sample->name);
        SCOPED_TRACE(bytes.size());
        bool decodeSawCR = false;
        const std::optional<QString> decoded = Utf8Codec::decode(bytes, &decodeSawCR);
        bool validSawCR = !decodeSawCR;
        EXPECT_EQ(Utf8Codec::isValid(bytes, &validSawCR), decoded.has_value());
        if (decoded) {
            EXPECT_EQ(validSawCR, decodeSawCR);
        }
    }
}

TEST(PlainUtf8, TakenOnlyWhenDecodingWouldGiveTheSameBytes)
{
    for (const Sample &sample : samples()) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(PlainUtf8::lineEnding(sample.bytes, LineEnding::lf).has_value(), sample.plain);
    }
    for (const auto &[bytes, sample] : variants()) {
        SCOPED_TRACE(sample->name);
        for (LineEnding fallback : {LineEnding::lf, LineEnding::crlf, LineEnding::cr}) {
            const std::optional<LineEnding> ending = PlainUtf8::lineEnding(bytes, fallback);
            if (!ending)
                continue;
            const auto decoded = TextCodec::decode(bytes, std::nullopt, fallback);
            ASSERT_TRUE(decoded.has_value());
            EXPECT_EQ(decoded->text.toUtf8(), bytes);
            EXPECT_EQ(decoded->encoding, TextEncoding::utf8());
            EXPECT_EQ(decoded->lineEnding, *ending);
        }
    }
}

TEST(PlainUtf8, ReadingAFileGivesWhatDecodingGives)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const QString path = folder.filePath(QStringLiteral("sample.txt"));
    for (const auto &[bytes, sample] : variants()) {
        SCOPED_TRACE(sample->name);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(bytes), bytes.size());
        file.close();
        for (LineEnding fallback : {LineEnding::lf, LineEnding::cr}) {
            const auto loaded = Document::read(path, std::nullopt, fallback);
            const auto decoded = TextCodec::decode(bytes, std::nullopt, fallback);
            ASSERT_EQ(loaded.has_value(), decoded.has_value());
            if (!decoded)
                continue;
            EXPECT_EQ(loaded->utf8, decoded->text.toUtf8());
            EXPECT_EQ(loaded->encoding, decoded->encoding);
            EXPECT_EQ(loaded->lineEnding, decoded->lineEnding);
        }
        // A forced encoding never takes the shortcut: the mark is still skipped for UTF-8.
        const auto forced = Document::read(path, TextEncoding::utf8(), LineEnding::lf);
        const auto expected = TextCodec::decode(bytes, TextEncoding::utf8(), LineEnding::lf);
        ASSERT_EQ(forced.has_value(), expected.has_value());
        if (expected) {
            EXPECT_EQ(forced->utf8, expected->text.toUtf8());
        }
    }
}

} // namespace
