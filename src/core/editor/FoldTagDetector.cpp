// The tag detector: opening and closing tags paired by name, as the pattern
// <(/?)([A-Za-z][\w:.\-]*)(?:\s[^<>]*?)?(/?)> finds them, without a regular expression so that a
// "<" whose attributes run into another "<" costs one step, not a rescan.
#include "core/editor/FoldDetection.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace mirtex {

namespace {

bool isNameStart(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isNameUnit(char16_t c)
{
    return isNameStart(c) || (c >= u'0' && c <= u'9') || c == u'_' || c == u':' || c == u'.'
           || c == u'-';
}

bool isSpace(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f' || c == u'\v';
}

bool isVoidElement(const QString &name)
{
    static const QStringList kVoid{QStringLiteral("area"),
                                   QStringLiteral("base"),
                                   QStringLiteral("br"),
                                   QStringLiteral("col"),
                                   QStringLiteral("embed"),
                                   QStringLiteral("hr"),
                                   QStringLiteral("img"),
                                   QStringLiteral("input"),
                                   QStringLiteral("link"),
                                   QStringLiteral("meta"),
                                   QStringLiteral("param"),
                                   QStringLiteral("source"),
                                   QStringLiteral("track"),
                                   QStringLiteral("wbr")};
    return kVoid.contains(name);
}

struct TagMatch
{
    qint64 end = 0; // after ">"
    qint64 nameStart = 0;
    qint64 nameEnd = 0;
    bool closing = false;
    bool selfClosing = false;
};

// The tag starting with the "<" at `at`, or where to look for the next one (`resume`).
std::optional<TagMatch> matchTag(const char16_t *units, qint64 length, qint64 at, qint64 &resume)
{
    resume = at + 1;
    TagMatch m;
    qint64 i = at + 1;
    if (i < length && units[i] == u'/') {
        m.closing = true;
        ++i;
    }
    if (i >= length || !isNameStart(units[i]))
        return std::nullopt;
    m.nameStart = i;
    while (i < length && isNameUnit(units[i]))
        ++i;
    m.nameEnd = i;
    if (i < length && units[i] == u'>') {
        m.end = i + 1;
        return m;
    }
    if (i + 1 < length && units[i] == u'/' && units[i + 1] == u'>') {
        m.selfClosing = true;
        m.end = i + 2;
        return m;
    }
    if (i >= length || !isSpace(units[i]))
        return std::nullopt;
    const qint64 afterSpace = i + 1;
    const char16_t *stop = std::find_if(
        units + afterSpace, units + length, [](char16_t c) { return c == u'<' || c == u'>'; });
    const qint64 g = stop - units;
    if (g == length || units[g] == u'<') {
        resume = g; // nothing between here and there can start a tag
        return std::nullopt;
    }
    m.selfClosing = g - 1 >= afterSpace && units[g - 1] == u'/';
    m.end = g + 1;
    return m;
}

} // namespace

std::vector<FoldLines> tagFoldLines(QStringView text, bool html, const QList<Token> *tokens)
{
    const char16_t *units = reinterpret_cast<const char16_t *>(text.data());
    const qint64 length = text.size();

    // Open tags, and per name the indexes of its entries, so that a closer finds its opener at
    // once however many other tags are open.
    struct Open
    {
        int name;
        qint64 line;
    };

    std::vector<Open> stack;
    QHash<QString, int> names;
    std::vector<std::vector<std::size_t>> openByName;
    std::vector<FoldLines> pairs;

    qsizetype comment = 0;
    const qsizetype tokenCount = tokens ? tokens->size() : 0;
    auto inComment = [&](qint64 offset) {
        while (comment < tokenCount
               && ((*tokens)[comment].end() <= offset
                   || (*tokens)[comment].kind != TokenKind::comment))
            ++comment;
        return comment < tokenCount && (*tokens)[comment].location <= offset;
    };
    qint64 line = 0;
    qint64 counted = 0; // LFs before `counted` are in `line`
    qint64 i = 0;
    while (i < length) {
        const char16_t *lt = std::find(units + i, units + length, u'<');
        const qint64 at = lt - units;
        if (at == length)
            break;
        qint64 resume = at + 1;
        const std::optional<TagMatch> m = matchTag(units, length, at, resume);
        if (!m || m->selfClosing || inComment(at)) {
            i = m ? m->end : resume;
            continue;
        }
        i = m->end;
        line += std::count(units + counted, units + at, u'\n');
        counted = at;
        QString name = text.sliced(m->nameStart, m->nameEnd - m->nameStart).toString();
        if (html) {
            name = name.toLower();
            if (isVoidElement(name))
                continue;
        }
        if (!m->closing) {
            auto it = names.find(name);
            if (it == names.end()) {
                it = names.insert(name, int(openByName.size()));
                openByName.emplace_back();
            }
            openByName[std::size_t(*it)].push_back(stack.size());
            stack.push_back({*it, line});
            continue;
        }
        const auto found = names.constFind(name);
        if (found == names.cend() || openByName[std::size_t(*found)].empty())
            continue;
        const std::size_t at0 = openByName[std::size_t(*found)].back();
        const qint64 openLine = stack[at0].line;
        while (stack.size() > at0) {
            openByName[std::size_t(stack.back().name)].pop_back();
            stack.pop_back();
        }
        if (openLine != line)
            pairs.push_back({openLine, line});
    }
    return pairs;
}

} // namespace mirtex
