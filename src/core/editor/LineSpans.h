// Sets of whole lines as sorted runs, and what a view that hides lines must show and hide to go
// from one set to another after an edit. The editor's panes keep their own hidden lines, which
// move with the lines they hide when lines come or go; only what changed is touched, so that a
// keystroke costs nothing in proportion to the folds or to the hidden lines.
#pragma once

#include <QtGlobal>

#include <vector>

namespace mirtex {

// Lines first to last, inclusive, numbered from 0. Lists are sorted, disjoint and not touching.
struct LineSpan
{
    qint64 first = 0;
    qint64 last = 0;

    friend constexpr bool operator==(const LineSpan &, const LineSpan &) = default;
};

using LineSpans = std::vector<LineSpan>;

LineSpans uniteSpans(const LineSpans &a, const LineSpans &b);
LineSpans subtractSpans(const LineSpans &a, const LineSpans &b);
LineSpans intersectSpans(const LineSpans &a, const LineSpans &b);

// One edit seen in lines: it began on `firstLine` and covered the lines up to `oldLastLine`
// before and up to `newLastLine` after it.
struct LineEdit
{
    qint64 firstLine = 0;
    qint64 oldLastLine = 0;
    qint64 newLastLine = 0;
};

// Where hidden lines are after an edit when they move with their text: spans after the edit
// move, spans before it stay, spans around it stretch or shrink with it.
LineSpans shiftSpans(const LineSpans &spans, const LineEdit &edit);

// What to show, then hide, to go from `before` (already shifted through the edit) to `after`.
// The lines of the edit itself (`touched`, may be empty) are in an unknown state and are set
// anew. Spans are joined across lines that already stand as they should (unfolding everything
// is one call), so each list is as short as it can be.
struct SpanChanges
{
    LineSpans show;
    LineSpans hide;
};

SpanChanges spanChanges(const LineSpans &before, const LineSpans &after, const LineSpans &touched);

} // namespace mirtex
