// The one routine that turns search options into a compiled expression, and the matcher that
// enumerates its matches in a text under a time limit.
#pragma once

#include "core/search/SearchError.h"
#include "core/search/SearchOptions.h"
#include "core/text/TextRange.h"

#include <QString>
#include <QStringView>

#include <expected>
#include <memory>
#include <optional>

namespace mirtex {

class LiteralSearch;

// A compiled search: immutable and shared, usable from any thread (each thread with its own
// SearchMatcher).
class SearchRegex
{
public:
    struct Compiled;

    const SearchOptions &options() const;
    // The pattern as handed to ICU (escaped, wrapped for whole words).
    const QString &pattern() const;

    // The literal a matcher finds without the regex engine (normal and extended mode, and regex
    // patterns without a character of pattern meaning), or null.
    const LiteralSearch *literal() const;
    // The same expression with every match left to the regex engine: the reference the literal
    // path is checked against.
    SearchRegex regexEngineOnly() const;

private:
    friend std::expected<SearchRegex, SearchError> makeRegex(const SearchOptions &options);
    friend class SearchMatcher;
    std::shared_ptr<const Compiled> m_compiled;
};

// Empty query: SearchError::empty. A pattern ICU rejects: SearchError::invalid with the query and
// ICU's error name. Multiline always; case-insensitive (full case folding) unless matchCase;
// dot-all only in regex mode with dotMatchesNewline.
std::expected<SearchRegex, SearchError> makeRegex(const SearchOptions &options);

// Work the matcher may do at one start position before the search is abandoned with
// SearchError::tooComplex, in ICU's time steps (each some ten thousand engine operations, about
// half a millisecond on a current core, so the default stops within about a second). Bounds
// catastrophic backtracking, not the size of the text.
inline constexpr int kSearchTimeLimitSteps = 1000;

// Enumerates the matches of one SearchRegex in one text, in order. `text` must outlive the
// matcher; one thread at a time.
class SearchMatcher
{
public:
    SearchMatcher(const SearchRegex &regex,
                  QStringView text,
                  int timeLimitSteps = kSearchTimeLimitSteps);
    ~SearchMatcher();
    SearchMatcher(const SearchMatcher &) = delete;
    SearchMatcher &operator=(const SearchMatcher &) = delete;

    // Restarts enumeration inside `range` (clamped to the text). With `rangeIsText` the range's
    // ends act as the text's ends ("^", "$", look-around and the whole-word guards see nothing
    // outside); otherwise the text around it is seen and only the matches must lie inside.
    void setRange(TextRange range, bool rangeIsText);
    // Restarts enumeration inside `range` with `context` (which holds it) seen as the whole text:
    // "^", "$", look-around and the whole-word guards see the context around the range, and
    // nothing beyond it.
    void setRange(TextRange range, TextRange context);

    // The next match (empty matches included; enumeration always advances), nothing at the end.
    std::expected<std::optional<TextRange>, SearchError> next();

    // The expansion of an ICU replacement template for the match next() returned last.
    // A reference to a group the pattern lacks: SearchError::missingGroup.
    std::expected<QString, SearchError> expand(QStringView icuTemplate);

    QStringView text() const { return m_text; }

    struct State;

private:
    std::unique_ptr<State> m_state;
    QStringView m_text;
};

} // namespace mirtex
