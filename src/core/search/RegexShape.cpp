// A small reader of ICU's pattern syntax that accepts only what it fully understands: plain
// characters, escaped punctuation, \d \w \b \B \t, classes without negation, nesting or
// properties, capturing and (?: groups, anchors and quantifiers. An alternation anywhere gives up
// the required text (a branch need not hold it). Runs of plain characters outside groups and not
// under a quantifier must appear in every match; when case is ignored only characters that have
// no case count, since the text holds exactly them then.
#include "core/search/RegexShape.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace mirtex {

namespace {

bool isQuantifier(QChar c)
{
    return c == u'*' || c == u'+' || c == u'?' || c == u'{';
}

// Characters seen on almost every line of text; a required text made only of them finds little.
int rarity(QStringView text)
{
    int score = int(text.size()) * 4;
    for (const QChar c : text) {
        if (QStringView(u" -:./,0123456789eaoinstrlETAOINS").contains(c))
            score -= 1;
    }
    return score;
}

class ShapeReader
{
public:
    ShapeReader(QStringView pattern, bool ignoreCase, bool dotAll)
        : m_pattern(pattern)
        , m_ignoreCase(ignoreCase)
        , m_dotAll(dotAll)
    {}

    RegexShape read()
    {
        RegexShape shape;
        while (m_at < m_pattern.size()) {
            if (!step())
                return {};
        }
        if (m_depth != 0)
            return {};
        endRun();
        shape.withinOneLine = true;
        if (!m_alternation)
            shape.requiredText = m_best;
        return shape;
    }

private:
    QChar peek(qsizetype ahead = 0) const
    {
        return m_at + ahead < m_pattern.size() ? m_pattern[m_at + ahead] : QChar();
    }

    // Reads one item; false when the pattern holds something not understood.
    bool step()
    {
        const QChar c = m_pattern[m_at];
        if (c == u'\\') {
            const QChar escaped = peek(1);
            m_at += 2;
            if (escaped.isNull())
                return false;
            const char16_t e = escaped.unicode();
            if (e < 0x80 && !escaped.isLetterOrNumber()) {
                plainCharacter(escaped);
                return true;
            }
            endRun();
            return e == u'd' || e == u'w' || e == u'b' || e == u'B' || e == u't';
        }
        if (c == u'[') {
            endRun();
            return readClass();
        }
        if (c == u'(') {
            endRun();
            ++m_at;
            if (peek() == u'?') {
                if (peek(1) != u':')
                    return false;
                m_at += 2;
            }
            ++m_depth;
            return true;
        }
        if (c == u')') {
            endRun();
            ++m_at;
            return --m_depth >= 0;
        }
        if (c == u'|') {
            endRun();
            m_alternation = true;
            ++m_at;
            return true;
        }
        if (isQuantifier(c)) {
            // The quantifier binds to the last character alone: it leaves the run.
            if (!m_run.isEmpty())
                m_run.chop(1);
            endRun();
            ++m_at;
            if (c == u'{') {
                while (m_at < m_pattern.size() && m_pattern[m_at] != u'}')
                    ++m_at;
                ++m_at;
            }
            return true;
        }
        if (c == u'.') {
            endRun();
            ++m_at;
            return !m_dotAll;
        }
        if (c == u'^' || c == u'$') {
            endRun();
            ++m_at;
            return true;
        }
        if (c == u'\n' || c == u'\r' || c.isSurrogate())
            return false;
        ++m_at;
        plainCharacter(c);
        return true;
    }

    void plainCharacter(QChar c)
    {
        if (m_depth > 0 || isQuantifier(peek()) || c == u'\n'
            || (m_ignoreCase && u_hasBinaryProperty(c.unicode(), UCHAR_CASE_SENSITIVE))) {
            endRun();
            return;
        }
        m_run += c;
    }

    void endRun()
    {
        if (!m_run.isEmpty() && (m_best.isEmpty() || rarity(m_run) > rarity(m_best)))
            m_best = m_run;
        m_run.clear();
    }

    // A class of plain characters, escaped punctuation, \d, \w and ranges between characters
    // above the line break.
    bool readClass()
    {
        ++m_at;
        if (peek() == u'^')
            return false;
        bool first = true;
        while (m_at < m_pattern.size()) {
            const QChar c = m_pattern[m_at];
            if (c == u']' && !first) {
                ++m_at;
                return true;
            }
            first = false;
            if (c == u'[' || c == u'&' || c.isSurrogate() || c.unicode() <= u'\n')
                return false;
            if (c == u'\\') {
                const QChar escaped = peek(1);
                if (escaped.isNull())
                    return false;
                const char16_t e = escaped.unicode();
                if (!(e < 0x80 && !escaped.isLetterOrNumber()) && e != u'd' && e != u'w')
                    return false;
                m_at += 2;
                continue;
            }
            ++m_at;
            if (peek() == u'-' && peek(1) != u']') {
                const QChar to = peek(1);
                if (to == u'\\' || to == u'[' || to.isSurrogate() || to.unicode() <= u'\n')
                    return false;
                m_at += 2;
            }
        }
        return false;
    }

    QStringView m_pattern;
    bool m_ignoreCase;
    bool m_dotAll;
    qsizetype m_at = 0;
    int m_depth = 0;
    bool m_alternation = false;
    QString m_run;
    QString m_best;
};

} // namespace

RegexShape regexShapeOf(const SearchOptions &options)
{
    if (options.mode != SearchMode::regex || options.query.isEmpty())
        return {};
    return ShapeReader(options.query, !options.matchCase, options.dotMatchesNewline).read();
}

} // namespace mirtex
