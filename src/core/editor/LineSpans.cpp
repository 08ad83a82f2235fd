#include "core/editor/LineSpans.h"

#include <algorithm>

namespace mirtex {

namespace {

void append(LineSpans &out, LineSpan span)
{
    if (span.last < span.first)
        return;
    if (!out.empty() && span.first <= out.back().last + 1)
        out.back().last = std::max(out.back().last, span.last);
    else
        out.push_back(span);
}

} // namespace

LineSpans uniteSpans(const LineSpans &a, const LineSpans &b)
{
    LineSpans out;
    out.reserve(a.size() + b.size());
    auto i = a.begin();
    auto j = b.begin();
    while (i != a.end() || j != b.end()) {
        if (j == b.end() || (i != a.end() && i->first <= j->first))
            append(out, *i++);
        else
            append(out, *j++);
    }
    return out;
}

LineSpans subtractSpans(const LineSpans &a, const LineSpans &b)
{
    LineSpans out;
    auto j = b.begin();
    for (LineSpan span : a) {
        while (j != b.end() && j->last < span.first)
            ++j;
        for (auto k = j; k != b.end() && k->first <= span.last; ++k) {
            append(out, {span.first, k->first - 1});
            span.first = k->last + 1;
        }
        append(out, span);
    }
    return out;
}

LineSpans intersectSpans(const LineSpans &a, const LineSpans &b)
{
    LineSpans out;
    auto i = a.begin();
    auto j = b.begin();
    while (i != a.end() && j != b.end()) {
        append(out, {std::max(i->first, j->first), std::min(i->last, j->last)});
        if (i->last < j->last)
            ++i;
        else
            ++j;
    }
    return out;
}

LineSpans shiftSpans(const LineSpans &spans, const LineEdit &edit)
{
    const qint64 delta = edit.newLastLine - edit.oldLastLine;
    if (delta == 0)
        return spans;
    LineSpans out;
    out.reserve(spans.size());
    for (LineSpan span : spans) {
        if (span.first > edit.oldLastLine) {
            span = {span.first + delta, span.last + delta};
        } else if (span.last >= edit.firstLine) {
            span.first = std::min(span.first, edit.firstLine);
            span.last = span.last > edit.oldLastLine ? span.last + delta
                                                     : std::min(span.last, edit.newLastLine);
        }
        append(out, span);
    }
    return out;
}

namespace {

// `spans` with neighbours joined wherever `joinable(gap)` allows (the gap's lines are left as they
// are by showing or hiding them again), so that a view takes one call per joined run.
template<typename Joinable>
LineSpans joined(const LineSpans &spans, Joinable joinable)
{
    LineSpans out;
    out.reserve(spans.size());
    for (const LineSpan &span : spans) {
        if (!out.empty() && joinable(LineSpan{out.back().last + 1, span.first - 1}))
            out.back().last = span.last;
        else
            out.push_back(span);
    }
    return out;
}

} // namespace

SpanChanges spanChanges(const LineSpans &before, const LineSpans &after, const LineSpans &touched)
{
    const LineSpans show = uniteSpans(subtractSpans(before, after), touched);
    const LineSpans hide = uniteSpans(subtractSpans(after, before), intersectSpans(after, touched));
    // Lines between two spans to show are shown already unless they stay hidden (in `after`);
    // lines between two spans to hide are hidden already when `after` holds them. The gaps come
    // in ascending order, so one cursor into `after` serves each pass.
    auto cursor = after.begin();
    auto firstEndingFrom = [&](qint64 line) {
        while (cursor != after.end() && cursor->last < line)
            ++cursor;
        return cursor;
    };
    LineSpans joinedShow = joined(show, [&](LineSpan gap) {
        const auto it = firstEndingFrom(gap.first);
        return it == after.end() || it->first > gap.last;
    });
    cursor = after.begin();
    LineSpans joinedHide = joined(hide, [&](LineSpan gap) {
        const auto it = firstEndingFrom(gap.first);
        return it != after.end() && it->first <= gap.first && it->last >= gap.last;
    });
    return {std::move(joinedShow), std::move(joinedHide)};
}

} // namespace mirtex
