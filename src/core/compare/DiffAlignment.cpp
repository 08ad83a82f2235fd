#include "DiffAlignment.h"

#include <algorithm>

namespace mirtex {

namespace {

void pushRow(AlignedSide &side, int32_t line, AlignedRowKind kind)
{
    side.lineOfRow.push_back(line);
    side.kindOfRow.push_back(kind);
}

} // namespace

DiffAlignment DiffAlignment::of(const TextDiff &diff)
{
    DiffAlignment a;
    const size_t estimate = size_t(std::max(diff.left.size(), diff.right.size()));
    for (AlignedSide *side : {&a.left, &a.right}) {
        side->lineOfRow.reserve(estimate);
        side->kindOfRow.reserve(estimate);
    }
    a.hunkRows.reserve(diff.hunks.size());
    int32_t i = 0;
    int32_t j = 0;
    auto equalRowsUpTo = [&](qsizetype leftEnd) {
        for (; i < leftEnd; ++i, ++j) {
            pushRow(a.left, i, AlignedRowKind::equal);
            pushRow(a.right, j, AlignedRowKind::equal);
        }
    };
    for (const DiffHunk &hunk : diff.hunks) {
        equalRowsUpTo(hunk.left.start);
        const qsizetype first = a.rowCount();
        const qsizetype rows = std::max(hunk.left.count(), hunk.right.count());
        const AlignedRowKind leftKind
            = hunk.right.isEmpty() ? AlignedRowKind::removed : AlignedRowKind::changed;
        const AlignedRowKind rightKind
            = hunk.left.isEmpty() ? AlignedRowKind::added : AlignedRowKind::changed;
        for (qsizetype r = 0; r < rows; ++r) {
            if (r < hunk.left.count())
                pushRow(a.left, int32_t(hunk.left.start + r), leftKind);
            else
                pushRow(a.left, -1, AlignedRowKind::filler);
            if (r < hunk.right.count())
                pushRow(a.right, int32_t(hunk.right.start + r), rightKind);
            else
                pushRow(a.right, -1, AlignedRowKind::filler);
        }
        a.hunkRows.push_back({first, first + rows});
        i = int32_t(hunk.left.end);
        j = int32_t(hunk.right.end);
    }
    equalRowsUpTo(diff.left.size());
    return a;
}

qsizetype DiffAlignment::hunkAtRow(qsizetype row, bool orAfter) const
{
    const auto it = std::upper_bound(
        hunkRows.begin(), hunkRows.end(), row, [](qsizetype r, const LineRange &range) {
            return r < range.end;
        });
    if (it == hunkRows.end())
        return -1;
    if (row >= it->start || orAfter)
        return it - hunkRows.begin();
    return -1;
}

QString alignedText(const TextLines &lines, const AlignedSide &side)
{
    QString text;
    text.reserve(lines.text().size() + qsizetype(side.lineOfRow.size()));
    bool first = true;
    for (const int32_t line : side.lineOfRow) {
        if (!first)
            text += u'\n';
        first = false;
        if (line >= 0)
            text += lines[line];
    }
    return text;
}

} // namespace mirtex
