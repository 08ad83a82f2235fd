#include "core/search/SearchEscapes.h"

#include "core/tools/Graphemes.h"

#include <optional>
#include <vector>

namespace mirtex {

namespace {

// The user-perceived characters of `text`, as views into it.
std::vector<QStringView> characters(QStringView text)
{
    thread_local Graphemes graphemes;
    std::vector<QStringView> result;
    result.reserve(std::size_t(text.size()));
    graphemes.forEach(text, [&](qsizetype start, qsizetype end) {
        result.push_back(text.sliced(start, end - start));
    });
    return result;
}

bool is(QStringView character, char16_t unit)
{
    return character.size() == 1 && character[0] == unit;
}

// The unsigned hexadecimal parse: an optional "+", then at least one ASCII hex digit, nothing else.
std::optional<char32_t> parseHex(QStringView digits)
{
    if (digits.startsWith(u'+'))
        digits = digits.sliced(1);
    if (digits.isEmpty())
        return std::nullopt;
    char32_t value = 0;
    for (const QChar c : digits) {
        const char16_t u = c.unicode();
        int digit = -1;
        if (u >= u'0' && u <= u'9')
            digit = u - u'0';
        else if (u >= u'a' && u <= u'f')
            digit = u - u'a' + 10;
        else if (u >= u'A' && u <= u'F')
            digit = u - u'A' + 10;
        if (digit < 0)
            return std::nullopt;
        value = value * 16 + char32_t(digit); // at most 5 digits: no overflow
    }
    return value;
}

bool isScalarValue(char32_t value)
{
    return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

// "\x" + 2 or "\u" + 4 characters starting at `at`: the code point, if they spell a scalar value.
std::optional<char32_t>
hexEscape(const std::vector<QStringView> &chars, std::size_t at, std::size_t count)
{
    if (at + count > chars.size())
        return std::nullopt;
    QString digits;
    for (std::size_t i = at; i < at + count; ++i)
        digits += chars[i];
    const auto value = parseHex(digits);
    if (!value || !isScalarValue(*value))
        return std::nullopt;
    return value;
}

// After "\r" at `at`: a following "\n" belongs to it.
std::size_t skipCarriageReturnPair(const std::vector<QStringView> &chars, std::size_t at)
{
    if (at + 2 < chars.size() && is(chars[at + 1], u'\\') && is(chars[at + 2], u'n'))
        return at + 2;
    return at;
}

} // namespace

QString unescapeExtended(QStringView text)
{
    if (!text.contains(u'\\'))
        return text.toString();
    const std::vector<QStringView> chars = characters(text);
    QString result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < chars.size(); ++i) {
        if (!is(chars[i], u'\\') || i + 1 == chars.size()) {
            result += chars[i];
            continue;
        }
        const QStringView c = chars[i + 1];
        ++i; // on c
        if (is(c, u'n')) {
            result += u'\n';
        } else if (is(c, u'r')) {
            result += u'\n';
            i = skipCarriageReturnPair(chars, i);
        } else if (is(c, u't')) {
            result += u'\t';
        } else if (is(c, u'0')) {
            result += QChar(u'\0');
        } else if (is(c, u'\\')) {
            result += u'\\';
        } else if (is(c, u'x') || is(c, u'u')) {
            const std::size_t count = is(c, u'x') ? 2 : 4;
            if (const auto value = hexEscape(chars, i + 1, count)) {
                const char32_t codePoint = *value;
                result += QStringView(QString::fromUcs4(&codePoint, 1));
                i += count;
            } else {
                result += u'\\';
                result += c; // the digits are read again as plain text
            }
        } else {
            result += u'\\';
            result += c;
        }
    }
    return result;
}

QString regexTemplate(QStringView replacement)
{
    if (!replacement.contains(u'\\'))
        return replacement.toString();
    const std::vector<QStringView> chars = characters(replacement);
    QString result;
    result.reserve(replacement.size());
    for (std::size_t i = 0; i < chars.size(); ++i) {
        if (!is(chars[i], u'\\') || i + 1 == chars.size()) {
            result += chars[i];
            continue;
        }
        const QStringView c = chars[i + 1];
        ++i;
        if (is(c, u'n')) {
            result += u'\n';
        } else if (is(c, u'r')) {
            result += u'\n';
            i = skipCarriageReturnPair(chars, i);
        } else if (is(c, u't')) {
            result += u'\t';
        } else if (c.size() == 1 && c[0] >= u'0' && c[0] <= u'9') {
            result += u'$';
            result += c;
        } else if (is(c, u'\\') || is(c, u'$')) {
            result += u'\\';
            result += c;
        } else {
            result += c;
        }
    }
    return result;
}

QString literalPattern(QStringView text)
{
    QString pattern;
    pattern.reserve(text.size() * 2);
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool alphanumeric
            = (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9');
        if (u < 0x20 || u == 0x7F) {
            // Control characters (NUL, TAB, LF) spelled out, so the pattern holds none.
            pattern += QStringLiteral("\\x{%1}").arg(int(u), 0, 16);
        } else if (u < 0x80 && !alphanumeric) {
            pattern += u'\\';
            pattern += c;
        } else {
            pattern += c;
        }
    }
    return pattern;
}

} // namespace mirtex
