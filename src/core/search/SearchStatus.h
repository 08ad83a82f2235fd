// The one status line a search command leaves in the find panel, with its error flag.
#pragma once

#include "core/search/SearchError.h"

#include <QString>

namespace mirtex {

struct SearchStatus
{
    QString text;         // empty: nothing to say
    bool isError = false; // failures and "nothing found"

    // "Nessun risultato per “query”."
    static SearchStatus noResult(const QString &query);

    static SearchStatus failure(const SearchError &error) { return {error.description(), true}; }

    static SearchStatus readOnly();       // "Il documento è in sola lettura."
    static SearchStatus wrappedToStart(); // "Ricerca ripartita dall'inizio."
    static SearchStatus wrappedToEnd();   // "Ricerca ripartita dalla fine."
    // "1 occorrenza." / "N occorrenze.", an error when none.
    static SearchStatus counted(qsizetype count);
    // "1 sostituzione." / "N sostituzioni.", the no-result status when none.
    static SearchStatus replaced(qsizetype count, const QString &query);
    // "N occorrenze contrassegnate.", the no-result status when none.
    static SearchStatus marked(qsizetype count, const QString &query);
    static SearchStatus marksCleared(); // "Contrassegni cancellati."
    // "1 risultato in 1 file." / "N risultati in M file.", the no-result status when none.
    static SearchStatus foundAll(qsizetype hits, qsizetype files, const QString &query);
    // "N sostituzioni in 1 documento." / "… in M documenti.", the no-result status when none.
    static SearchStatus
    replacedInDocuments(qsizetype count, qsizetype documents, const QString &query);

    friend bool operator==(const SearchStatus &, const SearchStatus &) = default;
};

} // namespace mirtex
