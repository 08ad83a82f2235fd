// Text with carets and selections written as it reads, for tables of "before -> after" cases:
//   "let |x = 1"      a caret
//   "let [x|] = 1"    a selection from its anchor "[" to the caret "|" (forwards)
//   "let [|x] = 1"    the same selection made backwards (the caret at its start)
//   "[a|] [b|]"       several selections; the first one in the text is the main one, unless
//   "[a|] [b^]"       one caret is written "^" instead of "|": that selection is the main one.
//   "[ab]"            a selection without a caret mark has its caret at its end.
// A backslash makes the next character plain text ("a\|b" is the text "a|b"). Malformed markup
// (an unclosed "[", a caret inside a selection) throws std::invalid_argument, which fails the test.
#pragma once

#include "core/text/Selections.h"

#include <QString>

#include <ostream>

namespace mirtex::test {

struct MarkedText
{
    QString text;
    Selections selections;

    friend bool operator==(const MarkedText &, const MarkedText &) = default;
};

MarkedText parseMarkup(const QString &markup);

// The same markup back; selections are written in text order and must not overlap.
QString toMarkup(const QString &text, const Selections &selections);

inline QString toMarkup(const MarkedText &marked)
{
    return toMarkup(marked.text, marked.selections);
}

inline void PrintTo(const MarkedText &marked, std::ostream *out)
{
    *out << '"' << toMarkup(marked).toStdString() << '"';
}

} // namespace mirtex::test
