// Where result sets go: the results panel implements it; find in files streams into it.
#pragma once

#include "core/search/SearchResults.h"

namespace mirtex {

class SearchResultSink
{
public:
    virtual ~SearchResultSink() = default;

    // Adds a finished set (the find-all commands) and shows the panel.
    virtual void addSet(SearchResultSet set) = 0;

    // A set that fills while a run goes on: begun empty (shown at once), then files appended in
    // batches in the order searched. The handle stays valid until the set is removed ("Svuota");
    // appending to a removed set does nothing.
    virtual int beginSet(const QString &query, const QString &scope) = 0;
    virtual void appendFiles(int set, std::vector<SearchFileResult> files) = 0;
};

} // namespace mirtex
