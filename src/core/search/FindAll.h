// Find all and replace in every open document, as pure functions of the texts and the options:
// the hits become a SearchResultSet for the results panel, the replacements one EditBatch per
// document. Any thread.
#pragma once

#include "core/search/SearchRegex.h"
#include "core/search/SearchResults.h"
#include "core/search/SearchStatus.h"
#include "core/text/EditBatch.h"

#include <QStringView>

#include <expected>
#include <span>
#include <vector>

namespace mirtex {

// Find all keeps at most this many hits per document and stops enumerating there.
inline constexpr qsizetype kFindAllHitLimit = 20000;

// The hits of `regex` in `scope` of `text` (the scope searched as a text of its own), empty
// matches skipped, at most `limit`. Each hit carries its line (from 0) in the whole text, that
// line without its LF, and the match relative to the line start, clipped to the line's end.
std::expected<std::vector<SearchHit>, SearchError> findHits(const SearchRegex &regex,
                                                            QStringView text,
                                                            TextRange scope,
                                                            qsizetype limit = kFindAllHitLimit,
                                                            int timeLimitSteps
                                                            = kSearchTimeLimitSteps);

// An open document as find all and replace in open documents see it.
struct SearchedDocument
{
    QString title;                   // the tab's title
    std::optional<QString> path;     // the file on disk
    std::optional<QUuid> documentID; // the tab's document
    QStringView text;                // must outlive the call
    TextRange selection;             // the main selection (scope, caret after a replacement)
    bool readOnly = false;
};

struct FindAllResult
{
    SearchResultSet set; // no files: nothing found (or a failure)
    SearchStatus status;
    bool beep = false; // the query or the pattern failed
};

// The scope label of each find-all command, as shown in the results panel.
QString currentDocumentScope(); // "documento corrente"
QString openDocumentsScope();   // "documenti aperti"

// Find all in one document: the selection when `inSelection` and it is not empty, else the text.
FindAllResult findAllInDocument(const SearchedDocument &document,
                                bool inSelection,
                                const SearchOptions &options,
                                int timeLimitSteps = kSearchTimeLimitSteps);

// Find all in every document, in the order given (tab order), each over its whole text; one file
// result per document with hits.
FindAllResult findAllInDocuments(std::span<const SearchedDocument> documents,
                                 const SearchOptions &options,
                                 int timeLimitSteps = kSearchTimeLimitSteps);

struct DocumentsReplaceResult
{
    // One per document given, in order; empty where nothing changes (read-only, no match).
    std::vector<EditBatch> batches;
    qsizetype replacements = 0;
    qsizetype documentsChanged = 0;
    SearchStatus status;
    bool beep = false;
};

// Replace all over the whole text of every document that is not read-only (read-only ones are
// skipped without a word), each batch its own "Sostituisci tutto" step with the caret at the old
// selection start. Any failure leaves every batch empty: no document is half replaced.
DocumentsReplaceResult replaceInDocuments(std::span<const SearchedDocument> documents,
                                          const SearchOptions &options,
                                          int timeLimitSteps = kSearchTimeLimitSteps);

} // namespace mirtex
