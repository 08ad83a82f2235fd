#include "core/tools/JsonLayout.h"

#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

namespace mirtex {

namespace {

constexpr unsigned kRelaxed = rapidjson::kParseCommentsFlag | rapidjson::kParseTrailingCommasFlag
                              | rapidjson::kParseNanAndInfFlag
                              | rapidjson::kParseValidateEncodingFlag;

bool isLayoutSpace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

// Copies a comment starting at `text[at]` ("//" or "/*") to `out`; returns the index after it.
// A line comment keeps its line break, which ends it.
qsizetype copyComment(QStringView text, qsizetype at, QString &out)
{
    if (text[at + 1] == u'/') {
        qsizetype end = text.indexOf(u'\n', at);
        end = end < 0 ? text.size() : end;
        out.append(text.sliced(at, end - at));
        out.append(u'\n');
        return end;
    }
    const qsizetype close = text.indexOf(u"*/", at + 2);
    const qsizetype end = close < 0 ? text.size() : close + 2;
    out.append(text.sliced(at, end - at));
    return end;
}

bool startsComment(QStringView text, qsizetype at)
{
    return text[at] == u'/' && at + 1 < text.size()
           && (text[at + 1] == u'/' || text[at + 1] == u'*');
}

// Copies a string starting at its opening quote; returns the index after its closing quote.
qsizetype copyString(QStringView text, qsizetype at, QString &out)
{
    out.append(u'"');
    qsizetype i = at + 1;
    while (i < text.size()) {
        const QChar c = text[i++];
        out.append(c);
        if (c == u'\\' && i < text.size())
            out.append(text[i++]);
        else if (c == u'"')
            break;
    }
    return i;
}

void newLine(QString &out, QStringView indentUnit, int depth)
{
    out.append(u'\n');
    for (int i = 0; i < depth; ++i)
        out.append(indentUnit);
}

} // namespace

bool isValidJson(QStringView text)
{
    // The reader takes a NUL for the end of the text, so one would hide whatever follows it; JSON
    // never holds a raw NUL anyway.
    if (text.contains(u'\0'))
        return false;
    // Parsed in place: strings are checked where they lie, without the reader's growing stack
    // (which does arithmetic on a null pointer before its first allocation).
    QByteArray utf8 = text.toUtf8();
    rapidjson::InsituStringStream stream(utf8.data());
    rapidjson::BaseReaderHandler<> ignore;
    rapidjson::Reader reader;
    return !reader.Parse<kRelaxed | rapidjson::kParseInsituFlag>(stream, ignore).IsError();
}

std::optional<QString> formatJson(QStringView text, QStringView indentUnit)
{
    if (!isValidJson(text))
        return std::nullopt;
    QString out;
    out.reserve(text.size() * 2);
    int depth = 0;
    for (qsizetype i = 0; i < text.size();) {
        const QChar c = text[i];
        if (isLayoutSpace(c)) {
            ++i;
        } else if (c == u'"') {
            i = copyString(text, i, out);
        } else if (startsComment(text, i)) {
            const bool lineComment = text[i + 1] == u'/';
            i = copyComment(text, i, out);
            if (lineComment) { // the comment wrote the break; indent the next line
                out.chop(1);
                newLine(out, indentUnit, depth);
            }
        } else if (c == u'{' || c == u'[') {
            const QChar closer = c == u'{' ? u'}' : u']';
            qsizetype next = i + 1;
            while (next < text.size() && isLayoutSpace(text[next]))
                ++next;
            if (next < text.size() && text[next] == closer) {
                out.append(c);
                out.append(closer);
                i = next + 1;
            } else {
                out.append(c);
                newLine(out, indentUnit, ++depth);
                ++i;
            }
        } else if (c == u'}' || c == u']') {
            depth = std::max(0, depth - 1);
            newLine(out, indentUnit, depth);
            out.append(c);
            ++i;
        } else if (c == u',') {
            out.append(c);
            newLine(out, indentUnit, depth);
            ++i;
        } else if (c == u':') {
            out.append(u": ");
            ++i;
        } else {
            out.append(c);
            ++i;
        }
    }
    // A closing line comment already wrote its break.
    if (text.endsWith(u'\n') && !out.endsWith(u'\n'))
        out.append(u'\n');
    return out;
}

std::optional<QString> minifyJson(QStringView text)
{
    if (!isValidJson(text))
        return std::nullopt;
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        if (isLayoutSpace(text[i]))
            ++i;
        else if (text[i] == u'"')
            i = copyString(text, i, out);
        else if (startsComment(text, i))
            i = copyComment(text, i, out);
        else
            out.append(text[i++]);
    }
    return out;
}

} // namespace mirtex
