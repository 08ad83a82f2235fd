// ICU works on UTF-16 like the rest of the program, so the text is aliased, never copied.
// ICU's own time limit counts the work of a whole find(), so a plain pattern that finds nothing in
// a large text would run out of time as surely as a catastrophic one. The budget here is per start
// position instead: the find-progress callback, called as the search moves to a new start, resets
// it, and the match callback, called once per ICU time step, spends it.
#include "core/search/SearchRegex.h"

#include "core/search/LiteralMatcher.h"
#include "core/search/SearchEscapes.h"
#include "core/search/SearchStop.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>
#include <unicode/utypes.h>

#include <algorithm>

namespace mirtex {

struct SearchRegex::Compiled
{
    SearchOptions options;
    QString pattern;
    std::unique_ptr<icu::RegexPattern> regex;
    std::optional<LiteralSearch> literal; // the query found without the regex engine
};

namespace {

icu::UnicodeString alias(QStringView text)
{
    // Read-only alias: ICU never writes to it and the caller keeps the text alive.
    return icu::UnicodeString(
        false, reinterpret_cast<const char16_t *>(text.utf16()), int32_t(text.size()));
}

QString fromIcu(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

QString errorName(UErrorCode status)
{
    return QString::fromLatin1(u_errorName(status));
}

SearchError matchFailure(UErrorCode status)
{
    if (status == U_REGEX_STOPPED_BY_CALLER || status == U_REGEX_TIME_OUT
        || status == U_REGEX_STACK_OVERFLOW)
        return {SearchError::Kind::tooComplex, {}, errorName(status)};
    return {SearchError::Kind::invalid, {}, errorName(status)};
}

} // namespace

const SearchOptions &SearchRegex::options() const
{
    return m_compiled->options;
}

const QString &SearchRegex::pattern() const
{
    return m_compiled->pattern;
}

const LiteralSearch *SearchRegex::literal() const
{
    return m_compiled->literal ? &*m_compiled->literal : nullptr;
}

SearchRegex SearchRegex::regexEngineOnly() const
{
    SearchRegex copy;
    copy.m_compiled = std::make_shared<const Compiled>(
        Compiled{m_compiled->options,
                 m_compiled->pattern,
                 std::unique_ptr<icu::RegexPattern>(m_compiled->regex->clone()),
                 std::nullopt});
    return copy;
}

std::expected<SearchRegex, SearchError> makeRegex(const SearchOptions &options)
{
    if (options.query.isEmpty())
        return std::unexpected(SearchError::empty());
    QString pattern;
    switch (options.mode) {
    case SearchMode::normal:
        pattern = literalPattern(options.query);
        break;
    case SearchMode::extended:
        pattern = literalPattern(unescapeExtended(options.query));
        break;
    case SearchMode::regex:
        pattern = options.query;
        break;
    }
    if (options.wholeWord)
        pattern = u"(?<![\\p{L}\\p{N}_])(?:" + pattern + u")(?![\\p{L}\\p{N}_])";

    uint32_t flags = UREGEX_MULTILINE;
    if (!options.matchCase)
        flags |= UREGEX_CASE_INSENSITIVE;
    if (options.mode == SearchMode::regex && options.dotMatchesNewline)
        flags |= UREGEX_DOTALL;

    UParseError parseError{};
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexPattern> regex(
        icu::RegexPattern::compile(alias(pattern), flags, parseError, status));
    if (U_FAILURE(status) || !regex) {
        // ICU names the error but gives no text for it; the pattern the user wrote is the query.
        return std::unexpected(SearchError::invalid(options.query, errorName(status)));
    }
    SearchRegex result;
    result.m_compiled = std::make_shared<const SearchRegex::Compiled>(SearchRegex::Compiled{
        options, pattern, std::move(regex), LiteralSearch::forOptions(options)});
    return result;
}

struct SearchMatcher::State
{
    std::shared_ptr<const SearchRegex::Compiled> compiled; // keeps the pattern alive
    icu::UnicodeString input;
    std::unique_ptr<icu::RegexMatcher> matcher;
    qsizetype offset = 0; // of the input in the text
    bool matched = false;
    qsizetype appendPosition = 0; // where ICU's appendReplacement copies from
    int stepLimit = kSearchTimeLimitSteps;
    int stepsAtStart = 0; // time steps spent since the search moved to a new start
    int64_t lastStart = -1;
    const std::atomic<bool> *stop = SearchStopScope::current(); // set from another thread

    bool stopped() const { return stop && stop->load(std::memory_order_relaxed); }

    std::unique_ptr<LiteralMatcher> literal; // set: the regex engine is not used for matching
};

namespace {

UBool U_CALLCONV movedOn(const void *context, int64_t matchIndex)
{
    auto *state = static_cast<SearchMatcher::State *>(const_cast<void *>(context));
    if (state->stopped())
        return false;
    if (matchIndex != state->lastStart) {
        state->lastStart = matchIndex;
        state->stepsAtStart = 0;
    }
    return true;
}

UBool U_CALLCONV spentStep(const void *context, int32_t)
{
    auto *state = static_cast<SearchMatcher::State *>(const_cast<void *>(context));
    return ++state->stepsAtStart < state->stepLimit;
}

} // namespace

SearchMatcher::SearchMatcher(const SearchRegex &regex, QStringView text, int timeLimitSteps)
    : m_state(std::make_unique<State>())
    , m_text(text)
{
    m_state->compiled = regex.m_compiled;
    if (const auto &literal = m_state->compiled->literal) {
        m_state->literal
            = std::make_unique<LiteralMatcher>(*literal, *m_state->compiled->regex, text);
        return;
    }
    m_state->input = alias(text);
    UErrorCode status = U_ZERO_ERROR;
    m_state->matcher.reset(m_state->compiled->regex->matcher(m_state->input, status));
    m_state->stepLimit = std::max(timeLimitSteps, 1);
    m_state->matcher->setMatchCallback(spentStep, m_state.get(), status);
    m_state->matcher->setFindProgressCallback(movedOn, m_state.get(), status);
}

SearchMatcher::~SearchMatcher() = default;

void SearchMatcher::setRange(TextRange range, bool rangeIsText)
{
    if (m_state->literal)
        return m_state->literal->setRange(range, rangeIsText);
    const qsizetype start = std::clamp<qsizetype>(range.location, 0, m_text.size());
    const qsizetype end = std::clamp<qsizetype>(range.end(), start, m_text.size());
    State &state = *m_state;
    icu::RegexMatcher &matcher = *state.matcher;
    UErrorCode status = U_ZERO_ERROR;
    if (rangeIsText) {
        // ICU's look-behind sees past opaque region bounds, so the range becomes the whole input.
        state.input = alias(m_text.sliced(start, end - start));
        matcher.reset(state.input);
        state.offset = start;
    } else {
        if (state.offset != 0 || state.input.length() != m_text.size()) {
            state.input = alias(m_text);
            matcher.reset(state.input);
            state.offset = 0;
        }
        matcher.region(start, end, status); // also resets the append position
    }
    matcher.useTransparentBounds(!rangeIsText);
    matcher.useAnchoringBounds(rangeIsText);
    state.matched = false;
    state.appendPosition = 0;
}

void SearchMatcher::setRange(TextRange range, TextRange context)
{
    if (m_state->literal)
        return m_state->literal->setRange(range, context);
    const qsizetype contextStart = std::clamp<qsizetype>(context.location, 0, m_text.size());
    const qsizetype contextEnd = std::clamp<qsizetype>(context.end(), contextStart, m_text.size());
    const qsizetype start = std::clamp<qsizetype>(range.location, contextStart, contextEnd);
    const qsizetype end = std::clamp<qsizetype>(range.end(), start, contextEnd);
    State &state = *m_state;
    icu::RegexMatcher &matcher = *state.matcher;
    UErrorCode status = U_ZERO_ERROR;
    state.input = alias(m_text.sliced(contextStart, contextEnd - contextStart));
    matcher.reset(state.input);
    state.offset = contextStart;
    matcher.region(start - contextStart, end - contextStart, status); // append position: 0
    matcher.useTransparentBounds(true);
    matcher.useAnchoringBounds(false);
    state.matched = false;
    state.appendPosition = 0;
}

std::expected<std::optional<TextRange>, SearchError> SearchMatcher::next()
{
    if (m_state->literal) {
        // A literal scan has no progress callback: the stop flag is read between matches.
        if (m_state->stopped())
            return std::unexpected(SearchError{SearchError::Kind::cancelled, {}, {}});
        return m_state->literal->next();
    }
    icu::RegexMatcher &matcher = *m_state->matcher;
    UErrorCode status = U_ZERO_ERROR;
    m_state->stepsAtStart = 0;
    m_state->matched = !m_state->stopped() && matcher.find(status);
    if (m_state->stopped()) {
        m_state->matched = false;
        return std::unexpected(SearchError{SearchError::Kind::cancelled, {}, {}});
    }
    if (U_FAILURE(status)) {
        m_state->matched = false;
        return std::unexpected(matchFailure(status));
    }
    if (!m_state->matched)
        return std::optional<TextRange>{};
    const qsizetype start = matcher.start(status);
    const qsizetype end = matcher.end(status);
    return std::optional<TextRange>{TextRange{m_state->offset + start, end - start}};
}

std::expected<QString, SearchError> SearchMatcher::expand(QStringView icuTemplate)
{
    if (m_state->literal)
        return m_state->literal->expand(icuTemplate);
    if (!m_state->matched)
        return QString();
    icu::RegexMatcher &matcher = *m_state->matcher;
    UErrorCode status = U_ZERO_ERROR;
    const qsizetype start = matcher.start(status); // in the input, like the append position
    const qsizetype end = matcher.end(status);
    // appendReplacement copies the text since the previous match before the expansion.
    icu::UnicodeString appended;
    matcher.appendReplacement(appended, alias(icuTemplate), status);
    if (U_FAILURE(status)) {
        if (status == U_INDEX_OUTOFBOUNDS_ERROR || status == U_REGEX_INVALID_CAPTURE_GROUP_NAME)
            return std::unexpected(SearchError{
                SearchError::Kind::missingGroup, icuTemplate.toString(), errorName(status)});
        return std::unexpected(matchFailure(status));
    }
    const qsizetype prefix = start - m_state->appendPosition;
    m_state->appendPosition = end;
    return fromIcu(appended).sliced(prefix);
}

} // namespace mirtex
