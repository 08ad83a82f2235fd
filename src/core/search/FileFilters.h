// Which file names find in files looks at: inclusion and "!" exclusion patterns, matched against
// the name alone (never the folder path) as shell wildcards, ignoring case.
#pragma once

#include <QByteArray>
#include <QStringView>

#include <vector>

namespace mirtex {

struct FileFilters
{
    std::vector<QByteArray> include; // UTF-8 wildcard patterns; none: every name
    std::vector<QByteArray> exclude;

    // Whether a file named `name` (UTF-8, or the file system's bytes) is searched: it matches an
    // inclusion pattern (or there is none) and no exclusion pattern.
    bool accepts(const char *name) const;

    friend bool operator==(const FileFilters &, const FileFilters &) = default;
};

// Splits at spaces, commas and semicolons; "!" starts an exclusion; "*" and "*.*" mean every file
// and are dropped.
FileFilters parseFileFilters(QStringView text);

} // namespace mirtex
