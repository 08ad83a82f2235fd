// Edit-following rules for bookmarks and marks. One linear pass per edit: with tens of thousands of
// annotations this stays well under a millisecond, so no ordering has to be maintained.
#include "core/editor/TextAnnotations.h"

#include <algorithm>

namespace mirtex {

AnnotationChanges TextAnnotations::adjustAfterEdit(TextRange editedInNewText,
                                                   qsizetype changeInLength)
{
    const qint64 loc = editedInNewText.location;
    const qint64 oldEnd = editedInNewText.end() - changeInLength;

    AnnotationChanges changes;
    changes.bookmarks = !bookmarkOffsets.empty();
    changes.marks = !markRanges.empty();
    changes.highlights = !smartRanges.empty() || !braceRanges.empty();

    for (qint64 &offset : bookmarkOffsets) {
        if (offset < loc)
            continue;
        offset = offset < oldEnd ? loc : offset + changeInLength;
    }

    // A mark ending before the edit cannot be touched by it; one starting before the old end
    // (and not ending before the edit) overlaps the replaced text or straddles an insertion.
    std::erase_if(markRanges, [&](TextRange &mark) {
        if (loc >= mark.end())
            return false;
        if (mark.location < oldEnd)
            return true;
        mark.location += changeInLength;
        return false;
    });

    smartRanges.clear();
    braceRanges.clear();
    lineIndex.invalidate();
    return changes;
}

bool TextAnnotations::isBookmarked(qsizetype lineIndexFrom0, QStringView text)
{
    lineIndex.rebuild(text);
    return std::ranges::any_of(
        bookmarkOffsets, [&](qint64 offset) { return lineIndex.line(offset) == lineIndexFrom0; });
}

bool TextAnnotations::toggleBookmark(qsizetype lineIndexFrom0, QStringView text)
{
    lineIndex.rebuild(text);
    if (lineIndexFrom0 < 0 || lineIndexFrom0 >= lineIndex.lineCount())
        return false;
    const auto removed = std::erase_if(
        bookmarkOffsets, [&](qint64 offset) { return lineIndex.line(offset) == lineIndexFrom0; });
    if (removed > 0)
        return false;
    bookmarkOffsets.push_back(lineIndex.starts()[std::size_t(lineIndexFrom0)]);
    return true;
}

std::vector<qsizetype> TextAnnotations::bookmarkedLines(QStringView text)
{
    lineIndex.rebuild(text);
    std::vector<qsizetype> lines;
    lines.reserve(bookmarkOffsets.size());
    for (qint64 offset : bookmarkOffsets)
        lines.push_back(lineIndex.line(offset));
    std::ranges::sort(lines);
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
}

void TextAnnotations::setBookmarkedLines(const std::vector<qsizetype> &lines, QStringView text)
{
    lineIndex.rebuild(text);
    bookmarkOffsets.clear();
    for (qsizetype line : lines) {
        if (line >= 0 && line < lineIndex.lineCount())
            bookmarkOffsets.push_back(lineIndex.starts()[std::size_t(line)]);
    }
    std::ranges::sort(bookmarkOffsets);
    bookmarkOffsets.erase(std::unique(bookmarkOffsets.begin(), bookmarkOffsets.end()),
                          bookmarkOffsets.end());
}

} // namespace mirtex
