#include "core/editor/DocumentSummary.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextBoundaryFinder>

namespace mirtex {

namespace {

bool isWordUnit(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c.isMark() || c.isSurrogate();
}

QString tr(const char *text)
{
    return QCoreApplication::translate("DocumentSummary", text);
}

} // namespace

TextCounts countText(QStringView text)
{
    TextCounts counts;
    counts.lines = text.count(u'\n') + 1;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    qsizetype clusters = 0;
    while (graphemes.toNextBoundary() != -1)
        ++clusters;
    counts.characters = clusters;
    counts.charactersWithoutLineBreaks = clusters - (counts.lines - 1);
    bool inWord = false;
    for (const QChar c : text) {
        const bool word = isWordUnit(c);
        if (word && !inWord)
            ++counts.words;
        inWord = word;
    }
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text[i].unicode();
        if (u < 0x80)
            bytes += 1;
        else if (u < 0x800)
            bytes += 2;
        else if (QChar::isHighSurrogate(u) && i + 1 < text.size()
                 && QChar::isLowSurrogate(text[i + 1].unicode())) {
            bytes += 4;
            ++i;
        } else
            bytes += 3;
    }
    counts.utf8Bytes = bytes;
    return counts;
}

QString summaryText(QStringView text, const Selections &selections)
{
    const QLocale locale;
    auto n = [&locale](qsizetype value) { return locale.toString(qlonglong(value)); };
    const TextCounts all = countText(text);
    QStringList lines{
        tr("Lunghezza del documento: %1 caratteri").arg(n(all.characters)),
        tr("Caratteri (senza a capo): %1").arg(n(all.charactersWithoutLineBreaks)),
        tr("Parole: %1").arg(n(all.words)),
        tr("Righe: %1").arg(n(all.lines)),
        tr("Byte in UTF-8: %1").arg(n(all.utf8Bytes)),
    };
    TextCounts selected;
    qsizetype selectedRanges = 0;
    for (const Selection &selection : selections) {
        if (selection.isEmpty())
            continue;
        const TextCounts one = countText(text.sliced(selection.start(), selection.range().length));
        selected.characters += one.characters;
        selected.charactersWithoutLineBreaks += one.charactersWithoutLineBreaks;
        selected.words += one.words;
        selected.lines += one.lines;
        ++selectedRanges;
    }
    if (selectedRanges > 0) {
        lines.append(QString());
        lines.append(tr("Selezione: %1 caratteri (%2 senza a capo), %3 parole, %4 righe")
                         .arg(n(selected.characters),
                              n(selected.charactersWithoutLineBreaks),
                              n(selected.words),
                              n(selected.lines)));
        if (selectedRanges > 1)
            lines.append(tr("Selezioni: %1").arg(n(selectedRanges)));
    }
    return lines.join(u'\n');
}

QString summaryTitle(const QString &documentName)
{
    return tr("Riepilogo di “%1”").arg(documentName);
}

} // namespace mirtex
