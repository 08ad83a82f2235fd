// Where the navigation commands go: a line number typed by the user, the next or previous
// bookmark, the bracket matching the one at the caret. Pure; the editor moves the caret.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace mirtex {

// The line (from 0) for an answer to "go to line" in a text of `lineCount` lines. The answer is
// trimmed and must be a whole decimal number of lines counted from 1, else nothing; numbers below
// 1 go to the first line and numbers past the end to the last.
std::optional<qsizetype> lineForAnswer(const QString &answer, qsizetype lineCount);

// The first bookmarked line after `currentLine` (or before it, backwards), wrapping round to the
// first (last) one; nothing without bookmarks. `bookmarked` is ascending.
std::optional<qsizetype>
nextBookmarkedLine(const std::vector<qsizetype> &bookmarked, qsizetype currentLine, bool forward);

// Where the caret goes to reach the bracket matching the one just after it, or else just before
// it: just after the match when it lies further on, just before it otherwise (so that repeating
// jumps back and forth). Nothing when neither bracket has a match.
std::optional<qsizetype> matchingBraceCaret(QStringView text, qsizetype caret);

} // namespace mirtex
