// A small reader of ICU's pattern syntax that accepts only what it fully understands: plain
// characters, escaped punctuation, \d \w \b \B \t, classes without negation, nesting or
// properties, capturing and (?: groups, anchors and quantifiers. An alternation anywhere gives up
// the required text (a branch need not hold it). Runs of plain characters outside groups and not
// under a quantifier must appear in every match; when case is ignored only characters that have
// no case count, since the text holds exactly them then.
#include "core/search/RegexShape.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <vector>

namespace mirtex {

namespace {

// Lengths past this are as good as unbounded.
constexpr qsizetype kUnbounded = qsizetype(1) << 40;

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
        const Frame &top = m_frames.back();
        const qsizetype longest = std::max(top.best, top.sum);
        shape.maxLength = longest >= kUnbounded ? -1 : longest;
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
                item(m_ignoreCase ? 3 : 1);
                return true;
            }
            endRun();
            item(e == u'b' || e == u'B' ? 0 : 1);
            return e == u'd' || e == u'w' || e == u'b' || e == u'B' || e == u't';
        }
        if (c == u'[') {
            endRun();
            item(1); // a class matches one code point, case closure included
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
            m_frames.emplace_back();
            return true;
        }
        if (c == u')') {
            endRun();
            ++m_at;
            if (--m_depth < 0)
                return false;
            const Frame group = m_frames.back();
            m_frames.pop_back();
            item(std::max(group.best, group.sum));
            return true;
        }
        if (c == u'|') {
            endRun();
            // Runs outside every group are required unless the whole pattern has alternatives.
            if (m_depth == 0)
                m_alternation = true;
            Frame &frame = m_frames.back();
            frame.best = std::max(frame.best, frame.sum);
            frame.sum = frame.last = 0;
            ++m_at;
            return true;
        }
        if (isQuantifier(c)) {
            // The quantifier binds to the last character alone: it leaves the run.
            if (!m_run.isEmpty())
                m_run.chop(1);
            endRun();
            ++m_at;
            qsizetype times = c == u'?' ? 1 : kUnbounded;
            if (c == u'{') {
                const qsizetype close = m_pattern.indexOf(u'}', m_at);
                if (close < 0)
                    return false;
                const QStringView bounds = m_pattern.sliced(m_at, close - m_at);
                const QStringView upper = bounds.sliced(bounds.lastIndexOf(u',') + 1);
                bool number = false;
                const qsizetype count = upper.toLongLong(&number);
                times = number && count < 100000 ? count : kUnbounded;
                m_at = close + 1;
            }
            repeatLast(times);
            return true;
        }
        if (c == u'.') {
            endRun();
            ++m_at;
            item(1);
            return !m_dotAll;
        }
        if (c == u'^' || c == u'$') {
            endRun();
            ++m_at;
            item(0);
            return true;
        }
        if (c == u'\n' || c == u'\r' || c.isSurrogate())
            return false;
        ++m_at;
        plainCharacter(c);
        // One pattern character matches up to three when case is ignored ("ﬃ" against "ffi").
        item(m_ignoreCase ? 3 : 1);
        return true;
    }

    // Lengths in code points of the group being read: the alternative so far, the longest
    // alternative before it, and the last item (what a quantifier repeats).
    struct Frame
    {
        qsizetype sum = 0;
        qsizetype best = 0;
        qsizetype last = 0;
    };

    void item(qsizetype length)
    {
        Frame &frame = m_frames.back();
        frame.sum = std::min(frame.sum + length, kUnbounded);
        frame.last = length;
    }

    void repeatLast(qsizetype times)
    {
        Frame &frame = m_frames.back();
        const qsizetype repeated = frame.last == 0                    ? 0
                                   : times >= kUnbounded / frame.last ? kUnbounded
                                                                      : frame.last * times;
        frame.sum = std::min(frame.sum - frame.last + repeated, kUnbounded);
        frame.last = repeated;
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
    std::vector<Frame> m_frames = std::vector<Frame>(1);
};

} // namespace

RegexShape regexShapeOf(const SearchOptions &options)
{
    if (options.mode != SearchMode::regex || options.query.isEmpty())
        return {};
    return ShapeReader(options.query, !options.matchCase, options.dotMatchesNewline).read();
}

} // namespace mirtex
