// The visible lines are searched as a text of their own: they start and end at line boundaries,
// where "^", "$" and the whole-word guards see what they would see in the whole text. A line
// longer than the cap is cut, and a match across the cut is not outlined.
#include "ui/search/LiveMatchHighlighter.h"

#include "core/document/Utf8Codec.h"
#include "core/search/FindModel.h"
#include "core/search/SearchRegex.h"
#include "core/search/SearchStop.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {

// Bytes of one visible stretch searched at most (a screen of very long lines).
constexpr long kVisibleBytesCap = 1 << 20;

struct Counted
{
    qsizetype total = 0;
    qsizetype index = 0; // from 1: the selection is this match; 0: it is none
    bool failed = false;
};

// The whole lines a pane shows, in UTF-16 units.
TextRange visibleLines(EditorView &editor, EditorPane *pane)
{
    const long firstShown = pane->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    const long shown = pane->SendScintilla(Sci::SCI_LINESONSCREEN);
    const long firstLine = pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, firstShown);
    const long lastLine = pane->SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, firstShown + shown + 1);
    const long from = pane->SendScintilla(Sci::SCI_POSITIONFROMLINE, firstLine);
    long to = pane->SendScintilla(Sci::SCI_GETLINEENDPOSITION, lastLine);
    if (to - from > kVisibleBytesCap)
        to = pane->SendScintilla(Sci::SCI_POSITIONBEFORE, from + kVisibleBytesCap);
    return editor.positions().toUtf16Range(from, std::max(from, to));
}

std::vector<TextRange> matchesIn(const SearchRegex &regex, const QString &text, qsizetype base)
{
    std::vector<TextRange> ranges;
    SearchMatcher matcher(regex, text);
    matcher.setRange({0, text.size()}, true);
    while (int(ranges.size()) < LiveMatchHighlighter::kVisibleLimit) {
        const auto match = matcher.next();
        if (!match || !*match)
            break;
        if ((*match)->length > 0)
            ranges.push_back({(*match)->location + base, (*match)->length});
    }
    return ranges;
}

Counted countAll(const SearchRegex &regex, const QString &text, TextRange selection)
{
    Counted counted;
    SearchMatcher matcher(regex, text);
    matcher.setRange({0, text.size()}, true);
    while (true) {
        const auto match = matcher.next();
        if (!match)
            return {0, 0, true};
        if (!*match)
            return counted;
        ++counted.total;
        if (**match == selection && selection.length > 0)
            counted.index = counted.total;
    }
}

} // namespace

LiveMatchHighlighter::LiveMatchHighlighter(CommandContext &context,
                                           FindModel &model,
                                           QObject *parent)
    : QObject(parent)
    , m_context(context)
    , m_model(model)
    , m_debounce(new QTimer(this))
{
    m_pool.setMaxThreadCount(2);
    m_debounce->setSingleShot(true);
    m_debounce->setInterval(kDebounceMs);
    connect(m_debounce, &QTimer::timeout, this, &LiveMatchHighlighter::refresh);
    connect(&model, &FindModel::changed, this, [this] {
        if (m_model.options() != m_lastOptions)
            schedule();
    });
    connect(&context, &CommandContext::changed, this, [this] {
        if (m_context.currentEditor() != m_editor)
            schedule();
    });
}

LiveMatchHighlighter::~LiveMatchHighlighter()
{
    if (m_stop)
        m_stop->store(true);
    m_pool.waitForDone();
}

void LiveMatchHighlighter::setActive(bool active)
{
    if (active == m_active)
        return;
    m_active = active;
    schedule();
    if (!active)
        refresh(); // clear at once
}

void LiveMatchHighlighter::schedule()
{
    m_debounce->start();
}

void LiveMatchHighlighter::follow(EditorView *editor)
{
    if (editor == m_editor)
        return;
    for (const auto &connection : m_editorConnections)
        disconnect(connection);
    m_editorConnections.clear();
    paint(m_editor, {});
    m_editor = editor;
    if (!editor)
        return;
    m_editorConnections.push_back(connect(editor, &EditorView::textEdited, this, [this] {
        ++m_generation; // results in flight describe the old text
        schedule();
    }));
    m_editorConnections.push_back(
        connect(editor, &EditorView::caretMoved, this, &LiveMatchHighlighter::schedule));
    for (EditorPane *pane : {editor->primaryPane(), editor->secondaryPane()}) {
        if (!pane)
            continue;
        m_editorConnections.push_back(connect(pane, &Sci::SCN_UPDATEUI, this, [this](int updated) {
            if (updated & (Sci::SC_UPDATE_V_SCROLL | Sci::SC_UPDATE_H_SCROLL))
                schedule();
        }));
    }
}

void LiveMatchHighlighter::refresh()
{
    m_debounce->stop();
    if (m_stop)
        m_stop->store(true); // the previous request's workers are superseded
    const quint64 generation = ++m_generation;
    m_lastOptions = m_model.options();
    EditorView *editor = m_active ? m_context.currentEditor() : nullptr;
    follow(editor);
    const auto regex = editor ? makeRegex(m_lastOptions) : std::unexpected(SearchError::empty());
    if (!regex) {
        paint(m_editor, {});
        setCounter({});
        m_pending = 0;
        Q_EMIT settled();
        return;
    }
    m_stop = std::make_shared<std::atomic<bool>>(false);
    m_pending = 2;

    std::vector<std::pair<qsizetype, QString>> stretches;
    for (EditorPane *pane : {editor->primaryPane(), editor->secondaryPane()}) {
        if (pane && pane->isVisible()) {
            const TextRange lines = visibleLines(*editor, pane);
            stretches.emplace_back(lines.location, editor->positions().text(lines));
        }
    }
    auto *shown = new QFutureWatcher<std::vector<TextRange>>(this);
    connect(shown, &QFutureWatcher<std::vector<TextRange>>::finished, this, [=, this] {
        shown->deleteLater();
        if (generation != m_generation)
            return;
        paint(m_editor, shown->result());
        settleOne(generation);
    });
    shown->setFuture(QtConcurrent::run(&m_pool, [regex = *regex, stretches, stop = m_stop]() {
        const SearchStopScope scope(*stop);
        std::vector<TextRange> ranges;
        for (const auto &[base, text] : stretches) {
            const std::vector<TextRange> found = matchesIn(regex, text, base);
            ranges.insert(ranges.end(), found.begin(), found.end());
        }
        std::sort(ranges.begin(), ranges.end(), [](TextRange a, TextRange b) {
            return a.location < b.location;
        });
        ranges.erase(std::unique(ranges.begin(), ranges.end()), ranges.end());
        return ranges;
    }));

    // The whole text for the count: the snapshot when current, else bytes converted there.
    const std::optional<QString> snapshot = editor->readySnapshot();
    const QByteArray bytes = snapshot ? QByteArray() : editor->utf8Text();
    const TextRange selection = editor->selection();
    auto *counted = new QFutureWatcher<Counted>(this);
    connect(counted, &QFutureWatcher<Counted>::finished, this, [=, this] {
        counted->deleteLater();
        if (generation != m_generation)
            return;
        const Counted result = counted->result();
        const auto tr
            = [](const char *text) { return QCoreApplication::translate("Search", text); };
        if (result.failed)
            setCounter({});
        else if (result.index > 0)
            setCounter(tr("%1 di %2").arg(result.index).arg(result.total));
        else
            setCounter(SearchStatus::counted(result.total).text);
        settleOne(generation);
    });
    counted->setFuture(
        QtConcurrent::run(&m_pool, [regex = *regex, snapshot, bytes, selection, stop = m_stop]() {
            const SearchStopScope scope(*stop);
            const QString text = snapshot ? *snapshot : Utf8Codec::toUtf16(bytes);
            return countAll(regex, text, selection);
        }));
}

void LiveMatchHighlighter::settleOne(quint64 generation)
{
    if (generation == m_generation && --m_pending == 0)
        Q_EMIT settled();
}

void LiveMatchHighlighter::setCounter(const QString &text)
{
    if (text == m_counter)
        return;
    m_counter = text;
    Q_EMIT counterChanged(text);
}

void LiveMatchHighlighter::paint(EditorView *editor, const std::vector<TextRange> &ranges)
{
    m_shown = editor ? ranges : std::vector<TextRange>{};
    if (!editor)
        return;
    const EditorColors &colors = editor->colors();
    for (EditorPane *pane : {editor->primaryPane(), editor->secondaryPane()}) {
        if (!pane)
            continue;
        // An outlined box, so that matches stay distinct from the filled marks.
        pane->SendScintilla(Sci::SCI_INDICSETSTYLE, kIndicator, Sci::INDIC_ROUNDBOX);
        pane->SendScintilla(Sci::SCI_INDICSETFORE, kIndicator, colors.mark.darker(160));
        pane->SendScintilla(Sci::SCI_INDICSETALPHA, static_cast<unsigned long>(kIndicator), 70L);
        pane->SendScintilla(
            Sci::SCI_INDICSETOUTLINEALPHA, static_cast<unsigned long>(kIndicator), 255L);
        pane->SendScintilla(Sci::SCI_INDICSETUNDER, kIndicator, 1L);
    }
    EditorPane *pane = editor->primaryPane();
    const TextPositions &positions = editor->positions();
    pane->SendScintilla(Sci::SCI_SETINDICATORCURRENT, kIndicator);
    pane->SendScintilla(Sci::SCI_INDICATORCLEARRANGE, 0L, long(positions.byteLength()));
    for (const TextRange &range : ranges) {
        const qsizetype from = positions.toByte(range.location);
        const qsizetype to = positions.toByte(range.end());
        if (to > from)
            pane->SendScintilla(Sci::SCI_INDICATORFILLRANGE, long(from), long(to - from));
    }
}

} // namespace mirtex
