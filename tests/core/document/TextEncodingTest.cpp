#include "core/document/TextEncoding.h"

#include "core/document/EncodingMenu.h"
#include "core/document/TextCodec.h"

#include <gtest/gtest.h>

using namespace mirtex;
using namespace Qt::StringLiterals;

namespace {

TEST(TextEncoding, Identifiers)
{
    const std::pair<QString, std::optional<TextEncoding>> cases[] = {
        {u"4"_s, TextEncoding::utf8()},
        {u"4+bom"_s, TextEncoding::utf8WithBom()},
        {u"2483028224+bom"_s, TextEncoding::utf16LEWithBom()},
        {u"12"_s, TextEncoding::windows1252()},
        {u"2147484175"_s, TextEncoding{CharacterSet::isoLatin9, false}},
        {u"abc"_s, std::nullopt},
        {u""_s, std::nullopt},
        {u"+bom"_s, std::nullopt},
        {u"4+BOM"_s, std::nullopt},
        {u" 4"_s, std::nullopt},
        {u"-4"_s, std::nullopt},
        {u"99999999999999999999"_s, std::nullopt},
    };
    for (const auto &[id, expected] : cases) {
        EXPECT_EQ(TextEncoding::fromId(id), expected) << id.toStdString();
        if (expected) {
            EXPECT_EQ(expected->id(), id);
        }
    }
    EXPECT_EQ(TextEncoding::utf16LEWithBom().id(), u"2483028224+bom"_s);
    EXPECT_EQ(defaultTextEncoding().id(), u"4"_s);
}

TEST(TextEncoding, LabelsAndShortLabels)
{
    struct Case
    {
        TextEncoding encoding;
        QString label;
        QString shortLabel;
    };

    const Case cases[] = {
        {TextEncoding::utf8(), u"UTF-8"_s, u"UTF-8"_s},
        {TextEncoding::utf8WithBom(), u"UTF-8 con BOM"_s, u"UTF-8 BOM"_s},
        {TextEncoding::utf16LEWithBom(), u"UTF-16 LE con BOM"_s, u"UTF-16 LE"_s},
        {TextEncoding::utf16BEWithBom(), u"UTF-16 BE con BOM"_s, u"UTF-16 BE"_s},
        {{CharacterSet::utf16LE, false}, u"UTF-16 LE"_s, u"UTF-16 LE"_s},
        {{CharacterSet::utf32BE, true}, u"UTF-32 BE con BOM"_s, u"UTF-32 BE"_s},
        {TextEncoding::windows1252(), u"ANSI (Windows-1252)"_s, u"ANSI"_s},
        {{CharacterSet::windows1252, true}, u"Windows-1252 con BOM"_s, u"Windows-1252"_s},
        {TextEncoding::isoLatin1(), u"ISO 8859-1"_s, u"ISO 8859-1"_s},
        {{CharacterSet::macRoman, false}, u"Mac Roman"_s, u"Mac Roman"_s},
        {{CharacterSet::shiftJIS, false}, u"Shift-JIS"_s, u"Shift-JIS"_s},
        {{CharacterSet::koi8R, false}, u"KOI8-R"_s, u"KOI8-R"_s},
        {{CharacterSet::isoLatin9, true}, u"ISO-8859-15 con BOM"_s, u"ISO-8859-15 con BOM"_s},
        {{12345, false}, u"Codifica 12345"_s, u"Codifica 12345"_s},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(c.encoding.label(), c.label);
        EXPECT_EQ(c.encoding.shortLabel(), c.shortLabel);
    }
}

TEST(EncodingMenu, CommonEntriesAndGroups)
{
    EXPECT_EQ(commonEncodings(),
              (QList<TextEncoding>{TextEncoding::windows1252(),
                                   TextEncoding::utf8(),
                                   TextEncoding::utf8WithBom(),
                                   TextEncoding::utf16BEWithBom(),
                                   TextEncoding::utf16LEWithBom()}));
    const QList<EncodingGroup> groups = encodingMenuGroups();
    QStringList titles;
    qsizetype entries = 0;
    for (const EncodingGroup &group : groups) {
        titles << group.title;
        entries += group.encodings.size();
        for (const TextEncoding &encoding : group.encodings) {
            EXPECT_FALSE(encoding.bom);
            EXPECT_FALSE(encoding.label().startsWith(u"Codifica")) << encoding.id().toStdString();
        }
    }
    EXPECT_EQ(titles.join(u'|'),
              u"Europa occidentale|Europa centrale|Cirillico|Greco|Turco|Baltico|Ebraico e arabo|"
              "Asia orientale|Unicode"_s);
    EXPECT_EQ(entries, 35);
    EXPECT_EQ(groups.first().encodings.at(2).id(), u"2147484175"_s);
}

// Every set of the menu converts both ways, including characters beyond ASCII, and refuses what
// it cannot hold.
TEST(EncodingMenu, EveryCharacterSetConverts)
{
    const std::pair<quint64, QString> native[] = {
        {CharacterSet::windows1252, u"àéü €"_s},
        {CharacterSet::isoLatin1, u"àéü ÿ"_s},
        {CharacterSet::isoLatin9, u"àéü €"_s},
        {CharacterSet::macRoman, u"àéü π"_s},
        {CharacterSet::dosLatin1, u"àéü ░"_s},
        {CharacterSet::dosLatinUS, u"àéü ░"_s},
        {CharacterSet::windows1250, u"łść"_s},
        {CharacterSet::isoLatin2, u"łść"_s},
        {CharacterSet::dosLatin2, u"łść"_s},
        {CharacterSet::windows1251, u"Привет"_s},
        {CharacterSet::isoCyrillic, u"Привет"_s},
        {CharacterSet::koi8R, u"Привет"_s},
        {CharacterSet::koi8U, u"Привіт"_s},
        {CharacterSet::dosRussian, u"Привет"_s},
        {CharacterSet::windows1253, u"Καλημέρα"_s},
        {CharacterSet::isoGreek, u"Καλημέρα"_s},
        {CharacterSet::windows1254, u"İğş"_s},
        {CharacterSet::isoLatin5, u"İğş"_s},
        {CharacterSet::windows1257, u"ąčę"_s},
        {CharacterSet::isoLatin4, u"ąčē"_s},
        {CharacterSet::windows1255, u"שלום"_s},
        {CharacterSet::isoHebrew, u"שלום"_s},
        {CharacterSet::windows1256, u"مرحبا"_s},
        {CharacterSet::isoArabic, u"مرحبا"_s},
        {CharacterSet::shiftJIS, u"日本語テキスト"_s},
        {CharacterSet::japaneseEUC, u"日本語テキスト"_s},
        {CharacterSet::iso2022JP, u"日本語テキスト"_s},
        {CharacterSet::gb18030, u"中文 😀"_s},
        {CharacterSet::big5, u"中文"_s},
        {CharacterSet::eucKR, u"한국어"_s},
        {CharacterSet::dosThai, u"ภาษาไทย"_s},
        {CharacterSet::utf16LE, u"😀 é"_s},
        {CharacterSet::utf16BE, u"😀 é"_s},
        {CharacterSet::utf32LE, u"😀 é"_s},
        {CharacterSet::utf32BE, u"😀 é"_s},
    };
    const QString ascii = u"Plain ASCII 123 {}[]~\n\ttab"_s;
    int checked = 0;
    for (const EncodingGroup &group : encodingMenuGroups()) {
        for (const TextEncoding &encoding : group.encodings) {
            SCOPED_TRACE(encoding.label().toStdString());
            const auto it = std::find_if(std::begin(native), std::end(native), [&](const auto &n) {
                return n.first == encoding.encoding;
            });
            ASSERT_NE(it, std::end(native));
            const QString mixed = it->second + u"\n"_s + ascii;
            // Not a UTF-8 pass-through in disguise.
            EXPECT_NE(TextCodec::encode(mixed, encoding, LineEnding::lf), mixed.toUtf8());
            for (const QString &text : {ascii, mixed}) {
                const auto data = TextCodec::encode(text, encoding, LineEnding::lf);
                ASSERT_TRUE(data);
                const auto back = TextCodec::decodeText(*data, encoding);
                ASSERT_TRUE(back);
                EXPECT_EQ(back->text, text);
            }
            // A character from a far-away script: only the Unicode sets and GB 18030 take it.
            const bool universal
                = encoding.encoding == CharacterSet::gb18030 || group.title == u"Unicode";
            EXPECT_EQ(TextCodec::encode(u"ᚠ", encoding, LineEnding::lf).has_value(), universal);
            ++checked;
        }
    }
    EXPECT_EQ(checked, 35);
}

} // namespace
