// How many line breaks of each kind a file holds, to tell the user before saving turns a file of
// mixed endings into one of a single ending.
#pragma once

#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QByteArrayView>
#include <QString>

namespace mirtex {

struct LineEndingCount
{
    qsizetype crlf = 0;
    qsizetype lf = 0; // alone
    qsizetype cr = 0; // alone

    // More than one kind of break.
    bool isMixed() const { return (crlf > 0) + (lf > 0) + (cr > 0) > 1; }

    // "CRLF 120, LF 3": the kinds present, most frequent first.
    QString summary() const;

    friend bool operator==(const LineEndingCount &, const LineEndingCount &) = default;
};

// Counts the breaks of `bytes` written in `encoding` (UTF-16 and UTF-32 by code unit, every other
// set of the program by byte: none of them uses the bytes of CR or LF inside a character). A
// file without CR is all LF, found with one scan for CR. Pure; any thread.
LineEndingCount countLineEndings(QByteArrayView bytes, TextEncoding encoding);

} // namespace mirtex
