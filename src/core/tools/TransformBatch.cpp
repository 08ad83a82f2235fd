#include "core/tools/TransformBatch.h"

#include <algorithm>

namespace mirtex {

namespace {

// What one selection becomes: its range of the text and the range's new text.
struct Piece
{
    TextRange range;
    QString text;
    std::size_t selection;
};

// The replacement of `range` by `replaced`, without the units both texts share at their ends (a
// sorted document often keeps its first or last lines), never splitting a surrogate pair. The
// narrowed text keeps `replaced`'s buffer: a whole document's new text is not copied again.
TextReplacement narrowed(QStringView text, TextRange range, QString replaced)
{
    const QStringView before = text.sliced(range.location, range.length);
    const qsizetype most = std::min(before.size(), replaced.size());
    qsizetype prefix = 0;
    while (prefix < most && before[prefix] == replaced[prefix])
        ++prefix;
    if (prefix > 0 && before[prefix - 1].isHighSurrogate())
        --prefix;
    qsizetype suffix = 0;
    while (suffix < most - prefix
           && before[before.size() - 1 - suffix] == replaced[replaced.size() - 1 - suffix])
        ++suffix;
    if (suffix > 0 && before[before.size() - suffix].isLowSurrogate())
        --suffix;
    const TextRange narrowedRange{range.location + prefix, range.length - prefix - suffix};
    replaced.chop(suffix);
    if (prefix > 0)
        replaced.remove(0, prefix); // moves the start, copies nothing
    return {narrowedRange, std::move(replaced)};
}

// The batch for `pieces` (any order; a piece overlapping an earlier one is dropped and its
// selection follows the earlier one). Every selection with a piece ends up selecting its new text.
EditBatch assemble(QStringView text,
                   std::vector<Piece> pieces,
                   const Selections &before,
                   const QString &label)
{
    std::stable_sort(pieces.begin(), pieces.end(), [](const Piece &a, const Piece &b) {
        return a.range.location < b.range.location;
    });
    EditBatch batch;
    batch.undoLabel = label;
    std::vector<std::optional<Selection>> after(before.size());
    qsizetype delta = 0;
    qsizetype keptEnd = -1;
    Selection lastNew;
    TextRange lastRange;
    for (Piece &piece : pieces) {
        if (keptEnd >= 0 && (piece.range.location < keptEnd || piece.range == lastRange)) {
            after[piece.selection] = lastNew; // the same text as an earlier selection's
            continue;
        }
        const qsizetype newSize = piece.text.size();
        const bool changed = text.sliced(piece.range.location, piece.range.length) != piece.text;
        if (changed)
            batch.replacements.push_back(narrowed(text, piece.range, std::move(piece.text)));
        const qsizetype start = piece.range.location + delta;
        lastNew = {start, start + newSize};
        after[piece.selection] = lastNew;
        delta += newSize - piece.range.length;
        keptEnd = piece.range.end();
        lastRange = piece.range;
    }
    if (batch.replacements.empty()) {
        batch.selectionsAfter = before;
        return batch;
    }
    std::vector<Selection> selections;
    std::size_t mainIndex = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        Selection s = after[i] ? *after[i]
                               : mapSelections(Selections(before[i]), batch.replacements).main();
        const auto found = std::find(selections.begin(), selections.end(), s);
        if (i == before.mainIndex())
            mainIndex = std::size_t(found - selections.begin());
        if (found == selections.end())
            selections.push_back(s);
    }
    batch.selectionsAfter = Selections(std::move(selections), mainIndex);
    return batch;
}

qsizetype lineStart(QStringView text, qsizetype offset)
{
    return offset == 0 ? 0 : text.lastIndexOf(u'\n', offset - 1) + 1;
}

// The end of the line holding `offset`, after its LF if it has one.
qsizetype lineEndAfterBreak(QStringView text, qsizetype offset)
{
    const qsizetype lf = text.indexOf(u'\n', offset);
    return lf < 0 ? text.size() : lf + 1;
}

QString
transformBlock(QStringView block, LineOperation operation, const LineOperationOptions &options)
{
    const bool finalBreak = block.endsWith(u'\n');
    if (finalBreak)
        block.chop(1);
    const std::vector<QStringView> lines = splitLines(block);
    const LineList result = applyLineOperation(lines, operation, options);
    QString joined = joinLines(result.lines);
    if (finalBreak)
        joined.append(u'\n');
    return joined;
}

bool isWordUnit(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == u'_' || c.isSurrogate();
}

} // namespace

EditBatch lineOperationBatch(QStringView text,
                             const Selections &selections,
                             LineOperation operation,
                             const LineOperationOptions &options)
{
    std::vector<Piece> pieces;
    const bool anySelected = std::any_of(
        selections.begin(), selections.end(), [](const Selection &s) { return !s.isEmpty(); });
    if (!anySelected) {
        pieces.push_back({{0, text.size()}, {}, selections.mainIndex()});
    } else {
        for (std::size_t i = 0; i < selections.size(); ++i) {
            const Selection &s = selections[i];
            if (s.isEmpty())
                continue;
            const qsizetype start = lineStart(text, s.start());
            // The line the selection ends in, unless it ends right at that line's start.
            const qsizetype lastOffset = std::max(start, s.end() - 1);
            pieces.push_back({{start, lineEndAfterBreak(text, lastOffset) - start}, {}, i});
        }
        // Selections sharing lines make one block.
        std::sort(pieces.begin(), pieces.end(), [](const Piece &a, const Piece &b) {
            return a.range.location < b.range.location;
        });
        std::vector<Piece> merged;
        for (Piece &piece : pieces) {
            if (!merged.empty() && piece.range.location < merged.back().range.end()) {
                TextRange &range = merged.back().range;
                range.length = std::max(range.end(), piece.range.end()) - range.location;
            } else {
                merged.push_back(std::move(piece));
            }
        }
        pieces = std::move(merged);
    }
    for (Piece &piece : pieces)
        piece.text = transformBlock(
            text.sliced(piece.range.location, piece.range.length), operation, options);
    return assemble(text, std::move(pieces), selections, label(operation));
}

EditBatch
caseConversionBatch(QStringView text, const Selections &selections, CaseConversion conversion)
{
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < selections.size(); ++i) {
        const Selection &s = selections[i];
        const TextRange range = s.isEmpty() ? wordRangeAt(text, s.caret) : s.range();
        if (range.length == 0)
            continue;
        pieces.push_back(
            {range, convertCase(text.sliced(range.location, range.length), conversion), i});
    }
    return assemble(text, std::move(pieces), selections, label(conversion));
}

std::optional<EditBatch>
textToolBatch(QStringView text, const Selections &selections, TextTool tool, QStringView indentUnit)
{
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < selections.size(); ++i) {
        const Selection &s = selections[i];
        TextRange range = s.range();
        if (s.isEmpty()) {
            if (selections.size() > 1)
                continue;
            range = {0, text.size()};
        }
        auto result = applyTextTool(text.sliced(range.location, range.length), tool, indentUnit);
        if (!result)
            return std::nullopt;
        pieces.push_back({range, std::move(*result), i});
    }
    return assemble(text, std::move(pieces), selections, label(tool));
}

EditBatch
insertionBatch(const Selections &selections, const QString &inserted, const QString &label)
{
    EditBatch batch;
    batch.undoLabel = label;
    std::vector<Selection> sorted(selections.begin(), selections.end());
    std::sort(sorted.begin(), sorted.end(), [](const Selection &a, const Selection &b) {
        return a.start() < b.start();
    });
    std::vector<Selection> after;
    std::size_t mainIndex = 0;
    qsizetype delta = 0;
    qsizetype keptEnd = -1;
    for (const Selection &s : sorted) {
        if (s.start() < keptEnd || (s.start() == keptEnd && s.isEmpty()))
            continue; // overlapping selections insert once
        batch.replacements.push_back({s.range(), inserted});
        delta += inserted.size() - s.range().length;
        const qsizetype caret = s.end() + delta;
        if (s == selections.main())
            mainIndex = after.size();
        after.push_back(Selection::caretAt(caret));
        keptEnd = s.end();
    }
    batch.selectionsAfter = Selections(std::move(after), mainIndex);
    if (inserted.isEmpty())
        batch.replacements.clear();
    return batch;
}

TextRange wordRangeAt(QStringView text, qsizetype utf16Offset)
{
    qsizetype start = std::clamp<qsizetype>(utf16Offset, 0, text.size());
    qsizetype end = start;
    while (start > 0 && isWordUnit(text[start - 1]))
        --start;
    while (end < text.size() && isWordUnit(text[end]))
        ++end;
    return {start, end - start};
}

} // namespace mirtex
