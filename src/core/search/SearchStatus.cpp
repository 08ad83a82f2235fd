#include "core/search/SearchStatus.h"

#include <QCoreApplication>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Search", text);
}

} // namespace

SearchStatus SearchStatus::noResult(const QString &query)
{
    return {tr("Nessun risultato per ") + u'\u201C' + query + u'\u201D' + u'.', true};
}

SearchStatus SearchStatus::readOnly()
{
    return {tr("Il documento è in sola lettura."), true};
}

SearchStatus SearchStatus::wrappedToStart()
{
    return {tr("Ricerca ripartita dall'inizio."), false};
}

SearchStatus SearchStatus::wrappedToEnd()
{
    return {tr("Ricerca ripartita dalla fine."), false};
}

SearchStatus SearchStatus::counted(qsizetype count)
{
    if (count == 1)
        return {tr("1 occorrenza."), false};
    return {QString::number(count) + tr(" occorrenze."), count == 0};
}

SearchStatus SearchStatus::replaced(qsizetype count, const QString &query)
{
    if (count == 0)
        return noResult(query);
    if (count == 1)
        return {tr("1 sostituzione."), false};
    return {QString::number(count) + tr(" sostituzioni."), false};
}

SearchStatus SearchStatus::marked(qsizetype count, const QString &query)
{
    if (count == 0)
        return noResult(query);
    return {QString::number(count) + tr(" occorrenze contrassegnate."), false};
}

SearchStatus SearchStatus::marksCleared()
{
    return {tr("Contrassegni cancellati."), false};
}

SearchStatus SearchStatus::foundAll(qsizetype hits, qsizetype files, const QString &query)
{
    if (hits == 0)
        return noResult(query);
    if (hits == 1 && files == 1)
        return {tr("1 risultato in 1 file."), false};
    return {QString::number(hits) + tr(" risultati in ") + QString::number(files) + tr(" file."),
            false};
}

SearchStatus
SearchStatus::replacedInDocuments(qsizetype count, qsizetype documents, const QString &query)
{
    if (count == 0)
        return noResult(query);
    if (documents == 1)
        return {QString::number(count) + tr(" sostituzioni in 1 documento."), false};
    return {QString::number(count) + tr(" sostituzioni in ") + QString::number(documents)
                + tr(" documenti."),
            false};
}

} // namespace mirtex
