#include "ui/editor/EditorAnnotations.h"

#include "core/app/Preferences.h"
#include "core/document/Utf8Codec.h"
#include "core/editor/BraceMatch.h"
#include "core/editor/SmartHighlight.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QFutureWatcher>
#include <QPointer>
#include <QTimer>
#include <QtConcurrent>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {
constexpr int kBookmarkMarker = 1;
constexpr int kSmartIndicator = 8;
constexpr int kBraceIndicator = 9;
constexpr int kMarkIndicator = 10;
// Quiet time before the work that follows a burst of edits or caret moves.
constexpr int kAfterEditMs = 60;
constexpr int kAfterSelectionMs = 120;
} // namespace

EditorAnnotations::EditorAnnotations(EditorView &view, Preferences &prefs)
    : QObject(&view)
    , m_view(view)
    , m_prefs(prefs)
    , m_afterEdit(new QTimer(this))
    , m_afterSelection(new QTimer(this))
{
    m_afterEdit->setSingleShot(true);
    m_afterEdit->setInterval(kAfterEditMs);
    m_afterSelection->setSingleShot(true);
    m_afterSelection->setInterval(kAfterSelectionMs);
    connect(m_afterEdit, &QTimer::timeout, this, &EditorAnnotations::runAfterEdit);
    connect(m_afterSelection, &QTimer::timeout, this, &EditorAnnotations::runSelectionWork);
    connect(&view, &EditorView::textEdited, this, &EditorAnnotations::onEdited);
    connect(&view, &EditorView::caretMoved, this, &EditorAnnotations::onCaretMoved);
    connect(&prefs, &Preferences::changed, this, [this](Preferences::Field field) {
        if (field == Preferences::Field::smartHighlight || field == Preferences::Field::braceMatch)
            runSelectionWork();
    });
}

EditorAnnotations::~EditorAnnotations()
{
    m_smartStop.request_stop();
}

void EditorAnnotations::configurePane(EditorPane *pane)
{
    pane->SendScintilla(Sci::SCI_MARKERDEFINE, kBookmarkMarker, Sci::SC_MARK_BOOKMARK);
    pane->SendScintilla(Sci::SCI_MARKERSETFORE, kBookmarkMarker, m_colors.bookmark);
    pane->SendScintilla(Sci::SCI_MARKERSETBACK, kBookmarkMarker, m_colors.bookmark);
    pane->SendScintilla(Sci::SCI_SETMARGINMASKN, 1, 1 << kBookmarkMarker);
    const std::pair<int, QColor> indicators[] = {{kSmartIndicator, m_colors.smartHighlight},
                                                 {kBraceIndicator, m_colors.braceMatch},
                                                 {kMarkIndicator, m_colors.mark}};
    for (const auto &[indicator, colour] : indicators) {
        pane->SendScintilla(Sci::SCI_INDICSETSTYLE, indicator, Sci::INDIC_FULLBOX);
        pane->SendScintilla(Sci::SCI_INDICSETFORE, indicator, colour);
        pane->SendScintilla(Sci::SCI_INDICSETALPHA, static_cast<unsigned long>(indicator), 255L);
        pane->SendScintilla(
            Sci::SCI_INDICSETOUTLINEALPHA, static_cast<unsigned long>(indicator), 0L);
        pane->SendScintilla(Sci::SCI_INDICSETUNDER, indicator, 1L);
    }
    if (!pane->property("mirtexBookmarkClicks").toBool()) {
        pane->setProperty("mirtexBookmarkClicks", true);
        connect(pane, &Sci::SCN_MARGINCLICK, this, [this, pane](int position, int, int margin) {
            if (margin == 1)
                toggleBookmark(pane->SendScintilla(Sci::SCI_LINEFROMPOSITION, position));
        });
    }
}

void EditorAnnotations::applyColors(const EditorColors &colors)
{
    m_colors = colors;
    for (EditorPane *pane : {m_view.primaryPane(), m_view.secondaryPane()}) {
        if (pane)
            configurePane(pane);
    }
}

void EditorAnnotations::onEdited(TextRange editedInNewText, qsizetype changeInLength)
{
    const AnnotationChanges changes = m_model.adjustAfterEdit(editedInNewText, changeInLength);
    m_bookmarksMoved = m_bookmarksMoved || changes.bookmarks;
    if (changes.marks)
        paintRanges(kMarkIndicator, m_model.markRanges);
    m_afterEdit->start(); // a burst of edits restarts the quiet time
}

void EditorAnnotations::onCaretMoved()
{
    m_afterSelection->start();
}

void EditorAnnotations::runAfterEdit()
{
    if (m_bookmarksMoved) {
        m_bookmarksMoved = false;
        paintBookmarks();
    }
    runSelectionWork();
}

void EditorAnnotations::runSelectionWork()
{
    m_afterSelection->stop();
    updateBraces();
    startSmartHighlight();
}

void EditorAnnotations::textReplaced()
{
    m_smartStop.request_stop();
    m_model.smartRanges.clear();
    m_model.braceRanges.clear();
    paintRanges(kSmartIndicator, {});
    paintRanges(kBraceIndicator, {});
    paintBookmarks();
}

void EditorAnnotations::updateBraces()
{
    m_model.braceRanges.clear();
    if (m_prefs.braceMatch()) {
        // Only a window around the caret is read: a match farther than the scan limit is not shown.
        const qsizetype caret = m_view.caretOffset();
        const qsizetype from = std::max<qsizetype>(0, caret - kBraceScanLimit - 1);
        const qsizetype to = std::min(m_view.textLength(), caret + kBraceScanLimit + 1);
        const QString text = m_view.positions().text({from, to - from});
        if (const auto match = matchBraces(text, caret - from)) {
            m_model.braceRanges.push_back({match->brace.location + from, match->brace.length});
            if (match->partner)
                m_model.braceRanges.push_back(
                    {match->partner->location + from, match->partner->length});
        }
    }
    paintRanges(kBraceIndicator, m_model.braceRanges);
}

void EditorAnnotations::startSmartHighlight()
{
    m_smartStop.request_stop();
    m_smartStop = std::stop_source();
    const quint64 generation = ++m_smartGeneration;
    const TextRange selection = m_view.selection();
    if (!m_prefs.smartHighlight() || selection.length < 1
        || selection.length > kSmartWordMaxLength) {
        m_model.smartRanges.clear();
        paintRanges(kSmartIndicator, {});
        return;
    }
    // Share the editor's UTF-16 snapshot when it is current; otherwise the worker converts a copy
    // of the bytes, so the main thread never converts the whole text.
    const std::optional<QString> snapshot = m_view.readySnapshot();
    const QByteArray bytes = snapshot ? QByteArray() : m_view.utf8Text();
    auto *watcher = new QFutureWatcher<std::vector<TextRange>>(this);
    connect(watcher,
            &QFutureWatcher<std::vector<TextRange>>::finished,
            this,
            [this, watcher, generation]() {
                watcher->deleteLater();
                if (generation != m_smartGeneration)
                    return; // a newer selection or edit superseded this search
                m_model.smartRanges = watcher->result();
                paintRanges(kSmartIndicator, m_model.smartRanges);
            });
    watcher->setFuture(
        QtConcurrent::run([snapshot, bytes, selection, stop = m_smartStop.get_token()]() {
            const QString text = snapshot ? *snapshot : Utf8Codec::toUtf16(bytes);
            return findSmartHighlights(text, selection, kSmartRangesLimit, stop);
        }));
}

void EditorAnnotations::paintRanges(int indicator, const std::vector<TextRange> &ranges)
{
    EditorPane *pane = m_view.primaryPane();
    const TextPositions &positions = m_view.positions();
    pane->SendScintilla(Sci::SCI_SETINDICATORCURRENT, indicator);
    pane->SendScintilla(Sci::SCI_INDICATORCLEARRANGE, 0L, long(positions.byteLength()));
    for (const TextRange &range : ranges) {
        const qsizetype from = positions.toByte(range.location);
        const qsizetype to = positions.toByte(range.end());
        if (to > from)
            pane->SendScintilla(Sci::SCI_INDICATORFILLRANGE, long(from), long(to - from));
    }
}

void EditorAnnotations::paintBookmarks()
{
    EditorPane *pane = m_view.primaryPane();
    const TextPositions &positions = m_view.positions();
    pane->SendScintilla(Sci::SCI_MARKERDELETEALL, kBookmarkMarker);
    for (const qint64 offset : m_model.bookmarkOffsets)
        pane->SendScintilla(
            Sci::SCI_MARKERADD, long(positions.lineOfUtf16(offset)), kBookmarkMarker);
}

void EditorAnnotations::toggleBookmark(qsizetype lineIndex)
{
    m_model.toggleBookmark(lineIndex, m_view.text());
    paintBookmarks();
}

void EditorAnnotations::setMarkRanges(std::vector<TextRange> ranges)
{
    m_model.markRanges = std::move(ranges);
    paintRanges(kMarkIndicator, m_model.markRanges);
}

std::vector<qsizetype> EditorAnnotations::bookmarkedLines() const
{
    std::vector<qsizetype> lines;
    const TextPositions &positions = m_view.positions();
    for (const qint64 offset : m_model.bookmarkOffsets)
        lines.push_back(positions.lineOfUtf16(offset));
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
}

void EditorAnnotations::setBookmarkedLines(const std::vector<qsizetype> &lines)
{
    m_model.setBookmarkedLines(lines, m_view.text());
    paintBookmarks();
}

} // namespace mirtex
