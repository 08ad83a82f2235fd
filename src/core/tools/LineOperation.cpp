#include "core/tools/LineOperation.h"

#include "core/tools/Graphemes.h"
#include "core/tools/LineDuplicates.h"
#include "core/tools/LineSorting.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <algorithm>

namespace mirtex {

namespace {

struct OperationInfo
{
    LineOperation operation;
    const char *name;
    const char *label;
};

constexpr OperationInfo kOperations[kLineOperationCount] = {
    {LineOperation::sortAscending,
     "sortAscending",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina in modo crescente")},
    {LineOperation::sortDescending,
     "sortDescending",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina in modo decrescente")},
    {LineOperation::sortAscendingIgnoringCase,
     "sortAscendingIgnoringCase",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina in modo crescente (ignora maiuscole)")},
    {LineOperation::sortDescendingIgnoringCase,
     "sortDescendingIgnoringCase",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina in modo decrescente (ignora maiuscole)")},
    {LineOperation::sortNumericAscending,
     "sortNumericAscending",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina come numeri, crescente")},
    {LineOperation::sortNumericDescending,
     "sortNumericDescending",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina come numeri, decrescente")},
    {LineOperation::sortByLength,
     "sortByLength",
     QT_TRANSLATE_NOOP("LineOperation", "Ordina per lunghezza")},
    {LineOperation::shuffle,
     "shuffle",
     QT_TRANSLATE_NOOP("LineOperation", "Mescola in ordine casuale")},
    {LineOperation::reverse,
     "reverse",
     QT_TRANSLATE_NOOP("LineOperation", "Inverti l'ordine delle righe")},
    {LineOperation::removeDuplicates,
     "removeDuplicates",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi le righe duplicate")},
    {LineOperation::removeConsecutiveDuplicates,
     "removeConsecutiveDuplicates",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi i duplicati consecutivi")},
    {LineOperation::removeEmpty,
     "removeEmpty",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi le righe vuote")},
    {LineOperation::removeBlank,
     "removeBlank",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi le righe vuote (anche con spazi)")},
    {LineOperation::trimTrailing,
     "trimTrailing",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi gli spazi finali")},
    {LineOperation::trimLeading,
     "trimLeading",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi gli spazi iniziali")},
    {LineOperation::trimBoth,
     "trimBoth",
     QT_TRANSLATE_NOOP("LineOperation", "Rimuovi gli spazi iniziali e finali")},
    {LineOperation::tabsToSpaces,
     "tabsToSpaces",
     QT_TRANSLATE_NOOP("LineOperation", "Converti TAB in spazi")},
    {LineOperation::leadingSpacesToTabs,
     "leadingSpacesToTabs",
     QT_TRANSLATE_NOOP("LineOperation", "Converti gli spazi iniziali in TAB")},
};

bool isSpaceOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}

QStringView trimmedLeading(QStringView line)
{
    qsizetype start = 0;
    while (start < line.size() && isSpaceOrTab(line[start]))
        ++start;
    return line.sliced(start);
}

QStringView trimmedTrailing(QStringView line)
{
    qsizetype end = line.size();
    while (end > 0 && isSpaceOrTab(line[end - 1]))
        --end;
    return line.first(end);
}

bool isBlank(QStringView line)
{
    return std::all_of(line.begin(), line.end(), [](QChar c) { return c.isSpace(); });
}

template<typename Keep>
std::vector<QStringView> keepIf(std::span<const QStringView> lines, Keep keep)
{
    std::vector<QStringView> kept;
    kept.reserve(lines.size());
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(kept), keep);
    return kept;
}

template<typename Map>
std::vector<QStringView> mapEach(std::span<const QStringView> lines, Map map)
{
    std::vector<QStringView> mapped;
    mapped.reserve(lines.size());
    std::transform(lines.begin(), lines.end(), std::back_inserter(mapped), map);
    return mapped;
}

// Uniform (Fisher-Yates) with indexes drawn from the system's random source in one request.
std::vector<QStringView> shuffled(std::span<const QStringView> lines)
{
    std::vector<QStringView> result(lines.begin(), lines.end());
    if (result.size() < 2)
        return result;
    std::vector<quint64> random(result.size());
    QRandomGenerator::system()->generate(random.begin(), random.end());
    for (std::size_t i = result.size() - 1; i > 0; --i) {
        // A 64-bit draw reduced modulo at most a few million: a bias far below any measure.
        const auto j = std::size_t(random[i] % (i + 1));
        std::swap(result[i], result[j]);
    }
    return result;
}

// Rewrites the lines that `rewrite` changes into the result's storage; the others stay views of
// the input. `rewrite(line, out)` appends the new line to `out` and returns false to keep the line.
template<typename Rewrite>
LineList rewriteLines(std::span<const QStringView> lines, Rewrite rewrite)
{
    LineList result;
    std::vector<std::pair<qsizetype, qsizetype>> made(lines.size(), {-1, 0});
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const qsizetype start = result.storage.size();
        if (rewrite(lines[i], result.storage))
            made[i] = {start, result.storage.size() - start};
        else
            result.storage.truncate(start);
    }
    result.lines.reserve(lines.size());
    const QStringView storage = result.storage;
    for (std::size_t i = 0; i < lines.size(); ++i)
        result.lines.push_back(made[i].first < 0 ? lines[i]
                                                 : storage.sliced(made[i].first, made[i].second));
    return result;
}

LineList expandTabs(std::span<const QStringView> lines, int tabWidth)
{
    Graphemes graphemes;
    return rewriteLines(lines, [&](QStringView line, QString &out) {
        if (!line.contains(u'\t'))
            return false;
        qsizetype column = 0;
        graphemes.forEach(line, [&](qsizetype start, qsizetype end) {
            if (line[start] == u'\t' && end == start + 1) {
                const qsizetype spaces = tabWidth - column % tabWidth;
                out.resize(out.size() + spaces, u' ');
                column += spaces;
            } else {
                out.append(line.sliced(start, end - start));
                ++column;
            }
        });
        return true;
    });
}

LineList leadingSpacesToTabs(std::span<const QStringView> lines, int tabWidth)
{
    return rewriteLines(lines, [&](QStringView line, QString &out) {
        qsizetype run = 0;
        qsizetype width = 0;
        for (; run < line.size() && isSpaceOrTab(line[run]); ++run)
            width = line[run] == u'\t' ? (width / tabWidth + 1) * tabWidth : width + 1;
        const qsizetype tabs = width / tabWidth;
        const qsizetype spaces = width % tabWidth;
        const QStringView indent = line.first(run);
        if (run == tabs + spaces && indent.count(u'\t') == tabs
            && indent.first(tabs).count(u'\t') == tabs)
            return false;
        out.resize(out.size() + tabs, u'\t');
        out.resize(out.size() + spaces, u' ');
        out.append(line.sliced(run));
        return true;
    });
}

} // namespace

QString toString(LineOperation operation)
{
    return QString::fromLatin1(kOperations[int(operation)].name);
}

std::optional<LineOperation> lineOperationFromString(QStringView name)
{
    for (const OperationInfo &info : kOperations) {
        if (name == QLatin1String(info.name))
            return info.operation;
    }
    return std::nullopt;
}

QString label(LineOperation operation)
{
    return QCoreApplication::translate("LineOperation", kOperations[int(operation)].label);
}

LineList applyLineOperation(std::span<const QStringView> lines,
                            LineOperation operation,
                            const LineOperationOptions &options)
{
    const int tabWidth = std::max(1, options.tabWidth);
    switch (operation) {
    case LineOperation::sortAscending:
    case LineOperation::sortDescending:
        return {sortLiterally(lines, operation == LineOperation::sortDescending), {}};
    case LineOperation::sortAscendingIgnoringCase:
    case LineOperation::sortDescendingIgnoringCase:
        return {sortIgnoringCase(
                    lines, options.locale, operation == LineOperation::sortDescendingIgnoringCase),
                {}};
    case LineOperation::sortNumericAscending:
    case LineOperation::sortNumericDescending:
        return {sortNumerically(lines, operation == LineOperation::sortNumericDescending), {}};
    case LineOperation::sortByLength:
        return {sortByLength(lines), {}};
    case LineOperation::shuffle:
        return {shuffled(lines), {}};
    case LineOperation::reverse:
        return {std::vector<QStringView>(lines.rbegin(), lines.rend()), {}};
    case LineOperation::removeDuplicates:
        return {removeDuplicateLines(lines), {}};
    case LineOperation::removeConsecutiveDuplicates:
        return {removeConsecutiveDuplicateLines(lines), {}};
    case LineOperation::removeEmpty:
        return {keepIf(lines, [](QStringView line) { return !line.isEmpty(); }), {}};
    case LineOperation::removeBlank:
        return {keepIf(lines, [](QStringView line) { return !isBlank(line); }), {}};
    case LineOperation::trimTrailing:
        return {mapEach(lines, trimmedTrailing), {}};
    case LineOperation::trimLeading:
        return {mapEach(lines, trimmedLeading), {}};
    case LineOperation::trimBoth:
        return {
            mapEach(lines, [](QStringView line) { return trimmedTrailing(trimmedLeading(line)); }),
            {}};
    case LineOperation::tabsToSpaces:
        return expandTabs(lines, tabWidth);
    case LineOperation::leadingSpacesToTabs:
        return leadingSpacesToTabs(lines, tabWidth);
    }
    return {std::vector<QStringView>(lines.begin(), lines.end()), {}};
}

std::vector<QStringView> splitLines(QStringView text)
{
    std::vector<QStringView> lines;
    // Counted first: a million lines would otherwise regrow the vector some twenty times.
    lines.reserve(std::size_t(text.count(u'\n')) + 1);
    qsizetype start = 0;
    for (;;) {
        const qsizetype lf = text.indexOf(u'\n', start);
        if (lf < 0)
            break;
        lines.push_back(text.sliced(start, lf - start));
        start = lf + 1;
    }
    lines.push_back(text.sliced(start));
    return lines;
}

QString joinLines(std::span<const QStringView> lines)
{
    qsizetype size = lines.empty() ? 0 : qsizetype(lines.size()) - 1;
    for (const QStringView line : lines)
        size += line.size();
    QString joined;
    joined.reserve(size);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0)
            joined.append(u'\n');
        joined.append(lines[i]);
    }
    return joined;
}

} // namespace mirtex
