#include "HunkText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace mirtex {

qsizetype graphemeCount(QStringView text)
{
    // Every grapheme holds at least one unit, and plain ASCII one each: skip the finder then.
    if (std::all_of(
            text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x300 && c != u'\r'; }))
        return text.size();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() > 0)
        ++count;
    return count;
}

namespace {

QString prefixed(QChar prefix, QStringView line)
{
    if (line.size() <= kHunkTextLineLimit)
        return prefix + line.toString();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, line);
    qsizetype cut = 0;
    for (qsizetype n = 0; n < kHunkTextLineLimit; ++n) {
        const qsizetype next = finder.toNextBoundary();
        if (next < 0)
            return prefix + line.toString();
        cut = next;
    }
    if (cut >= line.size())
        return prefix + line.toString();
    return prefix + line.left(cut).toString() + QStringLiteral("…");
}

} // namespace

QStringList hunkText(qsizetype hunkIndex,
                     int context,
                     const TextLines &left,
                     const TextLines &right,
                     const std::vector<DiffHunk> &hunks,
                     DiffOptions)
{
    const DiffHunk &hunk = hunks[size_t(hunkIndex)];
    QStringList lines;
    lines.append(QStringLiteral("@@ %1,%2 → %3,%4 @@")
                     .arg(hunk.left.start + 1)
                     .arg(hunk.left.count())
                     .arg(hunk.right.start + 1)
                     .arg(hunk.right.count()));
    for (qsizetype i = std::max<qsizetype>(0, hunk.right.start - context); i < hunk.right.start;
         ++i)
        lines.append(prefixed(u' ', right[i]));
    for (qsizetype i = hunk.left.start; i < hunk.left.end; ++i)
        lines.append(prefixed(u'-', left[i]));
    for (qsizetype i = hunk.right.start; i < hunk.right.end; ++i)
        lines.append(prefixed(u'+', right[i]));
    const qsizetype contextEnd = std::min(hunk.right.end + context, right.size());
    for (qsizetype i = hunk.right.end; i < contextEnd; ++i)
        lines.append(prefixed(u' ', right[i]));
    return lines;
}

QStringList assistantChunks(int context,
                            qsizetype maxCharacters,
                            const TextLines &left,
                            const TextLines &right,
                            const std::vector<DiffHunk> &hunks,
                            DiffOptions options)
{
    QStringList chunks;
    QString chunk;
    qsizetype chunkLength = 0;
    for (qsizetype h = 0; h < qsizetype(hunks.size()); ++h) {
        for (const QString &line : hunkText(h, context, left, right, hunks, options)) {
            const qsizetype lineLength = graphemeCount(line);
            if (chunkLength > 0 && chunkLength + lineLength + 1 > maxCharacters) {
                chunks.append(chunk);
                chunk.clear();
                chunkLength = 0;
            }
            chunk += line + u'\n';
            chunkLength += lineLength + 1;
        }
    }
    if (chunkLength > 0)
        chunks.append(chunk);
    return chunks;
}

} // namespace mirtex
