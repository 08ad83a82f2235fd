// The in-document search commands as pure functions of (text, selection, options): each returns
// what to select or change and the status line; the editor carries it out. Any thread.
#pragma once

#include "core/search/SearchError.h"
#include "core/search/SearchOptions.h"
#include "core/search/SearchRegex.h"
#include "core/search/SearchStatus.h"
#include "core/text/EditBatch.h"
#include "core/text/TextRange.h"

#include <QStringView>

#include <optional>

namespace mirtex {

// What a command searches: the whole text, or the selection when "Solo nella selezione" is on and
// the selection is at least one unit long.
TextRange searchScope(qsizetype textLength, TextRange selection, bool inSelection);

// The text that replaces the match `matcher` returned last: the replacement as typed (normal),
// unescaped (extended) or expanded as an ICU template with the match's groups (regex).
std::expected<QString, SearchError> replacementFor(SearchMatcher &matcher,
                                                   const SearchOptions &options);

struct FindResult
{
    std::optional<TextRange> found; // select and scroll to it
    SearchStatus status;
    bool beep = false; // the query or the pattern failed
};

// From the end of the selection on (an empty match at an empty selection's caret is stepped over
// by one unit), wrapping to the start when `wrapAround`.
FindResult findNext(QStringView text,
                    TextRange selection,
                    const SearchOptions &options,
                    bool wrapAround,
                    int timeLimitSteps = kSearchTimeLimitSteps);

// The last match before the selection start (an empty one right at it counts), wrapping to the
// last match of the text when `wrapAround`.
FindResult findPrevious(QStringView text,
                        TextRange selection,
                        const SearchOptions &options,
                        bool wrapAround,
                        int timeLimitSteps = kSearchTimeLimitSteps);

struct ReplaceOneResult
{
    EditBatch batch; // "Sostituisci", the caret after the new text; empty: nothing replaced
    FindResult next; // then found in the text after the batch (as is, when the batch is empty)
};

// Replaces the selection when the expression matches exactly it (the selection searched as a text
// of its own), then finds the next match; otherwise only finds the next match. An empty selection
// outside regex mode only finds.
ReplaceOneResult replaceOne(QStringView text,
                            TextRange selection,
                            bool readOnly,
                            const SearchOptions &options,
                            bool wrapAround,
                            int timeLimitSteps = kSearchTimeLimitSteps);

struct CountResult
{
    qsizetype count = 0;
    SearchStatus status;
    bool beep = false;
};

// The matches in the scope, empty ones included.
CountResult countMatches(QStringView text,
                         TextRange selection,
                         bool inSelection,
                         const SearchOptions &options,
                         int timeLimitSteps = kSearchTimeLimitSteps);

struct ReplaceAllResult
{
    EditBatch batch; // empty: leave the text alone
    qsizetype count = 0;
    SearchStatus status;
    bool beep = false;
};

// Every match in the scope replaced in one span, as one edit named "Sostituisci tutto"; the caret
// goes to the old selection start. Any failure (read-only, pattern, a missing group, the time
// limit) leaves the batch empty: the text is never half replaced.
ReplaceAllResult replaceAll(QStringView text,
                            TextRange selection,
                            bool inSelection,
                            bool readOnly,
                            const SearchOptions &options,
                            int timeLimitSteps = kSearchTimeLimitSteps);

} // namespace mirtex
