#include "core/document/CharacterSetTable.h"

#include "core/document/TextEncoding.h"

#include <QtCore/qcoreapplication.h>

#include <unicode/ucnv.h>

#include <array>

namespace mirtex {

namespace {
namespace cs = CharacterSet;

// Converter names are IANA-style names that ICU resolves (case-insensitively) to the Windows, ISO,
// DOS or Mac table they promise; they double as the display names of sets without a table name.
constexpr std::array kCharacterSets = {
    CharacterSetInfo{cs::utf8, "UTF-8", nullptr},
    CharacterSetInfo{cs::utf16LE, "UTF-16LE", QT_TRANSLATE_NOOP("TextEncoding", "UTF-16 LE")},
    CharacterSetInfo{cs::utf16BE, "UTF-16BE", QT_TRANSLATE_NOOP("TextEncoding", "UTF-16 BE")},
    CharacterSetInfo{cs::utf32LE, "UTF-32LE", QT_TRANSLATE_NOOP("TextEncoding", "UTF-32 LE")},
    CharacterSetInfo{cs::utf32BE, "UTF-32BE", QT_TRANSLATE_NOOP("TextEncoding", "UTF-32 BE")},
    CharacterSetInfo{
        cs::windows1252, "windows-1252", QT_TRANSLATE_NOOP("TextEncoding", "Windows-1252")},
    CharacterSetInfo{cs::isoLatin1, "ISO-8859-1", QT_TRANSLATE_NOOP("TextEncoding", "ISO 8859-1")},
    CharacterSetInfo{cs::macRoman, "macintosh", QT_TRANSLATE_NOOP("TextEncoding", "Mac Roman")},
    CharacterSetInfo{
        cs::windows1250, "windows-1250", QT_TRANSLATE_NOOP("TextEncoding", "Windows-1250")},
    CharacterSetInfo{cs::isoLatin2, "ISO-8859-2", QT_TRANSLATE_NOOP("TextEncoding", "ISO 8859-2")},
    CharacterSetInfo{
        cs::windows1251, "windows-1251", QT_TRANSLATE_NOOP("TextEncoding", "Windows-1251")},
    CharacterSetInfo{
        cs::windows1253, "windows-1253", QT_TRANSLATE_NOOP("TextEncoding", "Windows-1253")},
    CharacterSetInfo{
        cs::windows1254, "windows-1254", QT_TRANSLATE_NOOP("TextEncoding", "Windows-1254")},
    CharacterSetInfo{cs::shiftJIS, "Shift_JIS", QT_TRANSLATE_NOOP("TextEncoding", "Shift-JIS")},
    CharacterSetInfo{cs::japaneseEUC, "EUC-JP", QT_TRANSLATE_NOOP("TextEncoding", "EUC-JP")},
    CharacterSetInfo{
        cs::iso2022JP, "ISO-2022-JP", QT_TRANSLATE_NOOP("TextEncoding", "ISO-2022-JP")},
    CharacterSetInfo{cs::isoLatin9, "ISO-8859-15", nullptr},
    CharacterSetInfo{cs::dosLatin1, "IBM850", nullptr},
    CharacterSetInfo{cs::dosLatinUS, "IBM437", nullptr},
    CharacterSetInfo{cs::dosLatin2, "IBM852", nullptr},
    CharacterSetInfo{cs::isoCyrillic, "ISO-8859-5", nullptr},
    CharacterSetInfo{cs::koi8R, "KOI8-R", nullptr},
    CharacterSetInfo{cs::koi8U, "KOI8-U", nullptr},
    CharacterSetInfo{cs::dosRussian, "IBM866", nullptr},
    CharacterSetInfo{cs::isoGreek, "ISO-8859-7", nullptr},
    CharacterSetInfo{cs::isoLatin5, "ISO-8859-9", nullptr},
    CharacterSetInfo{cs::windows1257, "Windows-1257", nullptr},
    CharacterSetInfo{cs::isoLatin4, "ISO-8859-4", nullptr},
    CharacterSetInfo{cs::windows1255, "Windows-1255", nullptr},
    CharacterSetInfo{cs::isoHebrew, "ISO-8859-8", nullptr},
    CharacterSetInfo{cs::windows1256, "Windows-1256", nullptr},
    CharacterSetInfo{cs::isoArabic, "ISO-8859-6", nullptr},
    CharacterSetInfo{cs::gb18030, "GB18030", nullptr},
    CharacterSetInfo{cs::big5, "Big5", nullptr},
    CharacterSetInfo{cs::eucKR, "EUC-KR", nullptr},
    CharacterSetInfo{cs::dosThai, "Windows-874", nullptr},
    // Not in the menus, but files and sessions written elsewhere may name them.
    CharacterSetInfo{1, "US-ASCII", nullptr},
    CharacterSetInfo{cs::fromPlatformCode(515), "ISO-8859-3", nullptr},
    CharacterSetInfo{cs::fromPlatformCode(522), "ISO-8859-10", nullptr},
    CharacterSetInfo{cs::fromPlatformCode(525), "ISO-8859-13", nullptr},
    CharacterSetInfo{cs::fromPlatformCode(526), "ISO-8859-14", nullptr},
    CharacterSetInfo{cs::fromPlatformCode(1288), "Windows-1258", nullptr},
};
} // namespace

const CharacterSetInfo *findCharacterSet(quint64 number)
{
    for (const CharacterSetInfo &info : kCharacterSets) {
        if (info.number == number)
            return &info;
    }
    return nullptr;
}

const CharacterSetInfo *findCharacterSetNamed(const char *name)
{
    for (const CharacterSetInfo &info : kCharacterSets) {
        if (ucnv_compareNames(info.converterName, name) == 0)
            return &info;
    }
    return nullptr;
}

} // namespace mirtex
