// The search commands over the editor's own UTF-8 text, with the same matches (and the same UTF-16
// offsets) as over its UTF-16 copy, so that counting or replacing in a large text needs no
// conversion of the whole text. Any thread; the text must be valid UTF-8 and outlive the search.
#pragma once

#include "core/search/LargeBlockAllocator.h"
#include "core/search/SearchEngine.h"
#include "core/search/SearchRegex.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace mirtex {

struct Utf8Match
{
    qsizetype byteStart = 0;
    qsizetype byteEnd = 0;
    TextRange range; // in UTF-16 units of the whole text (zero when not asked for)
};

// Enumerates the matches of one compiled search in a UTF-8 text, in order, by the cheapest route
// that gives the same matches: a literal is found without the regex engine; a pattern that stays
// within a line and must contain a known piece of text runs the regex engine only on the lines
// holding that piece; any other pattern runs over the whole text converted to UTF-16.
class Utf8Search
{
public:
    enum class Route {
        literal,
        lines,
        wholeText
    };

    // Without `utf16Offsets` the matches carry bytes only (counting needs no more).
    Utf8Search(const SearchRegex &regex,
               std::string_view utf8,
               bool utf16Offsets = true,
               int timeLimitSteps = kSearchTimeLimitSteps);
    ~Utf8Search();
    Utf8Search(const Utf8Search &) = delete;
    Utf8Search &operator=(const Utf8Search &) = delete;

    Route route() const;

    std::expected<std::optional<Utf8Match>, SearchError> next();

    // Matches starting before `bytePosition` are not wanted (counting lines: the rest of a line);
    // the enumeration may jump there when that cannot change the matches after it.
    void skipTo(qsizetype bytePosition);

    // The text replacing the match next() returned last, as replacementFor gives it.
    std::expected<QString, SearchError> replacement();

    struct State;

private:
    std::unique_ptr<State> m_state;
};

// The matches in the whole text, empty ones included, as countMatches counts them.
CountResult countMatchesUtf8(std::string_view utf8,
                             const SearchOptions &options,
                             int timeLimitSteps = kSearchTimeLimitSteps);

struct Utf8ReplaceAllResult
{
    qsizetype count = 0;
    SearchStatus status;
    bool beep = false;
    // The one span to replace (nothing to do when count is 0 or on failure), in bytes and in
    // UTF-16 units, and its new text in UTF-8 and its length in UTF-16 units.
    qsizetype byteStart = 0;
    qsizetype byteLength = 0;
    TextRange span;
    LargeUtf8 replacement;
    qsizetype replacementUtf16Length = 0;
};

// replaceAll over the whole UTF-8 text: the same count, status and span, the span's new text
// built in one pass. The caret afterwards is the caller's, as for replaceAll.
Utf8ReplaceAllResult replaceAllUtf8(std::string_view utf8,
                                    bool readOnly,
                                    const SearchOptions &options,
                                    int timeLimitSteps = kSearchTimeLimitSteps);

} // namespace mirtex
