// What one search command looks for, built fresh from the find panel at the moment it runs.
#pragma once

#include "core/search/SearchMode.h"

#include <QString>

namespace mirtex {

struct SearchOptions
{
    QString query;       // as typed
    QString replacement; // as typed
    bool matchCase = false;
    bool wholeWord = false;
    SearchMode mode = SearchMode::normal;
    bool dotMatchesNewline = false; // "." also matches LF; regex mode only

    friend bool operator==(const SearchOptions &, const SearchOptions &) = default;
};

} // namespace mirtex
