// What opening tells about a file before the user edits or saves it: mixed line breaks counted in
// the file's own code units, binary bytes, and the encoding hint.
#include "core/document/LineEndingCount.h"

#include "core/document/Document.h"
#include "core/document/TextCodec.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirtex {
namespace {

TEST(LineEndingCount, CountsBreaksInTheFilesOwnUnits)
{
    const struct
    {
        const char *name;
        QString text; // breaks as in the file
        TextEncoding encoding;
        LineEndingCount expected;
        QString summary;
    } cases[] = {
        {"lf only", u"a\nb\nc"_qs, TextEncoding::utf8(), {0, 2, 0}, u"LF 2"_qs},
        {"mixed",
         u"a\r\nb\r\nc\nd\re\r\n"_qs,
         TextEncoding::utf8(),
         {3, 1, 1},
         u"CRLF 3, LF 1, CR 1"_qs},
        {"cr at the end", u"a\n\r"_qs, TextEncoding::windows1252(), {0, 1, 1}, u"LF 1, CR 1"_qs},
        {"utf-16 le",
         u"a\r\nb\n\u0D0A"_qs,
         TextEncoding::utf16LEWithBom(),
         {1, 1, 0},
         u"CRLF 1, LF 1"_qs},
        {"utf-16 be",
         u"\u0A0Da\rb\r\n"_qs,
         TextEncoding::utf16BEWithBom(),
         {1, 0, 1},
         u"CRLF 1, CR 1"_qs},
        {"utf-32 le",
         u"x\r\ny\nz\n"_qs,
         TextEncoding{CharacterSet::utf32LE, true},
         {1, 2, 0},
         u"LF 2, CRLF 1"_qs},
        {"shift-jis",
         u"日本\r\n語\n"_qs,
         TextEncoding{CharacterSet::shiftJIS, false},
         {1, 1, 0},
         u"CRLF 1, LF 1"_qs},
    };

    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        // Encoded with LF kept as it is: the text already holds the file's breaks.
        const auto bytes = TextCodec::encode(c.text, c.encoding, LineEnding::lf);
        ASSERT_TRUE(bytes);
        const LineEndingCount count = countLineEndings(*bytes, c.encoding);
        EXPECT_EQ(count, c.expected);
        EXPECT_EQ(count.isMixed(),
                  c.expected.crlf + c.expected.lf + c.expected.cr
                      > std::max({c.expected.crlf, c.expected.lf, c.expected.cr}));
        EXPECT_EQ(count.summary(), c.summary);
    }
}

TEST(LineEndingCount, AgreesWithAByteByByteCountOnRandomBytes)
{
    // Long enough to cross the scan's sixteen-byte blocks with pairs split between two of them.
    QRandomGenerator random(7);
    for (int round = 0; round < 500; ++round) {
        QByteArray bytes(random.bounded(1, 100), Qt::Uninitialized);
        for (char &c : bytes)
            c = "ab\r\n"[random.bounded(random.bounded(2) ? 4 : 3) + (round % 2)];
        LineEndingCount expected;
        for (qsizetype i = 0; i < bytes.size(); ++i) {
            if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
                ++expected.crlf;
                ++i;
            } else if (bytes[i] == '\r') {
                ++expected.cr;
            } else if (bytes[i] == '\n') {
                ++expected.lf;
            }
        }
        ASSERT_EQ(countLineEndings(bytes, TextEncoding::utf8()), expected) << bytes.toStdString();
    }
}

TEST(LineEndingCount, OpeningReportsBinaryMixedAndHint)
{
    QTemporaryDir dir;
    const auto fileWith = [&](const char *name, const QByteArray &bytes) {
        const QString path = dir.path() + u'/' + QLatin1String(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    };
    const auto binary
        = Document::read(fileWith("prog",
                                  QByteArray("\x7F"
                                             "ELF\x02\x01\x00\x00\r\n\x00\x01\n\rfine",
                                             19)),
                         std::nullopt,
                         LineEnding::lf);
    ASSERT_TRUE(binary);
    EXPECT_TRUE(binary->binary);
    EXPECT_FALSE(binary->encodingHint);

    const auto mixed = Document::read(
        fileWith("mixed.txt", "uno\r\ndue\r\ntre\nquattro\r\n"), std::nullopt, LineEnding::lf);
    ASSERT_TRUE(mixed);
    EXPECT_FALSE(mixed->binary);
    EXPECT_EQ(mixed->lineEnding, LineEnding::crlf);
    ASSERT_TRUE(mixed->mixedLineEndings);
    EXPECT_EQ(mixed->mixedLineEndings->summary(), u"CRLF 3, LF 1"_qs);

    const auto plain
        = Document::read(fileWith("plain.txt", "uno\ndue\n"), std::nullopt, LineEnding::lf);
    ASSERT_TRUE(plain);
    EXPECT_FALSE(plain->binary || plain->mixedLineEndings || plain->encodingHint);

    const QByteArray sjis
        = *TextCodec::encode(u"今日は雨が降っていて、駅まで歩くのが大変でした。\n"_qs,
                             {CharacterSet::shiftJIS, false},
                             LineEnding::lf);
    const auto japanese = Document::read(fileWith("ja.txt", sjis), std::nullopt, LineEnding::lf);
    ASSERT_TRUE(japanese);
    EXPECT_EQ(japanese->encodingHint, (TextEncoding{CharacterSet::shiftJIS, false}));
    const auto forced
        = Document::read(fileWith("ja.txt", sjis), TextEncoding::isoLatin1(), LineEnding::lf);
    ASSERT_TRUE(forced);
    EXPECT_FALSE(forced->encodingHint);
}

} // namespace
} // namespace mirtex
