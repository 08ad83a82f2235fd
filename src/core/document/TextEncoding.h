// A character set plus whether a byte-order mark is written: the unit the editor saves text in.
#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

// Character-set numbers. They are part of the stored formats (preferences, sessions), so the
// values never change. Sets without a number of their own are kPlatformBase plus their platform
// character-set code.
namespace CharacterSet {
constexpr quint64 kPlatformBase = 2147483648ULL;

constexpr quint64 fromPlatformCode(quint32 code)
{
    return kPlatformBase + code;
}

constexpr quint64 japaneseEUC = 3;
constexpr quint64 utf8 = 4;
constexpr quint64 isoLatin1 = 5;
constexpr quint64 shiftJIS = 8;
constexpr quint64 isoLatin2 = 9;
constexpr quint64 windows1251 = 11;
constexpr quint64 windows1252 = 12;
constexpr quint64 windows1253 = 13;
constexpr quint64 windows1254 = 14;
constexpr quint64 windows1250 = 15;
constexpr quint64 iso2022JP = 21;
constexpr quint64 macRoman = 30;
constexpr quint64 utf16BE = 2415919360ULL;
constexpr quint64 utf16LE = 2483028224ULL;
constexpr quint64 utf32BE = 2550137088ULL;
constexpr quint64 utf32LE = 2617245952ULL;

constexpr quint64 isoLatin4 = fromPlatformCode(516);
constexpr quint64 isoCyrillic = fromPlatformCode(517);
constexpr quint64 isoArabic = fromPlatformCode(518);
constexpr quint64 isoGreek = fromPlatformCode(519);
constexpr quint64 isoHebrew = fromPlatformCode(520);
constexpr quint64 isoLatin5 = fromPlatformCode(521);
constexpr quint64 isoLatin9 = fromPlatformCode(527);
constexpr quint64 dosLatinUS = fromPlatformCode(1024);
constexpr quint64 dosLatin1 = fromPlatformCode(1040);
constexpr quint64 dosLatin2 = fromPlatformCode(1042);
constexpr quint64 dosRussian = fromPlatformCode(1051);
constexpr quint64 dosThai = fromPlatformCode(1053);
constexpr quint64 windows1255 = fromPlatformCode(1285);
constexpr quint64 windows1256 = fromPlatformCode(1286);
constexpr quint64 windows1257 = fromPlatformCode(1287);
constexpr quint64 gb18030 = fromPlatformCode(1586);
constexpr quint64 eucKR = fromPlatformCode(2368);
constexpr quint64 koi8R = fromPlatformCode(2562);
constexpr quint64 big5 = fromPlatformCode(2563);
constexpr quint64 koi8U = fromPlatformCode(2568);
} // namespace CharacterSet

// A plain value, compared and hashed on both fields. Any number is representable; whether the
// codec can convert it is a separate question (TextCodec answers "nothing" when it cannot).
struct TextEncoding
{
    quint64 encoding = CharacterSet::utf8;
    bool bom = false;

    static TextEncoding utf8() { return {CharacterSet::utf8, false}; }

    static TextEncoding utf8WithBom() { return {CharacterSet::utf8, true}; }

    static TextEncoding utf16LEWithBom() { return {CharacterSet::utf16LE, true}; }

    static TextEncoding utf16BEWithBom() { return {CharacterSet::utf16BE, true}; }

    static TextEncoding windows1252() { return {CharacterSet::windows1252, false}; }

    static TextEncoding isoLatin1() { return {CharacterSet::isoLatin1, false}; }

    // The byte-order mark written before the text: empty unless `bom` is set and the character
    // set is UTF-8, UTF-16 or UTF-32.
    QByteArray bomBytes() const;

    // The (translated) name in menus and messages, e.g. "UTF-8 con BOM".
    QString label() const;

    // The shorter status-bar name, e.g. "UTF-8 BOM" or "ANSI".
    QString shortLabel() const;

    // The stored identifier: the decimal character-set number, plus "+bom" when `bom` is set.
    QString id() const;

    // Parses an identifier made by id(); gives nothing when the number does not parse.
    static std::optional<TextEncoding> fromId(QStringView id);

    friend bool operator==(const TextEncoding &, const TextEncoding &) = default;
};

inline size_t qHash(const TextEncoding &value, size_t seed = 0) noexcept
{
    return qHashMulti(seed, value.encoding, value.bom);
}

// The preferences' default encoding for new documents: UTF-8 without BOM (identifier "4").
TextEncoding defaultTextEncoding();

} // namespace mirtex
