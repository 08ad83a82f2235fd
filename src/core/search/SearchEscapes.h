// The texts a search derives from what the user typed: extended escapes, replacement templates
// for the regex library, and literal patterns. Pure functions of their argument.
#pragma once

#include <QString>
#include <QStringView>

namespace mirtex {

// Reads "\n", "\r" (and "\r\n") as LF, "\t", "\0", "\\", "\xHH" and "\uHHHH"; any other
// backslash sequence, a malformed hex escape and a final backslash are kept as typed. The text is
// read by user-perceived characters, so a backslash joined to a combining mark is no escape.
QString unescapeExtended(QStringView text);

// Turns a regex-mode replacement into an ICU replacement template: "\1" becomes "$1", "\n", "\r"
// and "\t" their characters, "\\" and "\$" stay escaped, any other "\c" becomes "c". Text outside
// escapes is copied, so "$2" typed directly is a group reference too.
QString regexTemplate(QStringView replacement);

// An ICU pattern matching exactly `text`, every character with a meaning in a pattern escaped.
QString literalPattern(QStringView text);

} // namespace mirtex
