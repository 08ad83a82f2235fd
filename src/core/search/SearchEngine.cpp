// Find next and previous search with the text around their range visible (a whole word stays
// whole however the range cuts it); the selection scope of count and replace all is a text of its
// own, as a selection searched on its own would be.
#include "core/search/SearchEngine.h"

#include "core/search/SearchEscapes.h"

#include <QCoreApplication>

namespace mirtex {

namespace {

// The first match in `range`; an error, or nothing.
std::expected<std::optional<TextRange>, SearchError> firstMatch(SearchMatcher &matcher,
                                                                TextRange range)
{
    matcher.setRange(range, false);
    return matcher.next();
}

std::expected<std::optional<TextRange>, SearchError> lastMatch(SearchMatcher &matcher,
                                                               TextRange range)
{
    matcher.setRange(range, false);
    std::optional<TextRange> last;
    while (true) {
        auto match = matcher.next();
        if (!match)
            return match;
        if (!*match)
            return last;
        last = **match;
    }
}

FindResult failed(const SearchError &error)
{
    return {std::nullopt, SearchStatus::failure(error), true};
}

} // namespace

TextRange searchScope(qsizetype textLength, TextRange selection, bool inSelection)
{
    if (inSelection && selection.length > 0)
        return selection;
    return {0, textLength};
}

std::expected<QString, SearchError> replacementFor(SearchMatcher &matcher,
                                                   const SearchOptions &options)
{
    switch (options.mode) {
    case SearchMode::normal:
        return options.replacement;
    case SearchMode::extended:
        return unescapeExtended(options.replacement);
    case SearchMode::regex:
        return matcher.expand(regexTemplate(options.replacement));
    }
    return options.replacement;
}

FindResult findNext(QStringView text,
                    TextRange selection,
                    const SearchOptions &options,
                    bool wrapAround,
                    int timeLimitSteps)
{
    const auto regex = makeRegex(options);
    if (!regex)
        return failed(regex.error());
    SearchMatcher matcher(*regex, text, timeLimitSteps);
    const qsizetype length = text.size();
    qsizetype start = std::min(selection.end(), length);
    if (selection.length == 0) {
        const auto match = firstMatch(matcher, {start, length - start});
        if (!match)
            return failed(match.error());
        if (*match && (*match)->length == 0 && (*match)->location == start)
            start = std::min(start + 1, length);
    }
    const auto match = firstMatch(matcher, {start, length - start});
    if (!match)
        return failed(match.error());
    if (*match)
        return {**match, {}, false};
    if (wrapAround) {
        const auto wrapped = firstMatch(matcher, {0, start});
        if (!wrapped)
            return failed(wrapped.error());
        if (*wrapped)
            return {**wrapped, SearchStatus::wrappedToStart(), false};
    }
    return {std::nullopt, SearchStatus::noResult(options.query), false};
}

FindResult findPrevious(QStringView text,
                        TextRange selection,
                        const SearchOptions &options,
                        bool wrapAround,
                        int timeLimitSteps)
{
    const auto regex = makeRegex(options);
    if (!regex)
        return failed(regex.error());
    SearchMatcher matcher(*regex, text, timeLimitSteps);
    const qsizetype start = std::min(selection.location, text.size());
    const auto match = lastMatch(matcher, {0, start});
    if (!match)
        return failed(match.error());
    if (*match)
        return {**match, {}, false};
    if (wrapAround) {
        const auto wrapped = lastMatch(matcher, {0, text.size()});
        if (!wrapped)
            return failed(wrapped.error());
        if (*wrapped)
            return {**wrapped, SearchStatus::wrappedToEnd(), false};
    }
    return {std::nullopt, SearchStatus::noResult(options.query), false};
}

ReplaceOneResult replaceOne(QStringView text,
                            TextRange selection,
                            bool readOnly,
                            const SearchOptions &options,
                            bool wrapAround,
                            int timeLimitSteps)
{
    if (readOnly)
        return {{}, {std::nullopt, SearchStatus::readOnly(), true}};
    const auto regex = makeRegex(options);
    if (!regex)
        return {{}, failed(regex.error())};
    const auto justFind = [&] {
        return ReplaceOneResult{{}, findNext(text, selection, options, wrapAround, timeLimitSteps)};
    };
    if (selection.length == 0 && options.mode != SearchMode::regex)
        return justFind();
    SearchMatcher matcher(*regex, text, timeLimitSteps);
    matcher.setRange(selection, true);
    const auto match = matcher.next();
    if (!match)
        return {{}, failed(match.error())};
    // The leftmost match is the one at the selection start, if there is one.
    if (!*match || **match != selection)
        return justFind();
    const auto replacement = replacementFor(matcher, options);
    if (!replacement)
        return {{}, failed(replacement.error())};

    ReplaceOneResult result;
    const qsizetype caret = selection.location + replacement->size();
    result.batch.replacements.push_back({selection, *replacement});
    result.batch.selectionsAfter = Selection::caretAt(caret);
    result.batch.undoLabel = QCoreApplication::translate("Search", "Sostituisci");
    const QString after = applyEditBatch(text, result.batch);
    result.next = findNext(after, {caret, 0}, options, wrapAround, timeLimitSteps);
    return result;
}

CountResult countMatches(QStringView text,
                         TextRange selection,
                         bool inSelection,
                         const SearchOptions &options,
                         int timeLimitSteps)
{
    const auto regex = makeRegex(options);
    if (!regex)
        return {0, SearchStatus::failure(regex.error()), true};
    SearchMatcher matcher(*regex, text, timeLimitSteps);
    matcher.setRange(searchScope(text.size(), selection, inSelection), true);
    qsizetype count = 0;
    while (true) {
        const auto match = matcher.next();
        if (!match)
            return {0, SearchStatus::failure(match.error()), true};
        if (!*match)
            break;
        ++count;
    }
    return {count, SearchStatus::counted(count), false};
}

ReplaceAllResult replaceAll(QStringView text,
                            TextRange selection,
                            bool inSelection,
                            bool readOnly,
                            const SearchOptions &options,
                            int timeLimitSteps)
{
    const auto fail = [](const SearchStatus &status) {
        return ReplaceAllResult{{}, 0, status, true};
    };
    if (readOnly)
        return fail(SearchStatus::readOnly());
    const auto regex = makeRegex(options);
    if (!regex)
        return fail(SearchStatus::failure(regex.error()));
    SearchMatcher matcher(*regex, text, timeLimitSteps);
    matcher.setRange(searchScope(text.size(), selection, inSelection), true);

    QString replaced;
    qsizetype spanStart = -1;
    qsizetype copied = 0;
    qsizetype count = 0;
    while (true) {
        const auto match = matcher.next();
        if (!match)
            return fail(SearchStatus::failure(match.error()));
        if (!*match)
            break;
        const TextRange range = **match;
        const auto replacement = replacementFor(matcher, options);
        if (!replacement)
            return fail(SearchStatus::failure(replacement.error()));
        if (spanStart < 0)
            spanStart = copied = range.location;
        replaced += text.sliced(copied, range.location - copied);
        replaced += *replacement;
        copied = range.end();
        ++count;
    }
    if (count == 0)
        return {{}, 0, SearchStatus::noResult(options.query), false};

    const TextRange span{spanStart, copied - spanStart};
    const qsizetype newLength = text.size() - span.length + replaced.size();
    ReplaceAllResult result;
    result.count = count;
    result.status = SearchStatus::replaced(count, options.query);
    result.batch.replacements.push_back({span, std::move(replaced)});
    result.batch.selectionsAfter = Selection::caretAt(std::min(selection.location, newLength));
    result.batch.undoLabel = QCoreApplication::translate("Search", "Sostituisci tutto");
    return result;
}

} // namespace mirtex
