// What one tab keeps over its text and must carry through every edit: line index, bookmarks,
// marks, the selected word's occurrences and the brace pair at the caret.
#pragma once

#include "core/editor/LineIndex.h"
#include "core/text/TextRange.h"

#include <QStringView>

#include <vector>

namespace mirtex {

// What an edit did to the annotations, so the view redraws only what it must.
struct AnnotationChanges
{
    bool bookmarks = false;  // there were bookmarks: their lines may have moved
    bool marks = false;      // there were marks: redraw the mark colouring
    bool highlights = false; // smart or brace ranges were cleared
};

// Owned by the tab's editor view (main thread). Offsets are UTF-16 code units into the tab's
// text. Bookmarks are one offset per bookmarked line (duplicates may appear after edits and are
// merged when read as lines); marks and highlights are ranges in no particular order.
class TextAnnotations
{
public:
    LineIndex lineIndex;
    std::vector<qint64> bookmarkOffsets;
    std::vector<TextRange> markRanges;
    std::vector<TextRange> smartRanges;
    std::vector<TextRange> braceRanges;

    // Called for every change of the text with the edited range as it stands in the new text and
    // the change in length (new length minus old length). Bookmarks inside replaced text move to
    // the edit's start, later ones shift; a pure insertion at a bookmark moves it behind the new
    // text. Marks ending at or before the edit stay, marks touching the replaced text (or split by
    // an insertion) are dropped, later ones shift. Smart and brace ranges are emptied and the line
    // index is invalidated.
    AnnotationChanges adjustAfterEdit(TextRange editedInNewText, qsizetype changeInLength);

    // Bookmarks by line (from 0). These rebuild the line index from the given text, which must be
    // the text the offsets refer to.
    bool isBookmarked(qsizetype lineIndexFrom0, QStringView text);
    // Adds a bookmark at the line's start or removes every bookmark on the line; returns whether
    // the line is bookmarked afterwards. Lines outside the text are ignored (returns false).
    bool toggleBookmark(qsizetype lineIndexFrom0, QStringView text);
    // Bookmarked lines, ascending, each once.
    std::vector<qsizetype> bookmarkedLines(QStringView text);
    // Replaces the bookmarks; lines beyond the last line (or negative) are dropped.
    void setBookmarkedLines(const std::vector<qsizetype> &lines, QStringView text);
};

} // namespace mirtex
