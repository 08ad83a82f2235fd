#include "core/search/MarkAll.h"

#include "core/search/SearchEngine.h"

#include <algorithm>

namespace mirtex {

qsizetype lineHolding(std::span<const qint64> lineStarts, qint64 utf16Offset)
{
    const auto after = std::upper_bound(lineStarts.begin(), lineStarts.end(), utf16Offset);
    return std::max<qsizetype>(0, (after - lineStarts.begin()) - 1);
}

MarkAllResult markAll(QStringView text,
                      TextRange selection,
                      bool inSelection,
                      const SearchOptions &options,
                      bool bookmarkLines,
                      std::span<const qint64> lineStarts,
                      qsizetype limit,
                      int timeLimitSteps)
{
    MarkAllResult result;
    const auto regex = makeRegex(options);
    if (!regex)
        return {{}, {}, SearchStatus::failure(regex.error()), true};
    SearchMatcher matcher(*regex, text, timeLimitSteps);
    // The scope is searched as a text of its own, as count and replace all do.
    matcher.setRange(searchScope(text.size(), selection, inSelection), true);
    while (qsizetype(result.ranges.size()) < limit) {
        const auto match = matcher.next();
        if (!match)
            return {{}, {}, SearchStatus::failure(match.error()), true};
        if (!*match)
            break;
        if ((*match)->length > 0)
            result.ranges.push_back(**match);
    }
    if (bookmarkLines) {
        for (const TextRange &range : result.ranges) {
            const qsizetype line = lineHolding(lineStarts, range.location);
            if (result.lines.empty() || result.lines.back() != line)
                result.lines.push_back(line); // marks ascend, so their lines do too
        }
    }
    result.status = SearchStatus::marked(qsizetype(result.ranges.size()), options.query);
    return result;
}

} // namespace mirtex
