#include "core/editor/CommentCommands.h"

#include "core/editor/SelectedLines.h"

#include <algorithm>
#include <limits>

namespace mirtex {

namespace {

bool isSpace(QChar c)
{
    return c.isSpace();
}

} // namespace

EditBatch toggleLineComment(QStringView text, const Selections &selections, const QString &token)
{
    EditBatch batch;
    if (token.isEmpty())
        return batch;
    const DocumentLines lines(text);
    const std::vector<LineBlock> spans = lines.spansOf(selections, false);

    // One decision for every touched line, so that several carets comment or uncomment together.
    bool allCommented = true;
    bool anyLine = false;
    qsizetype indent = std::numeric_limits<qsizetype>::max();
    for (const LineBlock &span : spans) {
        for (qsizetype line = span.first; line <= span.last; ++line) {
            const QStringView content = lines.content(line);
            if (isBlank(content))
                continue;
            anyLine = true;
            const qsizetype lead = indentLength(content);
            indent = std::min(indent, lead);
            if (!content.sliced(lead).startsWith(token))
                allCommented = false;
        }
    }
    if (!anyLine)
        return batch;

    const QString inserted = token + u' ';
    for (const LineBlock &span : spans) {
        for (qsizetype line = span.first; line <= span.last; ++line) {
            const QStringView content = lines.content(line);
            if (isBlank(content))
                continue;
            const qsizetype start = lines.start(line);
            if (allCommented) {
                const qsizetype at = indentLength(content);
                qsizetype length = token.size();
                if (at + length < content.size() && content[at + length] == u' ')
                    ++length;
                batch.replacements.push_back({{start + at, length}, {}});
            } else {
                batch.replacements.push_back({{start + indent, 0}, inserted});
            }
        }
    }

    // Selections keep covering their lines: a selection that began at a line's start still does.
    std::vector<qsizetype> shiftBefore(batch.replacements.size() + 1, 0); // prefix of changes
    for (std::size_t i = 0; i < batch.replacements.size(); ++i)
        shiftBefore[i + 1] = shiftBefore[i] + batch.replacements[i].text.size()
                             - batch.replacements[i].range.length;
    Selections mapped = mapSelections(selections, batch.replacements);
    std::vector<Selection> after(mapped.begin(), mapped.end());
    for (std::size_t i = 0; i < after.size(); ++i) {
        const Selection &before = selections[i];
        if (before.isEmpty() || lines.start(lines.lineOf(before.start())) != before.start())
            continue;
        const auto firstAt = std::ranges::lower_bound(
            batch.replacements, before.start(), {}, [](const TextReplacement &r) {
                return r.range.location;
            });
        const qsizetype shift = shiftBefore[std::size_t(firstAt - batch.replacements.begin())];
        (after[i].anchor < after[i].caret ? after[i].anchor : after[i].caret)
            = before.start() + shift;
    }
    batch.selectionsAfter = Selections(std::move(after), selections.mainIndex());
    return batch;
}

EditBatch toggleBlockComment(QStringView text,
                             const Selections &selections,
                             const QString &start,
                             const QString &end)
{
    EditBatch batch;
    if (start.isEmpty() || end.isEmpty())
        return batch;
    const DocumentLines lines(text);
    std::vector<TextRange> ranges;
    ranges.reserve(selections.size());
    for (const Selection &selection : selections) {
        if (!selection.isEmpty()) {
            ranges.push_back(selection.range());
            continue;
        }
        const LineBlock span = lines.spanOf(selection);
        ranges.push_back({lines.start(span.first), lines.end(span.last) - lines.start(span.first)});
    }
    std::ranges::sort(ranges, {}, &TextRange::location);

    std::vector<Selection> after;
    qsizetype delta = 0;
    qsizetype previousEnd = -1;
    for (const TextRange &range : ranges) {
        if (range.location < previousEnd || (range.location == previousEnd && range.length == 0))
            continue; // two carets on one line comment it once
        previousEnd = range.end();
        const QStringView whole = text.sliced(range.location, range.length);
        qsizetype from = 0;
        qsizetype to = whole.size();
        while (from < to && isSpace(whole[from]))
            ++from;
        while (to > from && isSpace(whole[to - 1]))
            --to;
        const QStringView trimmed = whole.sliced(from, to - from);
        TextReplacement replacement;
        if (trimmed.size() >= start.size() + end.size() && trimmed.startsWith(start)
            && trimmed.endsWith(end)) {
            qsizetype innerFrom = start.size();
            qsizetype innerTo = trimmed.size() - end.size();
            if (innerFrom < innerTo && trimmed[innerFrom] == u' ')
                ++innerFrom;
            if (innerTo > innerFrom && trimmed[innerTo - 1] == u' ')
                --innerTo;
            replacement = {{range.location + from, trimmed.size()},
                           trimmed.sliced(innerFrom, innerTo - innerFrom).toString()};
        } else {
            replacement = {range, start + u' ' + whole + u' ' + end};
        }
        const qsizetype newStart = replacement.range.location + delta;
        after.push_back({newStart, newStart + replacement.text.size()});
        delta += replacement.text.size() - replacement.range.length;
        batch.replacements.push_back(std::move(replacement));
    }
    batch.selectionsAfter = Selections(std::move(after), 0);
    return batch;
}

} // namespace mirtex
