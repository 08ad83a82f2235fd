// What the find-all commands and find in files hand to the results panel: plain values.
#pragma once

#include "core/text/TextRange.h"

#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace mirtex {

struct SearchHit
{
    qsizetype line = 0;    // from 0; shown as "Riga " + (line + 1)
    QString lineText;      // the whole line, without its line break
    TextRange rangeInLine; // the match within lineText, clipped to the line's end

    friend bool operator==(const SearchHit &, const SearchHit &) = default;
};

struct SearchFileResult
{
    QString title;                   // the file's name, or the tab's title when unsaved
    std::optional<QString> path;     // the file on disk
    std::optional<QUuid> documentID; // the open document the hits belong to
    std::vector<SearchHit> hits;     // in text order

    friend bool operator==(const SearchFileResult &, const SearchFileResult &) = default;
};

struct SearchResultSet
{
    QString query;                       // as typed
    QString scope;                       // "documento corrente", "documenti aperti", or the folder
    std::vector<SearchFileResult> files; // with at least one hit, in the order searched

    friend bool operator==(const SearchResultSet &, const SearchResultSet &) = default;
};

} // namespace mirtex
