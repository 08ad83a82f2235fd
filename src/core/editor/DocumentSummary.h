// The counts shown by the document summary, and its text. Characters are user-perceived
// characters (grapheme clusters), words are runs of letters, digits and connectors.
#pragma once

#include "core/text/Selections.h"

#include <QString>
#include <QStringView>

namespace mirtex {

struct TextCounts
{
    qsizetype characters = 0; // line breaks included
    qsizetype charactersWithoutLineBreaks = 0;
    qsizetype words = 0;
    qsizetype lines = 0; // an empty text has one line
    qsizetype utf8Bytes = 0;

    friend bool operator==(const TextCounts &, const TextCounts &) = default;
};

TextCounts countText(QStringView text);

// The summary's lines ("Lunghezza del documento: …", "Caratteri (senza a capo): …", …), with the
// counts of the selected text when some is selected (every selection together).
QString summaryText(QStringView text, const Selections &selections);

// The summary's title for a document name: "Riepilogo di “name”".
QString summaryTitle(const QString &documentName);

} // namespace mirtex
