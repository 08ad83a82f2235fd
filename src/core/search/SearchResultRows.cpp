#include "core/search/SearchResultRows.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Search", text);
}

// How much of a long line is kept before its match.
constexpr qsizetype kShownBeforeMatch = 80;

qsizetype indentation(const QString &line)
{
    qsizetype count = 0;
    while (count < line.size() && (line[count] == u' ' || line[count] == u'\t'))
        ++count;
    return count;
}

} // namespace

QString setRowText(const SearchResultSet &set)
{
    return setRowText(set.query, set.scope, hitCount(set), qsizetype(set.files.size()));
}

QString setRowText(const QString &query, const QString &scope, qsizetype hits, qsizetype files)
{
    const QString hitsText
        = hits == 1 ? tr("1 risultato") : QString::number(hits) + tr(" risultati");
    const QString filesText = files == 1 ? tr("1 file") : QString::number(files) + tr(" file");
    return u'\u201C' + query + u'\u201D' + u" ("_s + hitsText + tr(" in ") + filesText
           + u") \u2014 "_s + scope;
}

HitRow hitRow(const SearchHit &hit)
{
    const qsizetype indent = indentation(hit.lineText);
    const QStringView shown = QStringView(hit.lineText).sliced(indent);
    const auto inShown = [&](qsizetype lineOffset) {
        return std::clamp<qsizetype>(lineOffset - indent, 0, shown.size());
    };
    const qsizetype matchStart = inShown(hit.rangeInLine.location);
    const qsizetype matchEnd = inShown(hit.rangeInLine.end());

    qsizetype from = 0;
    qsizetype to = shown.size();
    if (shown.size() > kHitRowShownLength) {
        from = std::max<qsizetype>(0, matchStart - kShownBeforeMatch);
        to = std::min(shown.size(), from + kHitRowShownLength);
    }
    const QString ellipsis = QStringLiteral("\u2026");
    QString text = tr("Riga ") + QString::number(hit.line + 1) + u": "_s;
    if (from > 0)
        text += ellipsis;
    const qsizetype highlightStart = text.size() + std::min(matchStart, to) - from;
    const qsizetype highlightLength = std::max<qsizetype>(0, std::min(matchEnd, to) - matchStart);
    text += shown.sliced(from, to - from);
    if (to < shown.size())
        text += ellipsis;
    return {text, {highlightStart, highlightLength}};
}

} // namespace mirtex
