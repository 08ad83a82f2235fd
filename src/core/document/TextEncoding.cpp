#include "core/document/TextEncoding.h"

#include "core/document/CharacterSetTable.h"

#include <QCoreApplication>

#include <limits>

namespace mirtex {

namespace {
const char *const kBomSuffix = "+bom";

QString tr(const char *text)
{
    return QCoreApplication::translate("TextEncoding", text);
}

// The table name, else the converter's own name, else "Codifica N"; without the BOM suffix.
QString baseName(quint64 number)
{
    const CharacterSetInfo *info = findCharacterSet(number);
    if (info && info->displayName)
        return tr(info->displayName);
    if (info)
        return QString::fromLatin1(info->converterName);
    return tr("Codifica %1").arg(number);
}
} // namespace

QByteArray TextEncoding::bomBytes() const
{
    if (!bom)
        return {};
    switch (encoding) {
    case CharacterSet::utf8:
        return QByteArrayLiteral("\xEF\xBB\xBF");
    case CharacterSet::utf16LE:
        return QByteArrayLiteral("\xFF\xFE");
    case CharacterSet::utf16BE:
        return QByteArrayLiteral("\xFE\xFF");
    case CharacterSet::utf32LE:
        return QByteArray("\xFF\xFE\x00\x00", 4);
    case CharacterSet::utf32BE:
        return QByteArray("\x00\x00\xFE\xFF", 4);
    default:
        return {};
    }
}

QString TextEncoding::label() const
{
    if (*this == utf8())
        return tr("UTF-8");
    if (*this == utf8WithBom())
        return tr("UTF-8 con BOM");
    if (*this == utf16LEWithBom())
        return tr("UTF-16 LE con BOM");
    if (*this == utf16BEWithBom())
        return tr("UTF-16 BE con BOM");
    if (*this == windows1252())
        return tr("ANSI (Windows-1252)");
    const QString name = baseName(encoding);
    return bom ? tr("%1 con BOM").arg(name) : name;
}

QString TextEncoding::shortLabel() const
{
    if (*this == utf8())
        return tr("UTF-8");
    if (*this == utf8WithBom())
        return tr("UTF-8 BOM");
    if (*this == utf16LEWithBom())
        return tr("UTF-16 LE");
    if (*this == utf16BEWithBom())
        return tr("UTF-16 BE");
    if (*this == windows1252())
        return tr("ANSI");
    const CharacterSetInfo *info = findCharacterSet(encoding);
    if (info && info->displayName)
        return tr(info->displayName);
    return label();
}

QString TextEncoding::id() const
{
    QString text = QString::number(encoding);
    if (bom)
        text += QLatin1String(kBomSuffix);
    return text;
}

std::optional<TextEncoding> TextEncoding::fromId(QStringView id)
{
    TextEncoding result;
    if (id.endsWith(QLatin1String(kBomSuffix))) {
        result.bom = true;
        id.chop(4);
    }
    // Digits only: no sign, spaces or other bases, which a stored identifier never has.
    if (id.isEmpty())
        return std::nullopt;
    quint64 number = 0;
    for (QChar c : id) {
        const quint64 digit = c.unicode() - u'0';
        if (digit > 9 || number > (std::numeric_limits<quint64>::max() - digit) / 10)
            return std::nullopt;
        number = number * 10 + digit;
    }
    result.encoding = number;
    return result;
}

TextEncoding defaultTextEncoding()
{
    return TextEncoding::utf8();
}

} // namespace mirtex
