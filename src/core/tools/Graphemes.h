// User-perceived characters (extended grapheme clusters) of short texts such as lines, with a
// fast path for texts whose every unit is its own character. One object per thread.
#pragma once

#include <QStringView>

#include <memory>

struct UBreakIterator;

namespace mirtex {

class Graphemes
{
public:
    Graphemes();
    ~Graphemes();
    Graphemes(const Graphemes &) = delete;
    Graphemes &operator=(const Graphemes &) = delete;

    // Whether every unit of `text` is a character of its own: no unit from U+0300 on, where
    // combining marks, surrogates and joiners begin (a line holds no LF, so no CR LF pair).
    static bool isOneUnitEach(QStringView text);

    qsizetype count(QStringView text);

    // Calls `visit(start, end)` for each character, offsets in units of `text`.
    template<typename Visit>
    void forEach(QStringView text, Visit &&visit)
    {
        if (isOneUnitEach(text)) {
            for (qsizetype i = 0; i < text.size(); ++i)
                visit(i, i + 1);
            return;
        }
        qsizetype start = 0;
        setText(text);
        for (qsizetype end = next(); end >= 0; end = next()) {
            visit(start, end);
            start = end;
        }
    }

private:
    void setText(QStringView text);
    qsizetype next(); // -1 at the end

    UBreakIterator *m_iterator = nullptr;
    qsizetype m_size = 0;
    qsizetype m_at = 0;
};

} // namespace mirtex
