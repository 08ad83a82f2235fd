#include "DiffPaneMarks.h"

#include "core/compare/WordChanges.h"
#include "ui/editor/EditorPane.h"

#include <Qsci/qsciscintillabase.h>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {

// Above the editor's own markers and indicators.
constexpr int kChangedMarker = 20;
constexpr int kAddedMarker = 21;
constexpr int kRemovedMarker = 22;
constexpr int kFillerMarker = 23;
constexpr int kWordsIndicator = 20;
constexpr int kNumberMargin = 0;

int markerFor(AlignedRowKind kind)
{
    switch (kind) {
    case AlignedRowKind::changed:
        return kChangedMarker;
    case AlignedRowKind::added:
        return kAddedMarker;
    case AlignedRowKind::removed:
        return kRemovedMarker;
    case AlignedRowKind::filler:
        return kFillerMarker;
    case AlignedRowKind::equal:
        break;
    }
    return -1;
}

} // namespace

DiffPaneColors DiffPaneColors::forTheme(bool dark)
{
    if (dark)
        return {QColor(0x4a, 0x43, 0x20),
                QColor(0x1f, 0x44, 0x2a),
                QColor(0x52, 0x26, 0x2a),
                QColor(0x3a, 0x3a, 0x40),
                QColor(0xb0, 0x8a, 0x20),
                QColor(0x88, 0x88, 0x88)};
    return {QColor(0xff, 0xf2, 0xc2),
            QColor(0xd9, 0xf5, 0xd6),
            QColor(0xfb, 0xdc, 0xdc),
            QColor(0xe2, 0xe2, 0xe6),
            QColor(0xf0, 0xb4, 0x30),
            QColor(0x80, 0x80, 0x80)};
}

DiffPaneMarks::DiffPaneMarks(EditorPane &pane, CompareSideIndex side)
    : m_pane(pane)
    , m_side(side)
{}

void DiffPaneMarks::setColors(const DiffPaneColors &colors)
{
    const std::pair<int, QColor> markers[] = {{kChangedMarker, colors.changed},
                                              {kAddedMarker, colors.added},
                                              {kRemovedMarker, colors.removed},
                                              {kFillerMarker, colors.filler}};
    for (const auto &[marker, color] : markers) {
        m_pane.SendScintilla(Sci::SCI_MARKERDEFINE, marker, Sci::SC_MARK_BACKGROUND);
        m_pane.SendScintilla(Sci::SCI_MARKERSETBACK, marker, color);
    }
    m_pane.SendScintilla(Sci::SCI_INDICSETSTYLE, kWordsIndicator, Sci::INDIC_FULLBOX);
    m_pane.SendScintilla(Sci::SCI_INDICSETFORE, kWordsIndicator, colors.changedWords);
    m_pane.SendScintilla(Sci::SCI_INDICSETALPHA, kWordsIndicator, 150);
    m_pane.SendScintilla(Sci::SCI_INDICSETUNDER, kWordsIndicator, 1);
    m_pane.SendScintilla(Sci::SCI_SETCARETLINEVISIBLE, 0);
    m_pane.SendScintilla(Sci::SCI_SETMARGINTYPEN, kNumberMargin, Sci::SC_MARGIN_RTEXT);
}

void DiffPaneMarks::show(const TextDiff *diff, const DiffAlignment *alignment)
{
    m_diff = diff;
    m_alignment = alignment;
    const AlignedSide &side = m_side == CompareSideIndex::left ? alignment->left : alignment->right;
    m_pane.SendScintilla(Sci::SCI_MARGINTEXTCLEARALL);
    for (int marker = kChangedMarker; marker <= kFillerMarker; ++marker)
        m_pane.SendScintilla(Sci::SCI_MARKERDELETEALL, marker);
    for (const LineRange &rows : alignment->hunkRows) {
        for (qsizetype row = rows.start; row < rows.end; ++row)
            m_pane.SendScintilla(Sci::SCI_MARKERADD,
                                 (unsigned long)row,
                                 (long)markerFor(side.kindOfRow[size_t(row)]));
    }
    const TextLines &lines = m_side == CompareSideIndex::left ? diff->left : diff->right;
    const QString widest = QString::number(lines.size()) + QStringLiteral("  ");
    const int width = int(m_pane.SendScintilla(
        Sci::SCI_TEXTWIDTH, Sci::STYLE_LINENUMBER, widest.toUtf8().constData()));
    m_pane.SendScintilla(Sci::SCI_SETMARGINWIDTHN, kNumberMargin, width);
    m_numbered.assign(size_t(alignment->rowCount()), false);
    m_wordsDone.assign(alignment->hunkRows.size(), false);
}

void DiffPaneMarks::paintRows(qsizetype firstRow, qsizetype count)
{
    if (!m_alignment)
        return;
    const AlignedSide &side
        = m_side == CompareSideIndex::left ? m_alignment->left : m_alignment->right;
    const qsizetype end = std::min(firstRow + count, m_alignment->rowCount());
    for (qsizetype row = std::max<qsizetype>(0, firstRow); row < end; ++row) {
        if (m_numbered[size_t(row)])
            continue;
        m_numbered[size_t(row)] = true;
        const int32_t line = side.lineOfRow[size_t(row)];
        if (line < 0)
            continue;
        m_pane.SendScintilla(Sci::SCI_MARGINSETTEXT,
                             (unsigned long)row,
                             QByteArray::number(line + 1).append(' ').constData());
        m_pane.SendScintilla(
            Sci::SCI_MARGINSETSTYLE, (unsigned long)row, (long)Sci::STYLE_LINENUMBER);
    }
    for (qsizetype h = m_alignment->hunkAtRow(firstRow, true);
         h >= 0 && h < qsizetype(m_alignment->hunkRows.size())
         && m_alignment->hunkRows[size_t(h)].start < end;
         ++h)
        paintWords(h);
}

void DiffPaneMarks::paintWords(qsizetype hunk)
{
    if (m_wordsDone[size_t(hunk)])
        return;
    m_wordsDone[size_t(hunk)] = true;
    const DiffHunk &h = m_diff->hunks[size_t(hunk)];
    const qsizetype pairs = std::min(h.left.count(), h.right.count());
    const qsizetype firstRow = m_alignment->hunkRows[size_t(hunk)].start;
    m_pane.SendScintilla(Sci::SCI_SETINDICATORCURRENT, kWordsIndicator);
    // Huge changed stretches (two unrelated texts) are shown as changed lines only.
    for (qsizetype k = 0; k < std::min<qsizetype>(pairs, 2000); ++k) {
        const QStringView left = m_diff->left[h.left.start + k];
        const QStringView right = m_diff->right[h.right.start + k];
        const auto changes = wordChanges(left, right, m_diff->options);
        if (!changes)
            continue;
        const QStringView line = m_side == CompareSideIndex::left ? left : right;
        const auto &ranges = m_side == CompareSideIndex::left ? changes->left : changes->right;
        const long rowStart
            = long(m_pane.SendScintilla(Sci::SCI_POSITIONFROMLINE, (unsigned long)(firstRow + k)));
        for (const TextRange &range : ranges) {
            const long from = rowStart + long(line.left(range.location).toUtf8().size());
            const long length = long(line.mid(range.location, range.length).toUtf8().size());
            m_pane.SendScintilla(Sci::SCI_INDICATORFILLRANGE, (unsigned long)from, length);
        }
    }
}

} // namespace mirtex
