#include "core/editor/AutoClose.h"

namespace mirtex {

namespace {

QChar closerFor(QChar opener)
{
    switch (opener.unicode()) {
    case u'(':
        return u')';
    case u'[':
        return u']';
    case u'{':
        return u'}';
    case u'"':
    case u'\'':
    case u'`':
        return opener;
    default:
        return {};
    }
}

bool isQuote(QChar c)
{
    return c == u'"' || c == u'\'' || c == u'`';
}

bool isCloser(QChar c)
{
    return c == u')' || c == u']' || c == u'}' || isQuote(c);
}

bool isAsciiLetterOrDigit(QChar c)
{
    return c.unicode() < 128 && c.isLetterOrNumber();
}

} // namespace

std::optional<EditBatch>
autoCloseEdit(QChar typed, const Selections &selections, const CharAt &charAt)
{
    // Typing the closer that auto-close put right after every caret steps over it.
    const bool stepsOver
        = isCloser(typed) && std::ranges::all_of(selections, [&](const Selection &selection) {
              return selection.isEmpty() && charAt(selection.caret) == typed;
          });
    if (stepsOver) {
        std::vector<Selection> moved;
        for (const Selection &selection : selections)
            moved.push_back(Selection::caretAt(selection.caret + 1));
        return EditBatch{{}, Selections(std::move(moved), selections.mainIndex()), {}};
    }
    const QChar closer = closerFor(typed);
    if (closer.isNull())
        return std::nullopt;

    EditBatch batch;
    std::vector<Selection> after;
    qsizetype shift = 0; // units inserted before the current selection
    std::vector<Selection> sorted = selections.ranges();
    std::ranges::sort(sorted, {}, &Selection::start);
    for (const Selection &selection : sorted) {
        if (selection.isEmpty() && isQuote(typed)) {
            // A quote next to a word character is an apostrophe or a closing quote: no pair. Only
            // ASCII letters and digits count, and the underscore before the caret.
            const QChar previous = charAt(selection.caret - 1);
            const QChar next = charAt(selection.caret);
            if (isAsciiLetterOrDigit(previous) || previous == u'_' || isAsciiLetterOrDigit(next))
                return std::nullopt;
        }
        if (selection.isEmpty()) {
            batch.replacements.push_back({{selection.caret, 0}, QString(typed) + closer});
            after.push_back(Selection::caretAt(selection.caret + shift + 1));
        } else {
            batch.replacements.push_back({{selection.start(), 0}, QString(typed)});
            batch.replacements.push_back({{selection.end(), 0}, QString(closer)});
            after.push_back({selection.start() + shift + 1, selection.end() + shift + 1});
        }
        shift += 2;
    }
    // The main selection keeps its place among the others.
    const Selection &main = selections.main();
    const auto mainAt = std::ranges::find_if(
        sorted, [&](const Selection &selection) { return selection == main; });
    batch.selectionsAfter = Selections(std::move(after), std::size_t(mainAt - sorted.begin()));
    return batch;
}

} // namespace mirtex
