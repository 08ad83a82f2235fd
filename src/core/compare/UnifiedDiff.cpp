#include "UnifiedDiff.h"

#include <algorithm>

namespace mirtex {

namespace {

// A text's lines as a file has them: the empty piece after a final "\n" (or the whole of an empty
// text) is no line at all, and only the last line can lack its "\n".
struct FileLines
{
    const TextLines &lines;
    qsizetype count;

    explicit FileLines(const TextLines &textLines)
        : lines(textLines)
        , count(textLines.size() - (textLines[textLines.size() - 1].isEmpty() ? 1 : 0))
    {}

    bool terminated(qsizetype index) const { return index < lines.size() - 1; }
};

// The diff's hunks over file lines. A matched pair stays matched only when both lines exist in
// the files and end the same way; this touches at most the last pair.
std::vector<DiffHunk> fileHunks(const TextDiff &diff, const FileLines &left, const FileLines &right)
{
    std::vector<DiffHunk> hunks;
    qsizetype i = 0;
    qsizetype j = 0;
    qsizetype nextI = 0;
    qsizetype nextJ = 0;
    auto matched = [&](qsizetype a, qsizetype b) {
        const bool keep
            = a < left.count && b < right.count && left.terminated(a) == right.terminated(b);
        if (!keep)
            return;
        if (a > i || b > j)
            hunks.push_back({{i, a}, {j, b}});
        i = a + 1;
        j = b + 1;
    };
    for (const DiffHunk &hunk : diff.hunks) {
        for (; nextI < hunk.left.start; ++nextI, ++nextJ)
            matched(nextI, nextJ);
        nextI = hunk.left.end;
        nextJ = hunk.right.end;
    }
    for (; nextI < diff.left.size(); ++nextI, ++nextJ)
        matched(nextI, nextJ);
    if (left.count > i || right.count > j)
        hunks.push_back({{i, left.count}, {j, right.count}});
    return hunks;
}

QString rangeHeader(qsizetype start, qsizetype count)
{
    if (count == 1)
        return QString::number(start + 1);
    // An empty range names the line before it, as diff and patch expect.
    return QString::number(count == 0 ? start : start + 1) + u',' + QString::number(count);
}

void appendLine(QString &out, QChar prefix, const FileLines &file, qsizetype index)
{
    out += prefix;
    out += file.lines[index];
    out += u'\n';
    if (!file.terminated(index))
        out += QStringLiteral("\\ No newline at end of file\n");
}

} // namespace

QString
unifiedDiff(const TextDiff &diff, const QString &leftName, const QString &rightName, int context)
{
    const FileLines left(diff.left);
    const FileLines right(diff.right);
    const std::vector<DiffHunk> hunks = fileHunks(diff, left, right);
    if (hunks.empty())
        return {};
    QString out = QStringLiteral("--- ") + leftName + QStringLiteral("\n+++ ") + rightName + u'\n';
    size_t first = 0;
    while (first < hunks.size()) {
        // Hunks whose contexts touch or overlap go under one header.
        size_t last = first;
        while (last + 1 < hunks.size()
               && hunks[last + 1].left.start - hunks[last].left.end <= 2 * context)
            ++last;
        const qsizetype lead = std::min<qsizetype>(context, hunks[first].left.start);
        const qsizetype trail = std::min<qsizetype>(context, left.count - hunks[last].left.end);
        const qsizetype leftStart = hunks[first].left.start - lead;
        const qsizetype rightStart = hunks[first].right.start - lead;
        const qsizetype leftCount = hunks[last].left.end + trail - leftStart;
        const qsizetype rightCount = hunks[last].right.end + trail - rightStart;
        out += QStringLiteral("@@ -") + rangeHeader(leftStart, leftCount) + QStringLiteral(" +")
               + rangeHeader(rightStart, rightCount) + QStringLiteral(" @@\n");
        qsizetype at = leftStart;
        for (size_t h = first; h <= last; ++h) {
            for (; at < hunks[h].left.start; ++at)
                appendLine(out, u' ', left, at);
            for (qsizetype k = hunks[h].left.start; k < hunks[h].left.end; ++k)
                appendLine(out, u'-', left, k);
            for (qsizetype k = hunks[h].right.start; k < hunks[h].right.end; ++k)
                appendLine(out, u'+', right, k);
            at = hunks[h].left.end;
        }
        for (; at < hunks[last].left.end + trail; ++at)
            appendLine(out, u' ', left, at);
        first = last + 1;
    }
    return out;
}

} // namespace mirtex
