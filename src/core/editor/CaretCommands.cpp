#include "core/editor/CaretCommands.h"

#include "core/editor/SelectedLines.h"

#include <QList>
#include <QStringList>

#include <algorithm>
#include <numeric>

namespace mirtex {

namespace {

bool isWordUnit(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c.isMark();
}

// The selections' indexes in text order.
std::vector<std::size_t> textOrder(const Selections &selections)
{
    std::vector<std::size_t> order(selections.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return selections[i].start(); });
    return order;
}

// The text to look for and where it is, from the main selection or the word at its caret.
std::optional<TextRange> needleOf(QStringView text, const Selections &selections)
{
    const Selection &main = selections.main();
    const TextRange range = main.isEmpty() ? wordAt(text, main.caret) : main.range();
    if (range.length == 0)
        return std::nullopt;
    return range;
}

} // namespace

TextRange wordAt(QStringView text, qsizetype utf16Offset)
{
    qsizetype from = std::clamp<qsizetype>(utf16Offset, 0, text.size());
    qsizetype to = from;
    while (from > 0 && isWordUnit(text[from - 1]))
        --from;
    while (to < text.size() && isWordUnit(text[to]))
        ++to;
    return {from, to - from};
}

std::optional<Selections> addNextOccurrence(QStringView text, const Selections &selections)
{
    const Selection &main = selections.main();
    if (main.isEmpty()) {
        const TextRange word = wordAt(text, main.caret);
        if (word.length == 0)
            return std::nullopt;
        std::vector<Selection> ranges(selections.begin(), selections.end());
        ranges[selections.mainIndex()] = {word.location, word.end()};
        return Selections(std::move(ranges), selections.mainIndex());
    }
    const QStringView needle = text.sliced(main.start(), main.range().length);
    qsizetype lastEnd = 0;
    for (const Selection &s : selections)
        lastEnd = std::max(lastEnd, s.end());
    auto taken = [&](qsizetype at) {
        return std::ranges::any_of(selections, [&](const Selection &s) {
            return s.start() < at + needle.size() && at < s.end();
        });
    };
    qsizetype from = lastEnd;
    for (int pass = 0; pass < 2; ++pass) {
        for (qsizetype at = text.indexOf(needle, from); at >= 0;
             at = text.indexOf(needle, at + 1)) {
            if (pass == 1 && at >= lastEnd)
                break;
            if (taken(at))
                continue;
            std::vector<Selection> ranges(selections.begin(), selections.end());
            ranges.push_back({at, at + needle.size()});
            return Selections(std::move(ranges), ranges.size() - 1);
        }
        from = 0;
    }
    return std::nullopt;
}

std::optional<Selections> selectAllOccurrences(QStringView text, const Selections &selections)
{
    const std::optional<TextRange> range = needleOf(text, selections);
    if (!range)
        return std::nullopt;
    const QStringView needle = text.sliced(range->location, range->length);
    std::vector<Selection> found;
    std::size_t main = 0;
    for (qsizetype at = text.indexOf(needle); at >= 0;
         at = text.indexOf(needle, at + needle.size())) {
        if (at == range->location)
            main = found.size();
        found.push_back({at, at + needle.size()});
    }
    return Selections(std::move(found), main);
}

std::optional<Selections>
addCaretOnAdjacentLine(QStringView text, const Selections &selections, bool above)
{
    const DocumentLines lines(text);
    qsizetype edge = above ? lines.count() : -1;
    for (const Selection &s : selections) {
        const qsizetype line = lines.lineOf(s.caret);
        edge = above ? std::min(edge, line) : std::max(edge, line);
    }
    const qsizetype target = above ? edge - 1 : edge + 1;
    if (target < 0 || target >= lines.count())
        return std::nullopt;
    const qsizetype mainCaret = selections.main().caret;
    const qsizetype column = mainCaret - lines.start(lines.lineOf(mainCaret));
    const qsizetype caret
        = lines.start(target) + std::min(column, lines.end(target) - lines.start(target));
    std::vector<Selection> ranges(selections.begin(), selections.end());
    ranges.push_back(Selection::caretAt(caret));
    return Selections(std::move(ranges), ranges.size() - 1);
}

QString textOfSelections(QStringView text, const Selections &selections)
{
    QStringList parts;
    for (const std::size_t i : textOrder(selections)) {
        const Selection &s = selections[i];
        if (!s.isEmpty())
            parts.append(text.sliced(s.start(), s.range().length).toString());
    }
    return parts.join(u'\n');
}

std::optional<EditBatch>
distributeLines(QStringView text, const Selections &selections, const QString &clip)
{
    if (selections.size() < 2)
        return std::nullopt;
    QStringView body = clip;
    if (body.endsWith(u'\n'))
        body.chop(1);
    const QList<QStringView> parts = body.split(u'\n');
    if (std::size_t(parts.size()) != selections.size())
        return std::nullopt;
    const std::vector<std::size_t> order = textOrder(selections);
    EditBatch batch;
    qsizetype previousEnd = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        const TextRange range = selections[order[k]].range();
        if (range.location < previousEnd || range.end() > text.size())
            return std::nullopt; // overlapping selections: leave it to the plain paste
        previousEnd = range.end();
        batch.replacements.push_back({range, parts[qsizetype(k)].toString()});
    }
    std::vector<Selection> after(selections.size());
    qsizetype delta = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        const TextReplacement &r = batch.replacements[k];
        after[order[k]] = Selection::caretAt(r.range.location + delta + r.text.size());
        delta += r.text.size() - r.range.length;
    }
    batch.selectionsAfter = Selections(std::move(after), selections.mainIndex());
    return batch;
}

EditBatch typeAtSelections(const Selections &selections, const QString &typed)
{
    const std::vector<std::size_t> order = textOrder(selections);
    EditBatch batch;
    batch.replacements.reserve(order.size());
    std::vector<Selection> after(selections.size());
    qsizetype delta = 0;
    qsizetype previousEnd = -1;
    std::size_t previous = 0;
    for (const std::size_t i : order) {
        const TextRange range = selections[i].range();
        if (range.location < previousEnd || (range.location == previousEnd && range.length == 0)) {
            after[i] = after[previous]; // touches the one before: they type once, as one caret
            continue;
        }
        previousEnd = range.end();
        previous = i;
        batch.replacements.push_back({range, typed});
        after[i] = Selection::caretAt(range.location + delta + typed.size());
        delta += typed.size() - range.length;
    }
    batch.selectionsAfter = Selections(std::move(after), selections.mainIndex());
    return batch;
}

EditBatch deleteAtSelections(QStringView text, const Selections &selections, bool backwards)
{
    const std::vector<std::size_t> order = textOrder(selections);
    std::vector<TextRange> ranges(selections.size());
    for (std::size_t i = 0; i < selections.size(); ++i) {
        const Selection &s = selections[i];
        TextRange range = s.range();
        if (s.isEmpty() && backwards && s.caret > 0) {
            const bool pair = s.caret > 1 && text[s.caret - 1].isLowSurrogate()
                              && text[s.caret - 2].isHighSurrogate();
            range = {s.caret - (pair ? 2 : 1), pair ? 2 : 1};
        } else if (s.isEmpty() && !backwards && s.caret < text.size()) {
            const bool pair = s.caret + 1 < text.size() && text[s.caret].isHighSurrogate()
                              && text[s.caret + 1].isLowSurrogate();
            range = {s.caret, pair ? 2 : 1};
        }
        ranges[i] = range;
    }
    EditBatch batch;
    batch.replacements.reserve(order.size());
    std::vector<Selection> after(selections.size());
    qsizetype delta = 0;
    qsizetype previousEnd = -1;
    for (const std::size_t i : order) {
        TextRange range = ranges[i];
        if (range.location < previousEnd) { // overlaps the deletion before: only the rest goes
            const qsizetype end = std::max(range.end(), previousEnd);
            range = {previousEnd, end - previousEnd};
        }
        if (range.length > 0) {
            batch.replacements.push_back({range, {}});
            previousEnd = range.end();
        }
        after[i] = Selection::caretAt(range.location + delta);
        delta -= range.length;
    }
    batch.selectionsAfter = Selections(std::move(after), selections.mainIndex());
    return batch;
}

} // namespace mirtex
