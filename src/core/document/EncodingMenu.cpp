#include "core/document/EncodingMenu.h"

#include <QCoreApplication>

#include <initializer_list>

namespace mirtex {

namespace {
namespace cs = CharacterSet;

struct GroupData
{
    const char *title;
    std::initializer_list<quint64> characterSets;
};

const GroupData kGroups[] = {
    {QT_TRANSLATE_NOOP("TextEncoding", "Europa occidentale"),
     {cs::windows1252, cs::isoLatin1, cs::isoLatin9, cs::macRoman, cs::dosLatin1, cs::dosLatinUS}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Europa centrale"),
     {cs::windows1250, cs::isoLatin2, cs::dosLatin2}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Cirillico"),
     {cs::windows1251, cs::isoCyrillic, cs::koi8R, cs::koi8U, cs::dosRussian}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Greco"), {cs::windows1253, cs::isoGreek}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Turco"), {cs::windows1254, cs::isoLatin5}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Baltico"), {cs::windows1257, cs::isoLatin4}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Ebraico e arabo"),
     {cs::windows1255, cs::isoHebrew, cs::windows1256, cs::isoArabic}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Asia orientale"),
     {cs::shiftJIS, cs::japaneseEUC, cs::iso2022JP, cs::gb18030, cs::big5, cs::eucKR, cs::dosThai}},
    {QT_TRANSLATE_NOOP("TextEncoding", "Unicode"),
     {cs::utf16LE, cs::utf16BE, cs::utf32LE, cs::utf32BE}},
};
} // namespace

QList<EncodingGroup> encodingMenuGroups()
{
    QList<EncodingGroup> groups;
    for (const GroupData &data : kGroups) {
        EncodingGroup group{QCoreApplication::translate("TextEncoding", data.title), {}};
        for (const quint64 characterSet : data.characterSets)
            group.encodings.append(TextEncoding{characterSet, false});
        groups.append(std::move(group));
    }
    return groups;
}

QList<TextEncoding> commonEncodings()
{
    return {TextEncoding::windows1252(),
            TextEncoding::utf8(),
            TextEncoding::utf8WithBom(),
            TextEncoding::utf16BEWithBom(),
            TextEncoding::utf16LEWithBom()};
}

} // namespace mirtex
