#include "ui/editor/EditorFolding.h"

#include "core/app/Preferences.h"
#include "core/editor/FoldDetection.h"
#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/FoldOverlay.h"
#include "ui/editor/PaneSelections.h"
#include "ui/editor/TextPositions.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QThreadPool>

#include <cstdio>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {

// Above these, changes to the hidden lines take the ways that cost Scintilla less per line.
constexpr std::size_t kManySpans = 64;
constexpr qint64 kManyLines = 10'000;

// One serial queue of low priority: a newer detection supersedes an older one anyway.
QThreadPool *foldQueue()
{
    static QThreadPool *queue = [] {
        auto *pool = new QThreadPool;
        pool->setMaxThreadCount(1);
        pool->setObjectName(QStringLiteral("mirtex.fold"));
        pool->setThreadPriority(QThread::LowPriority);
        QObject::connect(
            QCoreApplication::instance(), &QObject::destroyed, [pool] { pool->waitForDone(); });
        return pool;
    }();
    return queue;
}

// Shows every line of the pane at once. Scintilla shows lines one by one, at a cost per line that
// grows with the number of hidden runs (a quarter of a second for a million folded lines); a pane
// that takes its document again starts with every line shown. What the pane keeps of its own
// about the document is set back: the selections, the line at the top and the horizontal scroll.
void showEveryLine(EditorPane *pane)
{
    struct Range
    {
        long anchor, caret, anchorSpace, caretSpace;
    };

    const bool rectangular = pane->SendScintilla(Sci::SCI_SELECTIONISRECTANGLE) != 0;
    const long count = pane->SendScintilla(Sci::SCI_GETSELECTIONS);
    const long main = pane->SendScintilla(Sci::SCI_GETMAINSELECTION);
    std::vector<Range> ranges;
    for (long i = 0; i < count; ++i)
        ranges.push_back({pane->SendScintilla(Sci::SCI_GETSELECTIONNANCHOR, i),
                          pane->SendScintilla(Sci::SCI_GETSELECTIONNCARET, i),
                          pane->SendScintilla(Sci::SCI_GETSELECTIONNANCHORVIRTUALSPACE, i),
                          pane->SendScintilla(Sci::SCI_GETSELECTIONNCARETVIRTUALSPACE, i)});
    const Range box{pane->SendScintilla(Sci::SCI_GETRECTANGULARSELECTIONANCHOR),
                    pane->SendScintilla(Sci::SCI_GETRECTANGULARSELECTIONCARET),
                    pane->SendScintilla(Sci::SCI_GETRECTANGULARSELECTIONANCHORVIRTUALSPACE),
                    pane->SendScintilla(Sci::SCI_GETRECTANGULARSELECTIONCARETVIRTUALSPACE)};
    const long topLine = pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE,
                                             pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
    const long xOffset = pane->SendScintilla(Sci::SCI_GETXOFFSET);

    // Held while the pane lets go of it, so that a document no other pane shows survives.
    const long document = pane->SendScintilla(Sci::SCI_GETDOCPOINTER);
    pane->SendScintilla(Sci::SCI_ADDREFDOCUMENT, 0UL, document);
    pane->SendScintilla(Sci::SCI_SETDOCPOINTER, 0UL, document);
    pane->SendScintilla(Sci::SCI_RELEASEDOCUMENT, 0UL, document);

    if (rectangular) {
        pane->SendScintilla(Sci::SCI_SETRECTANGULARSELECTIONANCHOR, box.anchor);
        pane->SendScintilla(Sci::SCI_SETRECTANGULARSELECTIONCARET, box.caret);
        pane->SendScintilla(Sci::SCI_SETRECTANGULARSELECTIONANCHORVIRTUALSPACE, box.anchorSpace);
        pane->SendScintilla(Sci::SCI_SETRECTANGULARSELECTIONCARETVIRTUALSPACE, box.caretSpace);
    } else if (!ranges.empty()) {
        for (long i = 0; i < count; ++i) {
            const Range &r = ranges[std::size_t(i)];
            pane->SendScintilla(
                i == 0 ? Sci::SCI_SETSELECTION : Sci::SCI_ADDSELECTION, r.caret, r.anchor);
            pane->SendScintilla(Sci::SCI_SETSELECTIONNANCHORVIRTUALSPACE, i, r.anchorSpace);
            pane->SendScintilla(Sci::SCI_SETSELECTIONNCARETVIRTUALSPACE, i, r.caretSpace);
        }
        pane->SendScintilla(Sci::SCI_SETMAINSELECTION, main);
    }
    pane->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE,
                        pane->SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, topLine));
    pane->SendScintilla(Sci::SCI_SETXOFFSET, xOffset);
}

} // namespace

// The lines of the live text, from Scintilla's own line table and UTF-16 line index.
class EditorFolding::Lines final : public LineLookup
{
public:
    explicit Lines(EditorView &view)
        : m_view(view)
    {}

    qint64 textLength() const override { return m_view.positions().utf16Length(); }

    qint64 lineCount() const override { return pane()->SendScintilla(Sci::SCI_GETLINECOUNT); }

    qint64 lineStart(qint64 lineIndex) const override
    {
        const long line = long(std::clamp<qint64>(lineIndex, 0, lineCount() - 1));
        return pane()->SendScintilla(
            Sci::SCI_INDEXPOSITIONFROMLINE, line, long(Sci::SC_LINECHARACTERINDEX_UTF16));
    }

    qint64 lineOf(qint64 utf16Offset) const override
    {
        return m_view.positions().lineOfUtf16(utf16Offset);
    }

private:
    EditorPane *pane() const { return m_view.primaryPane(); }

    EditorView &m_view;
};

EditorFolding::EditorFolding(EditorView &view, const Preferences &prefs)
    : QObject(&view)
    , m_view(view)
    , m_prefs(prefs)
    , m_lines(std::make_unique<Lines>(view))
    , m_overlay(std::make_unique<FoldOverlay>(*this))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &EditorFolding::startDetection);
    connect(&view, &EditorView::textEdited, this, &EditorFolding::onEdited);
    // New tokens from a background pass may move the skip ranges.
    view.highlighter().setOnTokensChanged([this] {
        if (m_style == FoldStyle::braces || m_style == FoldStyle::tags)
            schedule(0);
    });
}

// The highlighter is deleted before this object (it was made first), so its callback to this
// object never outlives it.
EditorFolding::~EditorFolding() = default;

void EditorFolding::configurePane(EditorPane *pane)
{
    pane->setOverlay(m_overlay.get());
    pane->SendScintilla(Sci::SCI_SETMARGINTYPEN, 2L, long(Sci::SC_MARGIN_SYMBOL));
    pane->SendScintilla(Sci::SCI_SETMARGINMASKN, 2L, 0L);
    pane->SendScintilla(Sci::SCI_SETMARGINSENSITIVEN, 2L, 0L);
    pane->SendScintilla(Sci::SCI_SETMARGINWIDTHN, 2L, m_style == FoldStyle::none ? 0L : 14L);
    std::erase_if(m_panes, [](const PaneLines &p) { return !p.pane; });
    m_panes.push_back({pane, {}, {}});
    applyTo(m_panes.back());
}

void EditorFolding::applyColors(const EditorColors &colors)
{
    m_overlay->setColors(colors);
    repaint();
}

void EditorFolding::updateMargins()
{
    for (EditorPane *pane : {m_view.primaryPane(), m_view.secondaryPane()}) {
        if (pane)
            pane->SendScintilla(
                Sci::SCI_SETMARGINWIDTHN, 2L, m_style == FoldStyle::none ? 0L : 14L);
    }
}

void EditorFolding::textLoaded()
{
    m_lineCount = m_lines->lineCount();
    // A load replaces every line (the new ones are shown): no fold survives it.
    m_state.clear();
    m_target.clear();
    for (PaneLines &p : m_panes)
        p = {p.pane, {}, {}};
    repaint();
    schedule(0);
}

void EditorFolding::languageChanged()
{
    const QString id = m_view.highlighter().language()->id();
    m_style = foldStyleFor(id);
    m_htmlTags = foldsHtmlTags(id);
    updateMargins();
    if (m_style == FoldStyle::none) {
        ++m_generation;
        m_timer.stop();
        changed(m_state.clear());
        return;
    }
    schedule(0);
}

void EditorFolding::preferencesChanged()
{
    if (m_style == FoldStyle::indentation)
        schedule(0);
}

void EditorFolding::schedule(int delayMs)
{
    ++m_generation; // a detection in flight is for an older text
    if (m_style == FoldStyle::none)
        return;
    m_timer.start(delayMs);
}

void EditorFolding::detectNow()
{
    if (m_style == FoldStyle::none || !isDetectionPending())
        return;
    m_timer.stop();
    ++m_generation;
    const QString text = m_view.text();
    const QList<Token> tokens = m_view.highlighter().tokens();
    FoldInput input{text, m_style, m_htmlTags, &tokens, m_prefs.tabWidth()};
    install(m_generation, detectFoldRegions(input));
}

void EditorFolding::startDetection()
{
    if (m_style == FoldStyle::none)
        return;
    // The text and its tokens as they stand now (the snapshot is shared, not copied).
    const QString text = m_view.text();
    const QList<Token> tokens = m_view.highlighter().tokens();
    const FoldStyle style = m_style;
    const bool html = m_htmlTags;
    const int tabWidth = m_prefs.tabWidth();
    const quint64 generation = m_generation;
    if (text.size() < kBackgroundFrom) {
        install(generation, detectFoldRegions({text, style, html, &tokens, tabWidth}));
        return;
    }
    ++m_running;
    const QPointer<EditorFolding> self(this);
    foldQueue()->start([text, tokens, style, html, tabWidth, generation, self] {
        QElapsedTimer clock;
        clock.start();
        std::vector<FoldRegion> regions = detectFoldRegions({text, style, html, &tokens, tabWidth});
        if (qEnvironmentVariableIsSet("MIRTEX_DEBUG")) {
            std::printf("fold detection: %zu blocks in %.3f s\n",
                        regions.size(),
                        double(clock.nsecsElapsed()) / 1e9);
            std::fflush(stdout);
        }
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, generation, regions = std::move(regions)]() mutable {
                if (!self)
                    return;
                --self->m_running;
                self->install(generation, std::move(regions));
            },
            Qt::QueuedConnection);
    });
}

void EditorFolding::install(quint64 generation, std::vector<FoldRegion> regions)
{
    if (generation != m_generation)
        return; // the text changed since: a newer detection is on its way
    bool hiddenChanged = m_state.installRegions(std::move(regions), *m_lines);
    if (m_restore) {
        for (qint64 line : *m_restore)
            hiddenChanged = m_state.fold(line, *m_lines) || hiddenChanged;
        m_restore.reset();
    }
    if (hiddenChanged) {
        syncPanes();
        moveCaretsOutOfHiddenText();
    }
    if (auto then = std::exchange(m_afterRestore, {}))
        then();
    repaint();
    Q_EMIT foldsChanged();
}

void EditorFolding::onEdited(TextRange editedInNewText, qsizetype changeInLength)
{
    const qint64 lineCount = m_lines->lineCount();
    const qint64 firstLine = m_lines->lineOf(editedInNewText.location);
    const qint64 newLast = m_lines->lineOf(editedInNewText.end());
    const LineEdit edit{firstLine, newLast - (lineCount - m_lineCount), newLast};
    m_lineCount = lineCount;
    const FoldCarry carry = m_state.carryThroughEdit(editedInNewText, changeInLength);
    if (carry.hiddenChanged || !m_target.empty())
        followEdit(edit, !carry.reshaped && !touchesHiddenText(editedInNewText));
    if (m_style != FoldStyle::none)
        schedule(kDelayAfterEditMs);
}

bool EditorFolding::touchesHiddenText(TextRange range) const
{
    const std::vector<TextRange> &hidden = m_state.hiddenRanges();
    // The first hidden range ending at or after the edit's start (less the header's line break).
    auto it = std::lower_bound(hidden.begin(),
                               hidden.end(),
                               range.location,
                               [](const TextRange &h, qint64 at) { return h.end() < at; });
    return it != hidden.end() && it->location - 1 <= range.end();
}

LineSpans EditorFolding::spansOfHiddenRanges() const
{
    LineSpans spans;
    spans.reserve(m_state.hiddenRanges().size());
    for (const TextRange &range : m_state.hiddenRanges()) {
        const qint64 first = std::max<qint64>(1, m_lines->lineOf(range.location));
        const qint64 last = m_lines->lineOf(range.end() - 1);
        if (last < first)
            continue;
        if (!spans.empty() && first <= spans.back().last + 1)
            spans.back().last = std::max(spans.back().last, last);
        else
            spans.push_back({first, last});
    }
    return spans;
}

void EditorFolding::followEdit(const LineEdit &edit, bool onlyMoved)
{
    // An edit away from hidden text that only moved folds leaves every hidden line where the
    // panes moved it; otherwise the lines it touched are set anew.
    m_target = onlyMoved ? shiftSpans(m_target, edit) : spansOfHiddenRanges();
    for (PaneLines &p : m_panes) {
        p.applied = shiftSpans(p.applied, edit);
        p.touched = shiftSpans(p.touched, edit);
        if (!onlyMoved)
            p.touched = uniteSpans(p.touched, {{edit.firstLine, edit.newLastLine}});
    }
    // The first pane reports the edit once it has moved its own lines; the others move theirs
    // after this notice, so they catch up once the edit is complete.
    for (PaneLines &p : m_panes) {
        if (p.pane == m_view.primaryPane())
            applyTo(p);
    }
    if (m_panes.size() > 1 && !m_catchUpPosted) {
        m_catchUpPosted = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_catchUpPosted = false;
                syncPanes(false);
            },
            Qt::QueuedConnection);
    }
}

void EditorFolding::syncPanes(bool recompute)
{
    if (recompute)
        m_target = spansOfHiddenRanges();
    std::erase_if(m_panes, [](const PaneLines &p) { return !p.pane; });
    for (PaneLines &p : m_panes)
        applyTo(p);
}

void EditorFolding::applyTo(PaneLines &p)
{
    const SpanChanges changes = spanChanges(p.applied, m_target, p.touched);
    p.applied = m_target;
    p.touched.clear();
    // Every call redraws and resets the scroll bar, which costs more than hiding the lines when
    // thousands of blocks fold at once (fold all): those wait for the end of the run.
    // Showing or hiding a line costs Scintilla more the more runs of hidden lines there are, so
    // large changes take the cheaper way: every line shown by a reset when nothing stays hidden,
    // and many blocks hidden as one run with the lines between them shown again.
    const bool showAll = m_target.empty() && !changes.show.empty()
                         && changes.show.back().last - changes.show.front().first >= kManyLines;
    const bool hideAsOne = changes.hide.size() > kManySpans;
    const bool many
        = showAll || hideAsOne || changes.show.size() + changes.hide.size() > kManySpans;
    const QSignalBlocker quietPane(many ? p.pane.data() : nullptr);
    const QSignalBlocker quietBar(many ? p.pane->verticalScrollBar() : nullptr);
    if (many)
        p.pane->setUpdatesEnabled(false);
    if (showAll) {
        showEveryLine(p.pane);
    } else {
        for (const LineSpan &span : changes.show)
            p.pane->SendScintilla(Sci::SCI_SHOWLINES, long(span.first), long(span.last));
    }
    if (hideAsOne) {
        const LineSpans hull{{changes.hide.front().first, changes.hide.back().last}};
        p.pane->SendScintilla(Sci::SCI_HIDELINES, long(hull[0].first), long(hull[0].last));
        for (const LineSpan &span : subtractSpans(hull, m_target))
            p.pane->SendScintilla(Sci::SCI_SHOWLINES, long(span.first), long(span.last));
    } else {
        for (const LineSpan &span : changes.hide)
            p.pane->SendScintilla(Sci::SCI_HIDELINES, long(span.first), long(span.last));
    }
    if (many)
        p.pane->setUpdatesEnabled(true);
}

void EditorFolding::moveCaretsOutOfHiddenText()
{
    if (m_state.hiddenRanges().empty())
        return;
    for (EditorPane *pane : {m_view.primaryPane(), m_view.secondaryPane()}) {
        if (!pane)
            continue;
        const Selections selections = readSelections(pane, m_view.positions());
        std::vector<Selection> moved;
        bool any = false;
        for (const Selection &s : selections) {
            const Selection m{m_state.visibleOffset(s.anchor), m_state.visibleOffset(s.caret)};
            any = any || m != s;
            moved.push_back(m);
        }
        if (any)
            writeSelections(pane, m_view.positions(), Selections(moved, selections.mainIndex()));
    }
}

void EditorFolding::repaint()
{
    for (EditorPane *pane : {m_view.primaryPane(), m_view.secondaryPane()}) {
        if (pane)
            pane->viewport()->update();
    }
}

bool EditorFolding::changed(bool hiddenChanged)
{
    if (hiddenChanged) {
        syncPanes();
        moveCaretsOutOfHiddenText();
        repaint();
        Q_EMIT foldsChanged();
    }
    return hiddenChanged;
}

qint64 EditorFolding::caretLine() const
{
    return m_lines->lineOf(m_view.caretOffset());
}

bool EditorFolding::fold(qint64 lineIndex)
{
    detectNow();
    return changed(m_state.fold(lineIndex, *m_lines));
}

bool EditorFolding::unfold(qint64 lineIndex)
{
    return changed(m_state.unfold(lineIndex, *m_lines));
}

bool EditorFolding::toggle(qint64 lineIndex)
{
    return isFolded(lineIndex) ? unfold(lineIndex) : fold(lineIndex);
}

bool EditorFolding::isFolded(qint64 lineIndex) const
{
    return m_state.isFolded(lineIndex, *m_lines);
}

bool EditorFolding::foldCurrentBlock()
{
    detectNow();
    return changed(m_state.foldCurrentBlock(caretLine(), *m_lines));
}

bool EditorFolding::unfoldCurrentBlock()
{
    return unfold(caretLine());
}

bool EditorFolding::foldAll()
{
    detectNow();
    return changed(m_state.foldAll(*m_lines));
}

bool EditorFolding::unfoldAll()
{
    return changed(m_state.unfoldAll());
}

bool EditorFolding::foldLevel(int depth)
{
    detectNow();
    return changed(m_state.foldLevel(depth, *m_lines));
}

bool EditorFolding::foldAllExceptCurrentBlock()
{
    detectNow();
    return changed(m_state.foldAllExcept(caretLine(), *m_lines));
}

bool EditorFolding::reveal(TextRange range)
{
    return changed(m_state.unfoldAround(range));
}

std::vector<qint64> EditorFolding::foldedLines() const
{
    if (m_restore)
        return *m_restore; // not yet applied
    return m_state.foldedLines(*m_lines);
}

void EditorFolding::restoreFoldedLines(std::vector<qint64> lines, std::function<void()> then)
{
    if (!lines.empty() && isDetectionPending() && m_style != FoldStyle::none) {
        m_restore = std::move(lines);
        m_afterRestore = std::move(then);
        return;
    }
    if (m_style == FoldStyle::none) {
        if (!lines.empty())
            m_restore = std::move(lines);
    } else {
        bool hiddenChanged = false;
        for (qint64 line : lines)
            hiddenChanged = m_state.fold(line, *m_lines) || hiddenChanged;
        changed(hiddenChanged);
    }
    if (then)
        then();
}

} // namespace mirtex
