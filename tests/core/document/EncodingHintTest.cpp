// The hint names the encoding a file was really written in when the detection rules fell back
// to a Western set, and stays silent on Western text.
#include "core/document/EncodingHint.h"

#include "core/document/TextCodec.h"

#include <gtest/gtest.h>

namespace mirtex {
using namespace Qt::StringLiterals;

namespace {

struct HintCase
{
    const char *name;
    QString text;
    TextEncoding writtenIn;
    std::optional<quint64> hinted; // nothing: no hint
};

TEST(EncodingHint, NamesTheEncodingOrStaysSilent)
{
    const QString japanese = QStringLiteral("今日は雨が降っていて、駅まで歩くのが大変でした。\n");
    const QString chinese
        = QStringLiteral("这个软件可以同时打开很多文件，保存的时候要注意编码。\n");
    const QString russian
        = QStringLiteral("Сегодня утром шёл сильный дождь, и мы остались дома.\n");
    const QString french = QStringLiteral("Le cœur a ses raisons ; il a payé 45 € pour un œuf.\n");
    const QString italian
        = QStringLiteral("Perché la città è così bella? Costa 1,20 € al banco.\n");
    const auto set = [](quint64 number) { return TextEncoding{number, false}; };
    const HintCase cases[] = {
        {"Shift-JIS", japanese, set(CharacterSet::shiftJIS), CharacterSet::shiftJIS},
        {"EUC-JP", japanese.repeated(3), set(CharacterSet::japaneseEUC), CharacterSet::japaneseEUC},
        {"GB18030", chinese.repeated(3), set(CharacterSet::gb18030), CharacterSet::gb18030},
        {"KOI8-R", russian, set(CharacterSet::koi8R), CharacterSet::koi8R},
        {"Windows-1251",
         russian.repeated(4),
         set(CharacterSet::windows1251),
         CharacterSet::windows1251},
        {"UTF-16 LE", japanese, set(CharacterSet::utf16LE), CharacterSet::utf16LE},
        {"UTF-16 BE", russian, set(CharacterSet::utf16BE), CharacterSet::utf16BE},
        {"ISO 8859-15", french, set(CharacterSet::isoLatin9), CharacterSet::isoLatin9},
        {"Windows-1252", italian, TextEncoding::windows1252(), std::nullopt},
        {"ISO 8859-1",
         QString(italian).replace(u"€"_s, u"½"_s).repeated(5),
         TextEncoding::isoLatin1(),
         std::nullopt},
        {"UTF-8", japanese, TextEncoding::utf8(), std::nullopt},
    };
    for (const HintCase &c : cases) {
        SCOPED_TRACE(c.name);
        const auto bytes = TextCodec::encode(c.text, c.writtenIn, LineEnding::lf);
        ASSERT_TRUE(bytes);
        const auto detected = TextCodec::decode(*bytes, std::nullopt, LineEnding::lf);
        ASSERT_TRUE(detected);
        const auto hint = EncodingHint::suggest(*bytes, detected->encoding);
        EXPECT_EQ(hint.has_value(), c.hinted.has_value());
        if (hint && c.hinted) {
            EXPECT_EQ(hint->encoding, *c.hinted);
            EXPECT_EQ(TextCodec::decodeText(*bytes, *hint)->text, c.text);
        }
    }
}

} // namespace
} // namespace mirtex
