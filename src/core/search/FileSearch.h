// Find and replace in the files of a folder: the walk, the reading and decoding through the
// codec, the matching and, for a replace, the safe writing of every changed file. Runs on the
// calling thread with a small pool that reads and matches files on every core; results come back
// in the order of the walk, in batches, through a callback on the calling thread. Holds no more
// than one file per worker plus the results.
#pragma once

#include "core/search/FileFilters.h"
#include "core/search/SearchError.h"
#include "core/search/SearchRegex.h"
#include "core/search/SearchResults.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mirtex {

// Files of this size or more are skipped (and not counted as read).
inline constexpr qint64 kFileSearchSizeLimit = 50'000'000;
// Hits kept per file, as the find-all commands keep per document.
inline constexpr qsizetype kFileSearchHitLimit = 20'000;

// The text of a document open in a tab, searched instead of its file.
struct OpenDocumentText
{
    QUuid id;
    QString text; // LF line breaks, as shown
    bool readOnly = false;
};

struct FileSearchRequest
{
    QString folder;      // an existing folder
    SearchRegex regex;   // compiled from the options to search with
    FileFilters filters; // on names
    bool subfolders = true;
    bool hiddenFolders = false;    // also names starting with "."
    bool respectGitignore = false; // skip what the .gitignore files exclude
    bool replace = false;
    QHash<QString, OpenDocumentText> openDocuments; // by canonical path
    int threads = 0;                                // 0: one per core
    std::chrono::milliseconds batchInterval{50};
};

// What has come in since the last batch.
struct FileSearchBatch
{
    std::vector<SearchFileResult> files; // files with hits, in walk order (searches only)
    qsizetype filesRead = 0;             // so far
};

struct FileSearchOutcome
{
    qsizetype filesRead = 0;
    qsizetype count = 0;                   // hits, or replacements made
    qsizetype filesWithMatches = 0;        // files (and open documents) with at least one
    std::vector<QUuid> documentsToReplace; // open documents to change through their editors
    QStringList notWritten;                // names of files that could not be written
    std::optional<SearchError> error;      // the pattern failed on a file: the run stopped
    bool stopped = false;
};

// The literal every match must contain, as ASCII bytes, when the options make one certain (a
// case-sensitive literal, or the plain start of a case-sensitive expression) and it holds no line
// break: a file whose ASCII-compatible bytes lack it has no match.
std::optional<std::string> requiredAsciiLiteral(const SearchOptions &options);

// Runs the request; `stop` (checked between files) ends it early, keeping what was found and
// writing nothing more. `onBatch` is called on this thread about every batchInterval while
// something new came in, and once at the end.
FileSearchOutcome runFileSearch(const FileSearchRequest &request,
                                const std::atomic_bool &stop,
                                const std::function<void(FileSearchBatch)> &onBatch);

// The hits of `regex` in `text` as find all makes them: empty matches skipped, the line and its
// text, the range clipped to the line, at most `limit`.
std::expected<std::vector<SearchHit>, SearchError>
searchHits(const SearchRegex &regex, QStringView text, qsizetype limit = kFileSearchHitLimit);

} // namespace mirtex
