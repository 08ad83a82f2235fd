#include "support/CaretMarkup.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace mirtex::test {

namespace {

[[noreturn]] void malformed(const QString &markup, const char *why)
{
    throw std::invalid_argument(std::string(why) + " in caret markup \"" + markup.toStdString()
                                + '"');
}

bool isMark(QChar c)
{
    return c == u'|' || c == u'^' || c == u'[' || c == u']' || c == u'\\';
}

} // namespace

MarkedText parseMarkup(const QString &markup)
{
    MarkedText result;
    std::vector<Selection> selections;
    std::optional<std::size_t> main;
    std::optional<qsizetype> openedAt;    // text offset of an open "["
    std::optional<qsizetype> caretInside; // caret written inside the open selection
    for (qsizetype i = 0; i < markup.size(); ++i) {
        const QChar c = markup[i];
        const qsizetype here = result.text.size();
        if (c == u'\\') {
            if (++i == markup.size())
                malformed(markup, "a backslash at the end");
            result.text += markup[i];
        } else if (c == u'|' || c == u'^') {
            if (c == u'^') {
                if (main)
                    malformed(markup, "two main carets");
                main = selections.size();
            }
            if (openedAt) {
                if (caretInside)
                    malformed(markup, "two carets in one selection");
                caretInside = here;
            } else {
                selections.push_back(Selection::caretAt(here));
            }
        } else if (c == u'[') {
            if (openedAt)
                malformed(markup, "a selection inside a selection");
            openedAt = here;
        } else if (c == u']') {
            if (!openedAt)
                malformed(markup, "a \"]\" without \"[\"");
            const qsizetype caret = caretInside.value_or(here);
            if (caret != *openedAt && caret != here)
                malformed(markup, "a caret inside a selection");
            selections.push_back({caret == here ? *openedAt : here, caret});
            openedAt.reset();
            caretInside.reset();
        } else {
            result.text += c;
        }
    }
    if (openedAt)
        malformed(markup, "an unclosed \"[\"");
    if (selections.empty())
        malformed(markup, "no caret");
    result.selections = Selections(std::move(selections), main.value_or(0));
    return result;
}

QString toMarkup(const QString &text, const Selections &selections)
{
    std::vector<std::size_t> order(selections.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return selections[i].start(); });
    const bool markMain = order.front() != selections.mainIndex();

    QString out;
    qsizetype copied = 0;
    const auto copyTo = [&](qsizetype offset) {
        offset = std::clamp<qsizetype>(offset, copied, text.size());
        for (; copied < offset; ++copied) {
            if (isMark(text[copied]))
                out += u'\\';
            out += text[copied];
        }
    };
    for (const std::size_t i : order) {
        const Selection &selection = selections[i];
        const QChar caretMark = markMain && i == selections.mainIndex() ? u'^' : u'|';
        copyTo(selection.start());
        if (selection.isEmpty()) {
            out += caretMark;
            continue;
        }
        out += u'[';
        if (selection.caret < selection.anchor)
            out += caretMark;
        copyTo(selection.end());
        if (selection.caret > selection.anchor)
            out += caretMark;
        out += u']';
    }
    copyTo(text.size());
    return out;
}

} // namespace mirtex::test
