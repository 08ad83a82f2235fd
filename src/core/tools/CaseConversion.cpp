#include "core/tools/CaseConversion.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <vector>

namespace mirtex {

namespace {

struct ConversionInfo
{
    const char *name;
    const char *label;
};

constexpr ConversionInfo kConversions[kCaseConversionCount] = {
    {"upper", QT_TRANSLATE_NOOP("CaseConversion", "MAIUSCOLO")},
    {"lower", QT_TRANSLATE_NOOP("CaseConversion", "minuscolo")},
    {"title", QT_TRANSLATE_NOOP("CaseConversion", "Iniziali Maiuscole")},
    {"sentence", QT_TRANSLATE_NOOP("CaseConversion", "Frase con maiuscola iniziale")},
    {"invert", QT_TRANSLATE_NOOP("CaseConversion", "iNVERTI mAIUSCOLE")},
    {"random", QT_TRANSLATE_NOOP("CaseConversion", "MaIuScOlE CaSuAlI")},
};

using IcuMapping
    = int32_t (*)(UChar *, int32_t, const UChar *, int32_t, const char *, UErrorCode *);

// ICU's full mappings in the root locale (no Turkish dotless i, no Lithuanian dots).
QString mapped(QStringView text, IcuMapping mapping)
{
    if (text.isEmpty())
        return {};
    QString out(text.size() + 16, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const auto *source = reinterpret_cast<const UChar *>(text.utf16());
    int32_t size = mapping(reinterpret_cast<UChar *>(out.data()),
                           int32_t(out.size()),
                           source,
                           int32_t(text.size()),
                           "",
                           &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
        out.resize(size);
        status = U_ZERO_ERROR;
        size = mapping(reinterpret_cast<UChar *>(out.data()),
                       int32_t(out.size()),
                       source,
                       int32_t(text.size()),
                       "",
                       &status);
    }
    if (U_FAILURE(status))
        return text.toString();
    out.truncate(size);
    return out;
}

QString upper(QStringView text)
{
    return mapped(text, u_strToUpper);
}

QString lower(QStringView text)
{
    return mapped(text, u_strToLower);
}

QString title(QStringView text)
{
    if (text.isEmpty())
        return {};
    QString out(text.size() + 16, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const auto *source = reinterpret_cast<const UChar *>(text.utf16());
    // A null break iterator: ICU's word boundaries.
    int32_t size = u_strToTitle(reinterpret_cast<UChar *>(out.data()),
                                int32_t(out.size()),
                                source,
                                int32_t(text.size()),
                                nullptr,
                                "",
                                &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
        out.resize(size);
        status = U_ZERO_ERROR;
        size = u_strToTitle(reinterpret_cast<UChar *>(out.data()),
                            int32_t(out.size()),
                            source,
                            int32_t(text.size()),
                            nullptr,
                            "",
                            &status);
    }
    if (U_FAILURE(status))
        return text.toString();
    out.truncate(size);
    return out;
}

QString sentence(QStringView text)
{
    const QString lowered = lower(text);
    QString out;
    out.reserve(lowered.size());
    bool capitaliseNext = true;
    for (qsizetype i = 0; i < lowered.size();) {
        char32_t c = lowered[i].unicode();
        qsizetype width = 1;
        if (lowered[i].isHighSurrogate() && i + 1 < lowered.size()
            && lowered[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(lowered[i], lowered[i + 1]);
            width = 2;
        }
        const QStringView character = QStringView(lowered).sliced(i, width);
        if (capitaliseNext && u_isalpha(UChar32(c))) {
            out.append(upper(character));
            capitaliseNext = false;
        } else {
            out.append(character);
        }
        if (c == U'.' || c == U'!' || c == U'?' || c == U'\n')
            capitaliseNext = true;
        i += width;
    }
    return out;
}

// Per character, one of three fates; consecutive characters of the same fate are mapped in one
// call, so that whole documents convert in a few ICU calls.
enum class Fate {
    keep,
    toUpper,
    toLower
};

template<typename Choose>
QString perCharacter(QStringView text, Choose choose)
{
    QString out;
    out.reserve(text.size());
    qsizetype runStart = 0;
    Fate runFate = Fate::keep;
    auto flush = [&](qsizetype end) {
        const QStringView run = text.sliced(runStart, end - runStart);
        out.append(runFate == Fate::toUpper   ? upper(run)
                   : runFate == Fate::toLower ? lower(run)
                                              : run.toString());
        runStart = end;
    };
    for (qsizetype i = 0; i < text.size();) {
        char32_t c = text[i].unicode();
        qsizetype width = 1;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            width = 2;
        }
        const Fate fate = choose(UChar32(c));
        if (fate != runFate) {
            flush(i);
            runFate = fate;
        }
        i += width;
    }
    flush(text.size());
    return out;
}

QString inverted(QStringView text)
{
    return perCharacter(text, [](UChar32 c) {
        if (u_isULowercase(c))
            return Fate::toUpper;
        if (u_isUUppercase(c) || u_istitle(c))
            return Fate::toLower;
        return Fate::keep;
    });
}

QString randomised(QStringView text)
{
    QRandomGenerator *random = QRandomGenerator::system();
    quint64 bits = 0;
    int left = 0;
    return perCharacter(text, [&](UChar32) {
        if (left == 0) {
            bits = random->generate64();
            left = 64;
        }
        const bool up = bits & 1;
        bits >>= 1;
        --left;
        return up ? Fate::toUpper : Fate::toLower;
    });
}

} // namespace

QString toString(CaseConversion conversion)
{
    return QString::fromLatin1(kConversions[int(conversion)].name);
}

std::optional<CaseConversion> caseConversionFromString(QStringView name)
{
    for (int i = 0; i < kCaseConversionCount; ++i) {
        if (name == QLatin1String(kConversions[i].name))
            return CaseConversion(i);
    }
    return std::nullopt;
}

QString label(CaseConversion conversion)
{
    return QCoreApplication::translate("CaseConversion", kConversions[int(conversion)].label);
}

QString convertCase(QStringView text, CaseConversion conversion)
{
    switch (conversion) {
    case CaseConversion::upper:
        return upper(text);
    case CaseConversion::lower:
        return lower(text);
    case CaseConversion::title:
        return title(text);
    case CaseConversion::sentence:
        return sentence(text);
    case CaseConversion::invert:
        return inverted(text);
    case CaseConversion::random:
        return randomised(text);
    }
    return text.toString();
}

} // namespace mirtex
