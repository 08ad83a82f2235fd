#include "core/tools/TextTool.h"

#include "core/tools/HtmlEntities.h"
#include "core/tools/JsonLayout.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QStringDecoder>

namespace mirtex {

namespace {

struct ToolInfo
{
    const char *name;
    const char *label;
};

constexpr ToolInfo kTools[kTextToolCount] = {
    {"base64Encode", QT_TRANSLATE_NOOP("TextTool", "Codifica Base64")},
    {"base64Decode", QT_TRANSLATE_NOOP("TextTool", "Decodifica Base64")},
    {"urlEncode", QT_TRANSLATE_NOOP("TextTool", "Codifica URL")},
    {"urlDecode", QT_TRANSLATE_NOOP("TextTool", "Decodifica URL")},
    {"htmlEncode", QT_TRANSLATE_NOOP("TextTool", "Codifica entità HTML")},
    {"htmlDecode", QT_TRANSLATE_NOOP("TextTool", "Decodifica entità HTML")},
    {"jsonFormat", QT_TRANSLATE_NOOP("TextTool", "Formatta JSON")},
    {"jsonMinify", QT_TRANSLATE_NOOP("TextTool", "Comprimi JSON")},
};

std::optional<QString> strictUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless
                               | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

QString base64Encode(QStringView text)
{
    const QByteArray encoded = text.toUtf8().toBase64();
    constexpr qsizetype kLine = 76;
    QString out;
    out.reserve(encoded.size() + encoded.size() / kLine);
    for (qsizetype at = 0; at < encoded.size(); at += kLine) {
        if (at > 0)
            out.append(u'\n');
        out.append(QLatin1StringView(encoded.mid(at, kLine)));
    }
    return out;
}

bool isBase64Letter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+'
           || c == '/';
}

std::optional<QString> base64Decode(QStringView text)
{
    QByteArray compact;
    compact.reserve(text.size());
    for (const QChar c : text) {
        if (c.isSpace())
            continue;
        if (c.unicode() > 127)
            return std::nullopt;
        compact.append(char(c.unicode()));
    }
    while (compact.size() % 4 != 0)
        compact.append('=');
    // Strict: letters of the alphabet, then at most two "=" at the very end.
    qsizetype letters = compact.size();
    while (letters > 0 && compact[letters - 1] == '=')
        --letters;
    if (compact.size() - letters > 2)
        return std::nullopt;
    for (qsizetype i = 0; i < letters; ++i) {
        if (!isBase64Letter(compact[i]))
            return std::nullopt;
    }
    const auto decoded = QByteArray::fromBase64Encoding(
        compact, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    if (auto utf8 = strictUtf8(*decoded))
        return utf8;
    return QString::fromLatin1(*decoded);
}

QString urlEncode(QStringView text)
{
    // Unreserved letters, digits and "-._~" always stay; these sub-delimiters stay as well.
    return QString::fromLatin1(text.toUtf8().toPercentEncoding("!$'()*,;"));
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::optional<QString> urlDecode(QStringView text)
{
    const QByteArray utf8 = text.toUtf8();
    QByteArray bytes;
    bytes.reserve(utf8.size());
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        if (c == '+') {
            bytes.append(' ');
        } else if (c == '%') {
            const int high = i + 1 < utf8.size() ? hexValue(utf8[i + 1]) : -1;
            const int low = i + 2 < utf8.size() ? hexValue(utf8[i + 2]) : -1;
            if (high < 0 || low < 0)
                return std::nullopt;
            bytes.append(char(high * 16 + low));
            i += 2;
        } else {
            bytes.append(c);
        }
    }
    return strictUtf8(bytes);
}

} // namespace

QString toString(TextTool tool)
{
    return QString::fromLatin1(kTools[int(tool)].name);
}

std::optional<TextTool> textToolFromString(QStringView name)
{
    for (int i = 0; i < kTextToolCount; ++i) {
        if (name == QLatin1String(kTools[i].name))
            return TextTool(i);
    }
    return std::nullopt;
}

QString label(TextTool tool)
{
    return QCoreApplication::translate("TextTool", kTools[int(tool)].label);
}

std::optional<QString> applyTextTool(QStringView text, TextTool tool, QStringView indentUnit)
{
    switch (tool) {
    case TextTool::base64Encode:
        return base64Encode(text);
    case TextTool::base64Decode:
        return base64Decode(text);
    case TextTool::urlEncode:
        return urlEncode(text);
    case TextTool::urlDecode:
        return urlDecode(text);
    case TextTool::htmlEncode:
        return encodeHtmlEntities(text);
    case TextTool::htmlDecode:
        return decodeHtmlEntities(text);
    case TextTool::jsonFormat:
        return formatJson(text, indentUnit);
    case TextTool::jsonMinify:
        return minifyJson(text);
    }
    return std::nullopt;
}

} // namespace mirtex
