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

} // namespace mirtex
