// A deliberately small reading of ICU's syntax: anything it does not recognise gives nothing,
// which only costs speed, never a different match.
#include "core/languages/PatternLead.h"

namespace mirtex {

namespace {

bool isAsciiLetterOrDigit(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

// The index just after the character class opening at `at`, or -1 when it does not close.
qsizetype classEnd(QStringView pattern, qsizetype at)
{
    qsizetype i = at + 1;
    if (i < pattern.size() && pattern[i] == u'^')
        ++i;
    if (i < pattern.size() && pattern[i] == u']') // a leading ] is a member
        ++i;
    int depth = 1;
    for (; i < pattern.size(); ++i) {
        const char16_t c = pattern[i].unicode();
        if (c == u'\\')
            ++i;
        else if (c == u'[')
            ++depth;
        else if (c == u']' && --depth == 0)
            return i + 1;
    }
    return -1;
}

// Whether the pattern has an alternation outside every group, or inline flags ("(?i", "(?x"…)
// anywhere; -1 results of classEnd() count as yes (the pattern is not understood).
bool hasTopLevelChoiceOrFlags(QStringView pattern)
{
    int depth = 0;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char16_t c = pattern[i].unicode();
        if (c == u'\\') {
            ++i;
        } else if (c == u'[') {
            const qsizetype end = classEnd(pattern, i);
            if (end < 0)
                return true;
            i = end - 1;
        } else if (c == u'(') {
            ++depth;
            if (i + 2 < pattern.size() && pattern[i + 1] == u'?'
                && (isAsciiLetterOrDigit(pattern[i + 2].unicode()) || pattern[i + 2] == u'-'))
                return true;
        } else if (c == u')') {
            --depth;
        } else if (c == u'|' && depth == 0) {
            return true;
        }
    }
    return depth != 0;
}

// The index just after the group opening at `at`, or -1 when it does not close.
qsizetype groupEnd(QStringView pattern, qsizetype at)
{
    int depth = 0;
    for (qsizetype i = at; i < pattern.size(); ++i) {
        const char16_t c = pattern[i].unicode();
        if (c == u'\\') {
            ++i;
        } else if (c == u'[') {
            const qsizetype end = classEnd(pattern, i);
            if (end < 0)
                return -1;
            i = end - 1;
        } else if (c == u'(') {
            ++depth;
        } else if (c == u')' && --depth == 0) {
            return i + 1;
        }
    }
    return -1;
}

} // namespace

std::optional<char16_t> leadingLiteral(QStringView pattern)
{
    if (hasTopLevelChoiceOrFlags(pattern))
        return std::nullopt;
    qsizetype at = 0;
    while (pattern.sliced(at).startsWith(u"(?<!") || pattern.sliced(at).startsWith(u"(?<=")) {
        at = groupEnd(pattern, at);
        if (at < 0)
            return std::nullopt;
    }
    if (at >= pattern.size())
        return std::nullopt;
    char16_t literal = pattern[at].unicode();
    qsizetype next = at + 1;
    if (literal == u'\\') {
        if (next >= pattern.size())
            return std::nullopt;
        literal = pattern[next].unicode();
        ++next;
        // \d, \w, \x41, \Q…: classes and codes, not the character itself.
        if (literal >= 128 || isAsciiLetterOrDigit(literal))
            return std::nullopt;
    } else if (literal >= 128 || literal < 0x20
               || QStringView(u"()[]{}.*+?^$|#").contains(literal)) {
        // '#' starts a comment under (?x); refusing it costs nothing here.
        return std::nullopt;
    }
    // A quantifier that allows zero repetitions makes the character optional.
    if (next < pattern.size() && QStringView(u"?*{").contains(pattern[next]))
        return std::nullopt;
    return literal;
}

} // namespace mirtex
