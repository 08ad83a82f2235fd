// The lines route converts to UTF-16 only the lines that hold the required piece, a batch of
// them into one buffer; the regex engine then searches each such line as a text of its own. That is
// the same as searching the whole text because a pattern of that shape neither matches nor looks
// across a line break, and what lies beyond a line's ends (a line break, or the text's own end)
// reads the same to every construct the shape allows.
#include "core/search/Utf8Search.h"

#include "core/search/LiteralSearch.h"
#include "core/search/RegexShape.h"
#include "core/search/SearchEscapes.h"
#include "core/search/Utf8Units.h"

#include <QHash>

#include <cstring>
#include <vector>

namespace mirtex {

namespace {

// Bytes of lines converted at once on the lines route, so that one matcher serves many lines.
constexpr qsizetype kSliceBytes = 64 * 1024;
// Lines up to this many units are searched only around the required text when the pattern's
// length is bounded; longer ones whole (the regex engine's replacement restarts from the line's
// start at each window).
constexpr qsizetype kWindowedLineUnits = 16 * 1024;

// A position in UTF-8 bytes and in the UTF-16 units of a copy of those bytes, moved forward by
// either.
struct Cursor
{
    std::string_view text;
    qsizetype byte = 0;
    qsizetype unit = 0;

    void toByte(qsizetype target)
    {
        unit += utf16LengthOfUtf8(text.data() + byte, text.data() + target);
        byte = target;
    }

    void toUnit(qsizetype target)
    {
        const auto size = qsizetype(text.size());
        while (unit < target && byte < size) {
            const auto lead = uint8_t(text[byte]);
            const int length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
            unit += length == 4 ? 2 : 1;
            byte += length;
        }
    }
};

qsizetype lineStartBefore(std::string_view text, qsizetype at)
{
    const char *begin = text.data();
    const void *found = memrchr(begin, '\n', size_t(at));
    return found ? static_cast<const char *>(found) - begin + 1 : 0;
}

qsizetype lineEndFrom(std::string_view text, qsizetype at)
{
    if (at >= qsizetype(text.size()))
        return qsizetype(text.size());
    const void *found = std::memchr(text.data() + at, '\n', text.size() - size_t(at));
    return found ? static_cast<const char *>(found) - text.data() : qsizetype(text.size());
}

} // namespace

struct Utf8Search::State
{
    SearchRegex regex;
    std::string_view text;
    bool wantUnits = true;
    int timeLimitSteps = kSearchTimeLimitSteps;
    Route route = Route::wholeText;
    qsizetype position = 0; // bytes: where the next match may start
    qsizetype skip = 0;
    Utf16Counter units;
    std::optional<Utf8Match> last;

    // lines and whole text: the regex engine over a UTF-16 copy of the lines, or of the text
    struct Line
    {
        qsizetype byteStart = 0;
        qsizetype byteEnd = 0;
        qsizetype unitStart = 0; // in `copy`
    };

    std::optional<LiteralSearch> required;
    qsizetype maxLength = -1; // code points
    std::vector<Line> batch;
    std::vector<TextRange> windows; // of the line being searched, in `copy`
    size_t windowAt = 0;
    TextRange lineInCopy;
    size_t batchAt = 0;
    QString copy;
    std::unique_ptr<SearchMatcher> matcher;
    Cursor cursor;
    qsizetype lineEnd = -1; // lines: the end of the line being searched, -1 between lines

    // replacements
    std::optional<QString> fixedReplacement;
    QHash<QString, QString> expansions; // literal route in regex mode, by matched text

    State(const SearchRegex &compiled, std::string_view utf8)
        : regex(compiled)
        , text(utf8)
        , units(utf8)
    {}

    Utf8Match finish(qsizetype byteStart, qsizetype byteEnd)
    {
        Utf8Match match{byteStart, byteEnd, {}};
        if (wantUnits) {
            const qsizetype start = units.offsetOf(byteStart);
            match.range = {start, units.offsetOf(byteEnd) - start};
        }
        last = match;
        return match;
    }

    std::expected<std::optional<Utf8Match>, SearchError> nextLiteral()
    {
        const LiteralSearch &literal = *regex.literal();
        const auto size = qsizetype(text.size());
        while (true) {
            const auto found = literal.find(text, position, size);
            if (!found) {
                position = size;
                return std::optional<Utf8Match>{};
            }
            position = found->end;
            if (found->start >= skip)
                return std::optional<Utf8Match>{finish(found->start, found->end)};
        }
    }

    // The next lines holding the required text, converted one after another into `copy`.
    bool fillBatch()
    {
        const auto size = qsizetype(text.size());
        batch.clear();
        batchAt = 0;
        matcher.reset();
        copy.resize(0); // keeps the buffer: batches reuse one block
        copy.reserve(kSliceBytes + 4096);
        qsizetype from = std::max(position, skip);
        qsizetype bytes = 0;
        while (bytes < kSliceBytes && from < size) {
            const auto found = required->find(text, from, size);
            if (!found)
                break;
            const qsizetype start = lineStartBefore(text, found->start);
            const qsizetype end = lineEndFrom(text, found->start);
            batch.push_back({start, end, copy.size()});
            copy += QString::fromUtf8(text.data() + start, end - start);
            bytes += end - start;
            from = end + 1;
        }
        if (batch.empty())
            return false;
        matcher = std::make_unique<SearchMatcher>(regex, copy, timeLimitSteps);
        return true;
    }

    std::expected<std::optional<Utf8Match>, SearchError> nextInLines()
    {
        while (true) {
            if (lineEnd >= 0) {
                const auto match = matcher->next();
                if (!match)
                    return std::unexpected(match.error());
                if (*match) {
                    cursor.toUnit((*match)->location);
                    const qsizetype start = cursor.byte;
                    cursor.toUnit((*match)->end());
                    if (start >= skip)
                        return std::optional<Utf8Match>{finish(start, cursor.byte)};
                    continue;
                }
                if (++windowAt < windows.size()) {
                    matcher->setRange(windows[windowAt], lineInCopy);
                    continue;
                }
                leaveLine();
            }
            if (batchAt >= batch.size() && !fillBatch()) {
                position = qsizetype(text.size());
                return std::optional<Utf8Match>{};
            }
            const Line &line = batch[batchAt];
            if (line.byteEnd < skip) {
                ++batchAt;
                continue;
            }
            const qsizetype unitEnd
                = batchAt + 1 < batch.size() ? batch[batchAt + 1].unitStart : copy.size();
            cursor = {text, line.byteStart, line.unitStart};
            lineInCopy = {line.unitStart, unitEnd - line.unitStart};
            findWindows(line);
            matcher->setRange(windows.front(), lineInCopy);
            lineEnd = line.byteEnd;
        }
    }

    // Where in the line a match can lie: around each occurrence of the required text, as far as
    // the longest match reaches (two units a code point at most), or the whole line.
    void findWindows(const Line &line)
    {
        windows.clear();
        windowAt = 0;
        if (maxLength < 0 || lineInCopy.length > kWindowedLineUnits) {
            windows.push_back(lineInCopy);
            return;
        }
        const qsizetype reach = 2 * maxLength;
        Utf16Counter inLine(text.substr(size_t(line.byteStart)));
        qsizetype from = line.byteStart;
        while (const auto found = required->find(text, from, line.byteEnd)) {
            const qsizetype start = inLine.offsetOf(found->start - line.byteStart);
            const qsizetype end
                = start + utf16LengthOfUtf8(text.data() + found->start, text.data() + found->end);
            const qsizetype low = std::max<qsizetype>(0, end - reach) + lineInCopy.location;
            const qsizetype high = std::min(lineInCopy.length, start + reach) + lineInCopy.location;
            if (!windows.empty() && low <= windows.back().end())
                windows.back().length
                    = std::max(windows.back().end(), high) - windows.back().location;
            else
                windows.push_back({low, high - low});
            from = found->start + 1;
        }
        if (windows.empty()) // not reached: the line was taken for an occurrence
            windows.push_back(lineInCopy);
    }

    void leaveLine()
    {
        position = lineEnd + 1;
        lineEnd = -1;
        ++batchAt;
        windows.clear();
    }

    std::expected<std::optional<Utf8Match>, SearchError> nextInWholeText()
    {
        if (!matcher) {
            copy = QString::fromUtf8(text.data(), qsizetype(text.size()));
            matcher = std::make_unique<SearchMatcher>(regex, copy, timeLimitSteps);
            matcher->setRange({0, copy.size()}, true);
            cursor = {text, 0, 0};
        }
        while (true) {
            const auto match = matcher->next();
            if (!match)
                return std::unexpected(match.error());
            if (!*match)
                return std::optional<Utf8Match>{};
            cursor.toUnit((*match)->location);
            const qsizetype start = cursor.byte;
            cursor.toUnit((*match)->end());
            if (start >= skip)
                return std::optional<Utf8Match>{finish(start, cursor.byte)};
        }
    }
};

Utf8Search::Utf8Search(const SearchRegex &regex,
                       std::string_view utf8,
                       bool utf16Offsets,
                       int timeLimitSteps)
    : m_state(std::make_unique<State>(regex, utf8))
{
    State &state = *m_state;
    state.wantUnits = utf16Offsets;
    state.timeLimitSteps = timeLimitSteps;
    if (regex.literal()) {
        state.route = Route::literal;
        return;
    }
    const RegexShape shape = regexShapeOf(regex.options());
    if (shape.withinOneLine && !shape.requiredText.isEmpty()) {
        SearchOptions piece;
        piece.query = shape.requiredText;
        piece.matchCase = true;
        state.required = LiteralSearch::forOptions(piece);
        state.maxLength = shape.maxLength;
        if (state.required)
            state.route = Route::lines;
    }
}

Utf8Search::~Utf8Search() = default;

Utf8Search::Route Utf8Search::route() const
{
    return m_state->route;
}

std::expected<std::optional<Utf8Match>, SearchError> Utf8Search::next()
{
    switch (m_state->route) {
    case Route::literal:
        return m_state->nextLiteral();
    case Route::lines:
        return m_state->nextInLines();
    case Route::wholeText:
        break;
    }
    return m_state->nextInWholeText();
}

void Utf8Search::skipTo(qsizetype bytePosition)
{
    State &state = *m_state;
    state.skip = std::max(state.skip, bytePosition);
    // A literal without a line break and a line-bound pattern find the same matches from any
    // line start: jump there.
    if (state.route == Route::literal && !state.regex.literal()->containsLineBreak())
        state.position = std::max(state.position, state.skip);
    if (state.route == Route::lines && state.lineEnd >= 0 && state.skip > state.lineEnd)
        state.leaveLine();
}

std::expected<QString, SearchError> Utf8Search::replacement()
{
    State &state = *m_state;
    const SearchOptions &options = state.regex.options();
    if (options.mode != SearchMode::regex) {
        if (!state.fixedReplacement)
            state.fixedReplacement = options.mode == SearchMode::extended
                                         ? unescapeExtended(options.replacement)
                                         : options.replacement;
        return *state.fixedReplacement;
    }
    if (state.route != Route::literal)
        return replacementFor(*state.matcher, options);
    if (!state.last)
        return QString();
    const QString matched = QString::fromUtf8(state.text.data() + state.last->byteStart,
                                              state.last->byteEnd - state.last->byteStart);
    if (const auto found = state.expansions.constFind(matched);
        found != state.expansions.constEnd())
        return *found;
    // A literal pattern's expansion depends only on the matched text.
    SearchMatcher alone(state.regex, matched, state.timeLimitSteps);
    alone.setRange({0, matched.size()}, true);
    const auto match = alone.next();
    if (!match)
        return std::unexpected(match.error());
    auto expanded = replacementFor(alone, options);
    if (expanded && state.expansions.size() < 256)
        state.expansions.insert(matched, *expanded);
    return expanded;
}

CountResult
countMatchesUtf8(std::string_view utf8, const SearchOptions &options, int timeLimitSteps)
{
    const auto regex = makeRegex(options);
    if (!regex)
        return {0, SearchStatus::failure(regex.error()), true};
    Utf8Search search(*regex, utf8, false, timeLimitSteps);
    qsizetype count = 0;
    while (true) {
        const auto match = search.next();
        if (!match)
            return {0, SearchStatus::failure(match.error()), true};
        if (!*match)
            break;
        ++count;
    }
    return {count, SearchStatus::counted(count), false};
}

Utf8ReplaceAllResult replaceAllUtf8(std::string_view utf8,
                                    bool readOnly,
                                    const SearchOptions &options,
                                    int timeLimitSteps)
{
    const auto fail = [](const SearchStatus &status) {
        Utf8ReplaceAllResult result;
        result.status = status;
        result.beep = true;
        return result;
    };
    if (readOnly)
        return fail(SearchStatus::readOnly());
    const auto regex = makeRegex(options);
    if (!regex)
        return fail(SearchStatus::failure(regex.error()));
    Utf8Search search(*regex, utf8, false, timeLimitSteps);

    Utf8ReplaceAllResult result;
    LargeUtf8 &out = result.replacement;
    qsizetype spanStart = -1;
    qsizetype copied = 0;
    QByteArray fixed; // the replacement's UTF-8 when it is the same for every match
    const bool isFixed = options.mode != SearchMode::regex;
    while (true) {
        const auto match = search.next();
        if (!match)
            return fail(SearchStatus::failure(match.error()));
        if (!*match)
            break;
        if (spanStart < 0) {
            spanStart = copied = (*match)->byteStart;
            const auto rest = qsizetype(utf8.size()) - spanStart;
            out.reserve(size_t(rest + rest / 16));
        }
        out.append(utf8.data() + copied, size_t((*match)->byteStart - copied));
        if (isFixed && result.count > 0) {
            out.append(fixed.constData(), size_t(fixed.size()));
        } else {
            const auto replacement = search.replacement();
            if (!replacement)
                return fail(SearchStatus::failure(replacement.error()));
            fixed = replacement->toUtf8();
            out.append(fixed.constData(), size_t(fixed.size()));
        }
        copied = (*match)->byteEnd;
        ++result.count;
    }
    if (result.count == 0) {
        result.status = SearchStatus::noResult(options.query);
        return result;
    }
    result.status = SearchStatus::replaced(result.count, options.query);
    result.byteStart = spanStart;
    result.byteLength = copied - spanStart;
    result.span.location = utf16LengthOfUtf8(utf8.data(), utf8.data() + spanStart);
    result.span.length = utf16LengthOfUtf8(utf8.data() + spanStart, utf8.data() + copied);
    result.replacementUtf16Length = utf16LengthOfUtf8(out.data(), out.data() + out.size());
    return result;
}

} // namespace mirtex
