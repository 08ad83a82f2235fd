#include "core/tools/HtmlEntities.h"

#include <cctype>

namespace mirtex {

namespace {

struct Entity
{
    const char16_t *name;
    char16_t character;
};

constexpr Entity kEntities[] = {
    {u"amp", u'&'},         {u"lt", u'<'},          {u"gt", u'>'},          {u"quot", u'"'},
    {u"apos", u'\''},       {u"nbsp", u'\u00A0'},   {u"copy", u'\u00A9'},   {u"reg", u'\u00AE'},
    {u"euro", u'\u20AC'},   {u"egrave", u'\u00E8'}, {u"eacute", u'\u00E9'}, {u"agrave", u'\u00E0'},
    {u"ograve", u'\u00F2'}, {u"ugrave", u'\u00F9'}, {u"igrave", u'\u00EC'}, {u"Egrave", u'\u00C8'},
    {u"Eacute", u'\u00C9'}, {u"Agrave", u'\u00C0'}, {u"hellip", u'\u2026'}, {u"mdash", u'\u2014'},
    {u"ndash", u'\u2013'},  {u"laquo", u'\u00AB'},  {u"raquo", u'\u00BB'},
};

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// The replacement of the entity whose body (between "&" and ";") is `body`, if it has one.
std::optional<QString> decodeEntity(QStringView body)
{
    if (body.startsWith(u'#')) {
        const bool hex = body.size() > 1 && body[1] == u'x';
        const QStringView digits = body.sliced(hex ? 2 : 1);
        if (digits.isEmpty() || digits.size() > 8)
            return std::nullopt; // beyond U+10FFFF either way
        bool ok = false;
        const uint code = digits.toUInt(&ok, hex ? 16 : 10);
        if (!ok || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
            return std::nullopt;
        const char32_t scalar = code;
        return QString::fromUcs4(&scalar, 1);
    }
    if (const auto c = namedEntity(body))
        return QString(*c);
    return std::nullopt;
}

// Length of the body of an entity-shaped match at `text[at]` == '&' (up to ";"), or -1.
qsizetype entityBody(QStringView text, qsizetype at)
{
    qsizetype i = at + 1;
    if (i < text.size() && text[i] == u'#') {
        ++i;
        const bool hex = i < text.size() && text[i] == u'x';
        if (hex)
            ++i;
        const qsizetype digitsStart = i;
        while (i < text.size()
               && (hex ? isxdigit(text[i].toLatin1()) && text[i].unicode() < 128
                       : text[i] >= u'0' && text[i] <= u'9'))
            ++i;
        if (i == digitsStart)
            return -1;
    } else {
        const qsizetype lettersStart = i;
        while (i < text.size() && isAsciiLetter(text[i]))
            ++i;
        if (i == lettersStart)
            return -1;
    }
    if (i >= text.size() || text[i] != u';')
        return -1;
    return i - at - 1;
}

} // namespace

std::optional<QChar> namedEntity(QStringView name)
{
    for (const Entity &entity : kEntities) {
        if (name == QStringView(entity.name))
            return QChar(entity.character);
    }
    return std::nullopt;
}

QString encodeHtmlEntities(QStringView text)
{
    QString out;
    out.reserve(text.size() + text.size() / 8);
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'&':
            out.append(u"&amp;");
            break;
        case u'<':
            out.append(u"&lt;");
            break;
        case u'>':
            out.append(u"&gt;");
            break;
        case u'"':
            out.append(u"&quot;");
            break;
        case u'\'':
            out.append(u"&#39;");
            break;
        default:
            out.append(c);
        }
    }
    return out;
}

QString decodeHtmlEntities(QStringView text)
{
    QString out;
    out.reserve(text.size());
    qsizetype copied = 0;
    for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&', at)) {
        const qsizetype body = entityBody(text, at);
        if (body < 0) {
            ++at;
            continue;
        }
        const qsizetype end = at + body + 2;
        if (const auto replacement = decodeEntity(text.sliced(at + 1, body))) {
            out.append(text.sliced(copied, at - copied));
            out.append(*replacement);
            copied = end;
        }
        at = end; // a match that stays as written is not searched again
    }
    out.append(text.sliced(copied));
    return out;
}

} // namespace mirtex
