#include "core/search/SearchStatus.h"

#include "support/QStringPrinter.h"

#include <gtest/gtest.h>

using mirtex::SearchStatus;
using namespace Qt::StringLiterals;

namespace {

TEST(SearchStatus, TextsAndErrorFlags)
{
    const QString q = u"x"_s;
    const SearchStatus none{u"Nessun risultato per \u201Cx\u201D."_s, true};
    const std::vector<std::pair<SearchStatus, SearchStatus>> cases = {
        {SearchStatus::noResult(q), none},
        {SearchStatus::counted(0), {u"0 occorrenze."_s, true}},
        {SearchStatus::counted(1), {u"1 occorrenza."_s, false}},
        {SearchStatus::counted(12), {u"12 occorrenze."_s, false}},
        {SearchStatus::replaced(0, q), none},
        {SearchStatus::replaced(1, q), {u"1 sostituzione."_s, false}},
        {SearchStatus::replaced(3, q), {u"3 sostituzioni."_s, false}},
        {SearchStatus::marked(0, q), none},
        {SearchStatus::marked(1, q), {u"1 occorrenze contrassegnate."_s, false}},
        {SearchStatus::marksCleared(), {u"Contrassegni cancellati."_s, false}},
        {SearchStatus::foundAll(0, 0, q), none},
        {SearchStatus::foundAll(1, 1, q), {u"1 risultato in 1 file."_s, false}},
        {SearchStatus::foundAll(5, 1, q), {u"5 risultati in 1 file."_s, false}},
        {SearchStatus::foundAll(5, 2, q), {u"5 risultati in 2 file."_s, false}},
        {SearchStatus::replacedInDocuments(0, 0, q), none},
        {SearchStatus::replacedInDocuments(4, 1, q), {u"4 sostituzioni in 1 documento."_s, false}},
        {SearchStatus::replacedInDocuments(4, 3, q), {u"4 sostituzioni in 3 documenti."_s, false}},
        {SearchStatus::wrappedToStart(), {u"Ricerca ripartita dall'inizio."_s, false}},
        {SearchStatus::wrappedToEnd(), {u"Ricerca ripartita dalla fine."_s, false}},
    };
    for (const auto &[actual, expected] : cases) {
        EXPECT_EQ(actual.text, expected.text);
        EXPECT_EQ(actual.isError, expected.isError) << actual.text.toStdString();
    }
}

} // namespace
