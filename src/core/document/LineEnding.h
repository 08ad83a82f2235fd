// The three line-break conventions a file can use, and their stored identifiers.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

// The enumerator names are the identifiers stored in preferences and sessions.
enum class LineEnding {
    lf,
    crlf,
    cr,
};

// "lf", "crlf" or "cr".
QString toString(LineEnding ending);

// Exact identifiers only; anything else gives nothing.
std::optional<LineEnding> lineEndingFromString(QStringView id);

// The preference's reading of an identifier: "crlf" and "cr" name themselves, anything else
// (including an unknown or empty value) means LF.
LineEnding lineEndingFromPreference(QStringView id);

// The break written to files: "\n", "\r\n" or "\r".
QString lineBreak(LineEnding ending);

} // namespace mirtex
