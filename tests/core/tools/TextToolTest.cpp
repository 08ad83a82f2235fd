#include "core/tools/TextTool.h"

#include "core/tools/DateTimeText.h"
#include "core/tools/TextDigest.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using namespace mirtex;

namespace {

const QString kTab = u"\t"_qs;

std::optional<QString> run(TextTool tool, const QString &text)
{
    return applyTextTool(text, tool, u"  ");
}

} // namespace

TEST(TextTool, RoundTripsKeepTheText)
{
    const QString text = u"caffè & <tag> \"virgolette\" 'x' 😀 + / ? #"_qs;
    const std::pair<TextTool, TextTool> pairs[] = {
        {TextTool::base64Encode, TextTool::base64Decode},
        {TextTool::urlEncode, TextTool::urlDecode},
        {TextTool::htmlEncode, TextTool::htmlDecode},
    };
    for (const auto &[encode, decode] : pairs) {
        const auto encoded = run(encode, text);
        ASSERT_TRUE(encoded);
        EXPECT_NE(*encoded, text);
        EXPECT_EQ(run(decode, *encoded), text) << toString(encode).toStdString();
    }
    const QString longText(200, u'x');
    const QString wrapped = *run(TextTool::base64Encode, longText);
    EXPECT_EQ(wrapped.indexOf(u'\n'), 76);
    EXPECT_FALSE(wrapped.endsWith(u'\n'));
    for (int i = 0; i < kTextToolCount; ++i)
        EXPECT_EQ(textToolFromString(toString(TextTool(i))), TextTool(i));
}

TEST(TextTool, GivesTheDocumentedResultsOrRefuses)
{
    using enum TextTool;

    const struct
    {
        TextTool tool;
        QString text;
        std::optional<QString> expected;
    } cases[] = {
        {base64Encode, u"abc"_qs, u"YWJj"_qs},
        {base64Decode, u" YW\nJj "_qs, u"abc"_qs},
        {base64Decode, u"YWI"_qs, u"ab"_qs},      // padding may be missing
        {base64Decode, u"/w=="_qs, u"\u00ff"_qs}, // not UTF-8: read as Latin-1
        {base64Decode, u"YW*j"_qs, std::nullopt},
        {base64Decode, u"YWJjZ"_qs, std::nullopt}, // a length no padding mends
        {base64Decode, u"YQ==YQ=="_qs, std::nullopt},
        {urlEncode, u"a b&c=d/é~!*"_qs, u"a%20b%26c%3Dd%2F%C3%A9~!*"_qs},
        {urlDecode, u"a+b%2fc%C3%A9"_qs, u"a b/cé"_qs},
        {urlDecode, u"100%"_qs, std::nullopt},
        {urlDecode, u"%zz"_qs, std::nullopt},
        {urlDecode, u"%C3"_qs, std::nullopt}, // not UTF-8
        {htmlEncode, u"<a href='x'>&</a> è"_qs, u"&lt;a href=&#39;x&#39;&gt;&amp;&lt;/a&gt; è"_qs},
        {htmlDecode, u"&#233;&#x41;&euro;&sconosciuta;"_qs, u"éA€&sconosciuta;"_qs},
        {htmlDecode,
         u"&#xD800;&#1114112;&Amp;&amp;lt; & ;&#x1F600;"_qs,
         u"&#xD800;&#1114112;&Amp;&lt; & ;😀"_qs},
        {jsonFormat, u"42"_qs, u"42"_qs},
        {jsonFormat,
         u"{\"a\":[1,2],\"b\":{}}\n"_qs,
         u"{\n  \"a\": [\n    1,\n    2\n  ],\n  \"b\": {}\n}\n"_qs},
        {jsonFormat, u"{\"a\":1,}"_qs, u"{\n  \"a\": 1,\n  \n}"_qs}, // relaxed: trailing comma
        {jsonFormat, u"{\"a\":}"_qs, std::nullopt},
        {jsonFormat, u"1 2"_qs, std::nullopt},
        {jsonFormat, u"1 // fine\n"_qs, u"1// fine\n"_qs}, // one break after the last comment
        {jsonMinify, u"[ 1 , // uno\n 2 ]"_qs, u"[1,// uno\n2]"_qs},
        {jsonMinify, u"{'a': 1}"_qs, std::nullopt},
        {jsonMinify, QStringLiteral("[1]") + QChar(0) + u"{"_qs, std::nullopt}, // NUL ends nothing
    };

    for (const auto &c : cases)
        EXPECT_EQ(run(c.tool, c.text), c.expected)
            << toString(c.tool).toStdString() << ": " << c.text.toStdString();
}

TEST(TextTool, JsonLayoutKeepsEveryCharacterOfTheInput)
{
    const QString json
        = u"{\"b\":1,\"a\":[1,{\"c\":\"\\\"x\\\" { [ ,:\"}],\"e\":{},\"f\":[],\"g\":\"😀è\",\"h\":null}"_qs;
    const auto formatted = applyTextTool(json, TextTool::jsonFormat, kTab);
    ASSERT_TRUE(formatted);
    EXPECT_EQ(applyTextTool(*formatted, TextTool::jsonMinify, kTab), json);
    EXPECT_TRUE(formatted->contains(u"\"e\": {},\n\t\"f\": [],"));
    EXPECT_TRUE(formatted->contains(u"\"c\": \"\\\"x\\\" { [ ,:\"\n"));
    const QStringList keys = {u"\"b\""_qs, u"\"a\""_qs, u"\"e\""_qs, u"\"g\""_qs, u"\"h\""_qs};
    qsizetype at = 0;
    for (const QString &key : keys) {
        const qsizetype found = formatted->indexOf(key, at);
        EXPECT_GT(found, at) << key.toStdString();
        at = found;
    }
}

TEST(TextDigest, StandardVectorsOfAbc)
{
    const std::pair<DigestAlgorithm, const char *> vectors[] = {
        {DigestAlgorithm::md5, "900150983cd24fb0d6963f7d28e17f72"},
        {DigestAlgorithm::sha1, "a9993e364706816aba3e25717850c26c9cd0d89d"},
        {DigestAlgorithm::sha256,
         "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {DigestAlgorithm::sha512,
         "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a2192992a274fc1a836ba3c23a"
         "3fe"
         "ebbd454d4423643ce80e2a9ac94fa54ca49f"},
    };
    for (const auto &[algorithm, hex] : vectors) {
        EXPECT_EQ(TextDigest::of(algorithm, "abc"), QLatin1String(hex));
        // In pieces, as a large selection is read.
        TextDigest pieces(algorithm);
        pieces.add("a");
        pieces.add("bc");
        EXPECT_EQ(pieces.hex(), QLatin1String(hex));
        EXPECT_EQ(digestAlgorithmFromString(toString(algorithm)), algorithm);
    }
}

TEST(DateTimeText, FollowsTheLocale)
{
    const QDateTime moment(QDate(2025, 3, 3), QTime(15, 4, 5));
    const QLocale italian(QLocale::Italian, QLocale::Italy);
    const QString full = formatDateTime(moment, DateTimeStyle::longForm, italian);
    EXPECT_TRUE(full.contains(u"lunedì 3 marzo 2025")) << full.toStdString();
    EXPECT_TRUE(full.contains(u"15:04:05")) << full.toStdString();
    const QString brief = formatDateTime(moment, DateTimeStyle::shortForm, italian);
    EXPECT_TRUE(brief.contains(u"03/03/25")) << brief.toStdString();
    EXPECT_TRUE(brief.contains(u"15:04") && !brief.contains(u"15:04:05")) << brief.toStdString();
    const QString english = formatDateTime(
        moment, DateTimeStyle::longForm, QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_TRUE(english.contains(u"Monday, March 3, 2025")) << english.toStdString();
}
