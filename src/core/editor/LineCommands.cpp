#include "core/editor/LineCommands.h"

#include "core/editor/SelectedLines.h"

#include <algorithm>

namespace mirtex {

namespace {

// The range a run of whole lines occupies together with one line break: the one after it, or for
// the last line the one before it.
TextRange wholeLines(const DocumentLines &lines, const LineBlock &span)
{
    const qsizetype from = lines.start(span.first);
    if (span.last + 1 < lines.count())
        return {from, lines.start(span.last + 1) - from};
    const qsizetype start = span.first > 0 ? from - 1 : from;
    return {start, lines.text().size() - start};
}

// The change of length that the replacements before `offset` make, for each offset of an
// ascending list walked alongside them.
class Shift
{
public:
    explicit Shift(const std::vector<TextReplacement> &replacements)
        : m_replacements(replacements)
    {}

    // Offsets must be asked in ascending order. Replacements at the offset do not count.
    qsizetype upTo(qsizetype offset)
    {
        while (m_next < m_replacements.size() && m_replacements[m_next].range.location < offset) {
            m_delta += m_replacements[m_next].text.size() - m_replacements[m_next].range.length;
            ++m_next;
        }
        return m_delta;
    }

private:
    const std::vector<TextReplacement> &m_replacements;
    std::size_t m_next = 0;
    qsizetype m_delta = 0;
};

std::vector<LineBlock> spansOfLines(std::vector<qsizetype> lineIndexes, qsizetype lineCount)
{
    std::ranges::sort(lineIndexes);
    std::vector<LineBlock> spans;
    for (const qsizetype line : lineIndexes) {
        if (line < 0 || line >= lineCount)
            continue;
        if (!spans.empty() && line <= spans.back().last + 1)
            spans.back().last = std::max(spans.back().last, line);
        else
            spans.push_back({line, line});
    }
    return spans;
}

EditBatch
deleteSpans(QStringView text, const DocumentLines &lines, const std::vector<LineBlock> &spans)
{
    EditBatch batch;
    for (const LineBlock &span : spans) {
        const TextRange range = wholeLines(lines, span);
        if (range.length > 0)
            batch.replacements.push_back({range, {}});
    }
    Q_UNUSED(text);
    return batch;
}

} // namespace

EditBatch duplicateLines(QStringView text, const Selections &selections)
{
    const DocumentLines lines(text);
    // One copy below each run of lines holding carets, one after each non-empty selection.
    std::vector<Selection> caretOnly;
    for (const Selection &selection : selections) {
        if (selection.isEmpty())
            caretOnly.push_back(selection);
    }
    std::vector<LineBlock> caretSpans;
    if (!caretOnly.empty())
        caretSpans = lines.spansOf(Selections(caretOnly), false);
    EditBatch batch;
    for (const LineBlock &span : caretSpans) {
        const qsizetype from = lines.start(span.first);
        const qsizetype to = lines.end(span.last);
        batch.replacements.push_back({{to, 0}, u'\n' + text.sliced(from, to - from).toString()});
    }
    for (const Selection &selection : selections) {
        if (!selection.isEmpty())
            batch.replacements.push_back(
                {{selection.end(), 0},
                 text.sliced(selection.start(), selection.range().length).toString()});
    }
    std::ranges::stable_sort(
        batch.replacements, {}, [](const TextReplacement &r) { return r.range.location; });
    std::vector<qsizetype> inserted(batch.replacements.size() + 1, 0); // prefix of lengths
    for (std::size_t i = 0; i < batch.replacements.size(); ++i)
        inserted[i + 1] = inserted[i] + batch.replacements[i].text.size();
    auto insertedBefore = [&](qsizetype offset) {
        const auto it = std::ranges::lower_bound(
            batch.replacements, offset, {}, [](const TextReplacement &r) {
                return r.range.location;
            });
        return inserted[std::size_t(it - batch.replacements.begin())];
    };

    // A caret moves to the copy of its line; a selection to the copy of its text.
    std::vector<Selection> after;
    after.reserve(selections.size());
    for (const Selection &s : selections) {
        if (s.isEmpty()) {
            const qsizetype line = lines.lineOf(s.caret);
            const auto span = std::ranges::upper_bound(caretSpans, line, {}, &LineBlock::first) - 1;
            const qsizetype own = lines.end(span->last) - lines.start(span->first) + 1;
            after.push_back(Selection::caretAt(s.caret + insertedBefore(s.caret) + own));
        } else {
            const qsizetype start = s.end() + insertedBefore(s.end());
            const qsizetype length = s.range().length;
            after.push_back(s.caret < s.anchor ? Selection{start + length, start}
                                               : Selection{start, start + length});
        }
    }
    batch.selectionsAfter = Selections(std::move(after), selections.mainIndex());
    return batch;
}

EditBatch deleteLines(QStringView text, const Selections &selections)
{
    const DocumentLines lines(text);
    EditBatch batch = deleteSpans(text, lines, lines.spansOf(selections, true));
    if (batch.isEmpty())
        return batch;
    std::vector<Selection> after;
    qsizetype delta = 0;
    for (const TextReplacement &r : batch.replacements) {
        const qsizetype at = r.range.location + delta;
        // Deleting the last lines leaves the caret at the start of the line before them.
        const bool atEnd = r.range.end() == text.size() && r.range.location > 0;
        const qsizetype caret = atEnd ? lines.start(lines.lineOf(r.range.location)) + delta : at;
        if (after.empty() || after.back().caret != caret)
            after.push_back(Selection::caretAt(caret));
        delta -= r.range.length;
    }
    batch.selectionsAfter = Selections(std::move(after), 0);
    return batch;
}

EditBatch moveLines(QStringView text, const Selections &selections, bool up)
{
    const DocumentLines lines(text);
    const std::vector<LineBlock> spans = lines.spansOf(selections, true);
    EditBatch batch;
    if ((up && spans.front().first == 0) || (!up && spans.back().last + 1 >= lines.count()))
        return batch;
    // Each block swaps places with its neighbour; the block's selections move by the neighbour's
    // length and a line break.
    std::vector<qsizetype> shiftOfSpan;
    for (const LineBlock &span : spans) {
        const qsizetype blockFrom = lines.start(span.first);
        const qsizetype blockTo = lines.end(span.last);
        const QStringView block = text.sliced(blockFrom, blockTo - blockFrom);
        const qsizetype other = up ? span.first - 1 : span.last + 1;
        const QStringView neighbour = lines.content(other);
        if (up) {
            batch.replacements.push_back(
                {{lines.start(other), blockTo - lines.start(other)}, block + u'\n' + neighbour});
            shiftOfSpan.push_back(-(neighbour.size() + 1));
        } else {
            batch.replacements.push_back(
                {{blockFrom, lines.end(other) - blockFrom}, neighbour + u'\n' + block});
            shiftOfSpan.push_back(neighbour.size() + 1);
        }
    }
    std::vector<Selection> after;
    after.reserve(selections.size());
    for (const Selection &s : selections) {
        const qsizetype line = lines.lineOf(s.start());
        const auto span = std::ranges::upper_bound(spans, line, {}, &LineBlock::first) - 1;
        const qsizetype shift = shiftOfSpan[std::size_t(span - spans.begin())];
        after.push_back({s.anchor + shift, s.caret + shift});
    }
    batch.selectionsAfter = Selections(std::move(after), selections.mainIndex());
    return batch;
}

EditBatch joinLines(QStringView text, const Selections &selections)
{
    const DocumentLines lines(text);
    std::vector<LineBlock> spans = lines.spansOf(selections, false);
    EditBatch batch;
    std::vector<qsizetype> caretAt; // in the text before, where each joined run's caret goes
    qsizetype previousLast = -1;
    for (LineBlock span : spans) {
        if (span.first == span.last)
            ++span.last; // a caret's line joins the next one
        if (span.first <= previousLast)
            span.first = previousLast; // already joined into the run before
        span.last = std::min(span.last, lines.count() - 1);
        qsizetype joinedAt = -1;
        for (qsizetype line = span.first; line < span.last; ++line) {
            const QStringView upper = lines.content(line);
            const QStringView lower = lines.content(line + 1);
            qsizetype trailing = 0;
            while (trailing < upper.size() && upper[upper.size() - 1 - trailing].isSpace())
                ++trailing;
            const qsizetype from = lines.end(line) - trailing;
            const qsizetype to = lines.start(line + 1) + indentLength(lower);
            const bool emptySide = upper.size() == trailing || isBlank(lower);
            batch.replacements.push_back(
                {{from, to - from}, emptySide ? QString() : QStringLiteral(" ")});
            joinedAt = from;
        }
        if (joinedAt >= 0)
            caretAt.push_back(joinedAt);
        previousLast = std::max(previousLast, span.last);
    }
    if (batch.isEmpty())
        return batch;
    // Each joined run leaves one caret, at its last join point.
    std::vector<Selection> after;
    Shift shift(batch.replacements);
    std::ranges::sort(caretAt);
    for (const qsizetype at : caretAt) {
        const qsizetype mapped = at + shift.upTo(at);
        if (after.empty() || after.back().caret != mapped)
            after.push_back(Selection::caretAt(mapped));
    }
    batch.selectionsAfter = Selections(std::move(after), 0);
    return batch;
}

EditBatch insertBlankLine(QStringView text, const Selections &selections, bool above)
{
    const DocumentLines lines(text);
    std::vector<qsizetype> caretLines;
    for (const Selection &s : selections)
        caretLines.push_back(lines.lineOf(s.caret));
    std::ranges::sort(caretLines);
    caretLines.erase(std::ranges::unique(caretLines).begin(), caretLines.end());
    EditBatch batch;
    std::vector<Selection> after;
    qsizetype delta = 0;
    for (const qsizetype line : caretLines) {
        const qsizetype at = above ? lines.start(line) : lines.end(line);
        batch.replacements.push_back({{at, 0}, QStringLiteral("\n")});
        after.push_back(Selection::caretAt(at + delta + (above ? 0 : 1)));
        ++delta;
    }
    batch.selectionsAfter = Selections(std::move(after), 0);
    return batch;
}

EditBatch deleteLineNumbers(QStringView text,
                            const Selections &selections,
                            std::vector<qsizetype> lineIndexes)
{
    const DocumentLines lines(text);
    EditBatch batch = deleteSpans(text, lines, spansOfLines(std::move(lineIndexes), lines.count()));
    batch.selectionsAfter = mapSelections(selections, batch.replacements);
    return batch;
}

QString textOfLines(QStringView text, std::vector<qsizetype> lineIndexes)
{
    const DocumentLines lines(text);
    std::ranges::sort(lineIndexes);
    lineIndexes.erase(std::ranges::unique(lineIndexes).begin(), lineIndexes.end());
    QString result;
    for (const qsizetype line : lineIndexes) {
        if (line < 0 || line >= lines.count())
            continue;
        result += lines.content(line);
        result += u'\n';
    }
    return result;
}

} // namespace mirtex
