#include "core/document/EncodingHint.h"

#include "core/document/CharacterSetTable.h"
#include "core/document/TextCodec.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace mirtex::EncodingHint {

namespace {

constexpr qsizetype kSampleBytes = 64 * 1024;
// ICU's confidences run from 0 to 100; below this its guesses on short texts are noise.
constexpr int kMinConfidence = 20;

struct DetectorCloser
{
    void operator()(UCharsetDetector *detector) const { ucsdet_close(detector); }
};

bool isWestern(const char *name)
{
    for (const char *western : {"ISO-8859-1", "windows-1252", "ISO-8859-15", "UTF-8", "US-ASCII"}) {
        if (ucnv_compareNames(name, western) == 0)
            return true;
    }
    return false;
}

bool decodesAs(QByteArrayView bytes, TextEncoding encoding)
{
    return TextCodec::decodeText(bytes, encoding).has_value();
}

// Sets that share most letters with the Western ones: text in them reads as plausible Western
// text, and ICU tells them apart from it no better than a coin, so they are never offered.
bool isLatinNeighbour(quint64 set)
{
    return set == CharacterSet::isoLatin2 || set == CharacterSet::windows1250
           || set == CharacterSet::isoLatin5 || set == CharacterSet::windows1254
           || set == CharacterSet::isoLatin4 || set == CharacterSet::windows1257
           || set == CharacterSet::macRoman || set == CharacterSet::dosLatin1
           || set == CharacterSet::dosLatin2 || set == CharacterSet::dosLatinUS;
}

// In a single-byte text of another script most letters are bytes above 0x7F; in Western text
// with a few accents, few are.
bool mostlyHighLetters(QByteArrayView sample)
{
    qsizetype high = 0;
    qsizetype letters = 0;
    for (const char c : sample) {
        const auto byte = uchar(c);
        if (byte >= 0x80)
            ++high;
        if (byte >= 0x80 || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z'))
            ++letters;
    }
    return letters > 0 && high * 10 >= letters * 3;
}

struct IcuOpinion
{
    std::optional<TextEncoding> other; // a set of ours that the whole file decodes in
    int westernLead = 0; // the top Western guess's confidence over the best Central European one
};

// ICU's guesses in order of confidence: the first of ours that the whole file decodes in, unless
// a Western set comes first (then the rules were right).
IcuOpinion askIcu(QByteArrayView bytes, QByteArrayView sample)
{
    IcuOpinion opinion;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UCharsetDetector, DetectorCloser> detector(ucsdet_open(&status));
    if (U_FAILURE(status))
        return opinion;
    ucsdet_setText(detector.get(), sample.data(), int32_t(sample.size()), &status);
    int32_t count = 0;
    const UCharsetMatch **matches = ucsdet_detectAll(detector.get(), &count, &status);
    int western = -1;
    int neighbour = 0;
    for (int32_t i = 0; U_SUCCESS(status) && i < count; ++i) {
        const int confidence = ucsdet_getConfidence(matches[i], &status);
        const char *name = ucsdet_getName(matches[i], &status);
        if (U_FAILURE(status) || !name)
            break;
        const CharacterSetInfo *info = findCharacterSetNamed(name);
        if (isWestern(name)) {
            western = std::max(western, confidence);
            continue;
        }
        if (info && isLatinNeighbour(info->number)) {
            neighbour = std::max(neighbour, confidence);
            continue;
        }
        if (western >= 0 || opinion.other || confidence < kMinConfidence || !info
            || info->number == CharacterSet::utf16LE || info->number == CharacterSet::utf16BE)
            continue;
        const bool multiByte
            = info->number == CharacterSet::shiftJIS || info->number == CharacterSet::japaneseEUC
              || info->number == CharacterSet::iso2022JP || info->number == CharacterSet::gb18030
              || info->number == CharacterSet::big5 || info->number == CharacterSet::eucKR;
        if (!multiByte && !mostlyHighLetters(sample))
            continue;
        if (decodesAs(bytes, {info->number, false}))
            opinion.other = TextEncoding{info->number, false};
    }
    opinion.westernLead = western - neighbour;
    return opinion;
}

// How much of a sample read as UTF-16 in one byte order looks like text: line breaks, spaces and
// the letters of the common scripts count; swapped bytes mostly land in unassigned, private or
// rare blocks.
double utf16Plausibility(QByteArrayView sample, bool bigEndian)
{
    const qsizetype units = sample.size() / 2;
    if (units == 0)
        return 0;

    // Swapped bytes land anywhere, so they spread over several scripts at once; real text keeps
    // to one script besides ASCII and punctuation. Only the largest script counts.
    enum Script {
        common,
        latin,
        greekCyrillic,
        hebrewArabic,
        cjk,
        hangul,
        other,
        count
    };

    qsizetype seen[count] = {};
    for (qsizetype i = 0; i < units; ++i) {
        const auto first = uchar(sample[2 * i]);
        const auto second = uchar(sample[2 * i + 1]);
        const char16_t u
            = bigEndian ? char16_t(first << 8 | second) : char16_t(second << 8 | first);
        Script script = other;
        if (u == 0x09 || u == 0x0A || u == 0x0D || (u >= 0x20 && u <= 0x7E)
            || (u >= 0x2000 && u <= 0x206F) || (u >= 0x20A0 && u <= 0x20CF)
            || (u >= 0xD800 && u <= 0xDFFF))
            script = common;
        else if (u >= 0xA0 && u <= 0x24F)
            script = latin;
        else if (u >= 0x370 && u <= 0x52F)
            script = greekCyrillic;
        else if (u >= 0x590 && u <= 0x6FF)
            script = hebrewArabic;
        else if ((u >= 0x3000 && u <= 0x30FF) || (u >= 0x4E00 && u <= 0x9FFF)
                 || (u >= 0xFF00 && u <= 0xFFEF))
            script = cjk;
        else if (u >= 0xAC00 && u <= 0xD7A3)
            script = hangul;
        ++seen[script];
    }
    const qsizetype largest = *std::max_element(seen + latin, seen + other);
    return double(seen[common] + largest) / double(units);
}

std::optional<TextEncoding> askUtf16(QByteArrayView bytes, QByteArrayView sample)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    sample = sample.first(sample.size() & ~qsizetype(1));
    const double little = utf16Plausibility(sample, false);
    const double big = utf16Plausibility(sample, true);
    const double best = std::max(little, big);
    if (best < 0.9 || std::abs(little - big) < 0.3)
        return std::nullopt;
    const TextEncoding encoding{big > little ? CharacterSet::utf16BE : CharacterSet::utf16LE,
                                false};
    return decodesAs(bytes, encoding) ? std::optional(encoding) : std::nullopt;
}

bool isLetterByte(uchar byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z')
           || (byte >= 0xC0 && byte != 0xD7 && byte != 0xF7);
}

// ISO 8859-15 differs from ISO 8859-1 in eight bytes (€ Š š Ž ž Œ œ Ÿ where Latin-1 has currency
// and fraction signs): œ inside a word, Š or Ž opening one, or € beside a number give it away,
// unless the file uses Windows-1252's own bytes 0x80-0x9F.
bool looksLikeLatin9(QByteArrayView sample)
{
    int evidence = 0;
    for (qsizetype i = 0; i < sample.size(); ++i) {
        const auto byte = uchar(sample[i]);
        if (byte >= 0x80 && byte <= 0x9F)
            return false;
        const uchar before = i > 0 ? uchar(sample[i - 1]) : ' ';
        const uchar after = i + 1 < sample.size() ? uchar(sample[i + 1]) : ' ';
        switch (byte) {
        case 0xA6:
        case 0xA8:
        case 0xB4:
        case 0xB8:
        case 0xBC:
        case 0xBD:
        case 0xBE:
            if (isLetterByte(after) && (isLetterByte(before) || before == ' '))
                ++evidence;
            break;
        case 0xA4: {
            const uchar farBefore = i > 1 ? uchar(sample[i - 2]) : ' ';
            const uchar farAfter = i + 2 < sample.size() ? uchar(sample[i + 2]) : ' ';
            const auto digit = [](uchar c) { return c >= '0' && c <= '9'; };
            if (digit(before) || digit(after) || (before == ' ' && digit(farBefore))
                || (after == ' ' && digit(farAfter)))
                ++evidence;
            break;
        }
        default:
            break;
        }
    }
    return evidence > 0;
}

} // namespace

std::optional<TextEncoding> suggest(QByteArrayView bytes, TextEncoding detected)
{
    const QByteArrayView sample = bytes.first(std::min(bytes.size(), kSampleBytes));
    const bool western = detected.encoding == CharacterSet::windows1252
                         || detected.encoding == CharacterSet::isoLatin1;
    // UTF-16 of letters in the lower blocks (Cyrillic, Greek) is valid UTF-8 full of zero bytes.
    const bool utf8WithZeros
        = detected.encoding == CharacterSet::utf8 && !detected.bom && sample.contains('\0');
    if (!western && !utf8WithZeros)
        return std::nullopt;
    if (auto utf16 = askUtf16(bytes, sample))
        return utf16;
    if (!western)
        return std::nullopt;
    const IcuOpinion icu = askIcu(bytes, sample);
    if (icu.other)
        return icu.other;
    // Latin-2 text shows the same bytes inside words; only text ICU clearly calls Western counts.
    if (icu.westernLead >= 10 && looksLikeLatin9(sample)
        && decodesAs(bytes, {CharacterSet::isoLatin9, false}))
        return TextEncoding{CharacterSet::isoLatin9, false};
    return std::nullopt;
}

} // namespace mirtex::EncodingHint
