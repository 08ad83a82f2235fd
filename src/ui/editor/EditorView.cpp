#include "ui/editor/EditorView.h"

#include "core/app/Preferences.h"
#include "core/document/HugePageHint.h"
#include "core/editor/AutoClose.h"
#include "core/editor/CaretCommands.h"
#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditBatchApplier.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/PaneHighlightTarget.h"
#include "ui/editor/PaneSelections.h"
#include "ui/editor/ScintillaDocuments.h"
#include "ui/editor/TextPositions.h"
#include "ui/editor/TypingUndoSteps.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QSplitter>
#include <QVBoxLayout>

#include <cstring>

namespace mirtex {

using Sci = QsciScintillaBase;

namespace {
// Texts longer than 8,000,000 UTF-16 units are never coloured, and a UTF-8 text of more than
// three bytes per unit of that is sure to be longer. Their Scintilla document keeps no style
// byte per character, which saves memory the size of the text.
constexpr qsizetype kUnstyledAboveBytes = 3 * 8'000'000;
} // namespace

EditorView::EditorView(Preferences &prefs, QWidget *parent)
    : QWidget(parent)
    , m_prefs(prefs)
    , m_splitter(new QSplitter(this))
    , m_typingSteps(std::make_unique<TypingUndoSteps>())
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);
    m_splitter->setChildrenCollapsible(false);
    m_primary = makePane();
    m_active = m_primary;
    m_positions = std::make_unique<TextPositions>(m_primary);
    m_notices = new EditNotices(m_primary, *m_positions, m_snapshot, this);
    connect(m_notices, &EditNotices::edited, this, &EditorView::textEdited);
    connect(m_notices, &EditNotices::edited, this, &EditorView::followLineCount);
    m_applier = new EditBatchApplier(*this);
    m_highlighter = new SyntaxHighlighter(nullptr, Language::text(), this);
    m_primaryTarget = new PaneHighlightTarget(*this, m_primary, *m_highlighter);
    m_highlighter->attach(m_primaryTarget);
    connect(this, &EditorView::textEdited, m_highlighter, [this](TextRange range, qsizetype delta) {
        m_highlighter->textDidChange(range, delta);
    });
    m_annotations = new EditorAnnotations(*this, prefs);
    m_annotations->configurePane(m_primary);
    m_folding = new EditorFolding(*this, prefs);
    m_folding->configurePane(m_primary);
    applyPreferences();
}

EditorView::~EditorView() = default;

EditorPane *EditorView::makePane()
{
    auto *pane = new EditorPane(m_splitter);
    m_splitter->addWidget(pane);
    pane->applyPreferences(m_prefs);
    pane->setTypingSteps(m_typingSteps.get());
    connect(pane, &EditorPane::contextMenuRequested, this, [this](EditorPane *p, QPoint at) {
        m_active = p;
        Q_EMIT contextMenuRequested(p, at);
    });
    // Typing or pasting over a selection reaches listeners as one replacement.
    connect(pane, &EditorPane::inputStarting, this, [this]() { m_notices->holdDeletions(true); });
    connect(pane, &EditorPane::inputHandled, this, [this]() {
        m_notices->holdDeletions(false);
        flushPendingEdit();
    });
    pane->setAutoCloseHandler([this, pane](QChar typed) { return autoClose(pane, typed); });
    pane->setManyCaretsHandler(
        [this, pane](const QKeyEvent &event) { return keyAtManyCarets(pane, event); });
    pane->setClipboardHandler(
        [this, pane](EditorPane::ClipboardAction action) { return clipboard(pane, int(action)); });
    connect(pane, &EditorPane::focused, this, [this](EditorPane *p) {
        m_active = p;
        Q_EMIT caretMoved();
    });
    connect(pane, &QsciScintilla::cursorPositionChanged, this, [this, pane]() {
        if (pane == m_active)
            Q_EMIT caretMoved();
    });
    connect(pane, &QsciScintilla::selectionChanged, this, [this, pane]() {
        if (pane == m_active)
            Q_EMIT caretMoved();
    });
    connect(pane, &Sci::SCN_ZOOM, this, [this, pane]() {
        Q_EMIT zoomChanged(int(pane->SendScintilla(Sci::SCI_GETZOOM)));
    });
    return pane;
}

EditorPane *EditorView::activePane() const
{
    return m_active;
}

void EditorView::loadText(const QByteArray &utf8)
{
    // The one change of the text that is not an edit, so it does not go through the applier: the
    // first text goes in unobserved and leaves no undo history. QScintilla's accessibility notice
    // of an insertion converts the whole inserted text to UTF-16 and counts characters up to it,
    // and the undo history would copy it, only to be emptied. Room for some typing is reserved up
    // front, so that the first keystroke does not reallocate the whole buffer.
    m_notices->suspend();
    m_primary->SendScintilla(Sci::SCI_SETUNDOCOLLECTION, 0L);
    m_primary->SendScintilla(Sci::SCI_CLEARALL);
    if (utf8.size() > kUnstyledAboveBytes) {
        ScintillaDocuments::replaceWithUnstyled(m_primary);
        m_positions->attachToCurrentDocument();
        m_primary->SendScintilla(Sci::SCI_SETUNDOCOLLECTION, 0L);
    }
    m_primary->SendScintilla(Sci::SCI_ALLOCATE,
                             static_cast<unsigned long>(utf8.size() + utf8.size() / 64 + 4096));
    m_primary->SendScintilla(
        Sci::SCI_APPENDTEXT, static_cast<unsigned long>(utf8.size()), utf8.constData());
    m_primary->SendScintilla(Sci::SCI_SETUNDOCOLLECTION, 1L);
    m_notices->resume(utf8.size());
    m_reference = utf8;
    m_notices->markUnchanged(utf8.size());
    // What the pane would have announced had it seen the insertion (the gutter width follows).
    Q_EMIT m_primary->textChanged();
    Q_EMIT m_primary->linesChanged();
    m_primary->SendScintilla(Sci::SCI_EMPTYUNDOBUFFER);
    m_primary->SendScintilla(Sci::SCI_SETSAVEPOINT);
    m_primary->SendScintilla(Sci::SCI_GOTOPOS, 0L);
    m_applier->forgetHistory();
    m_typingSteps->closeStep();
    m_folding->textLoaded();
}

bool EditorView::applyBatch(const EditBatch &batch)
{
    return m_applier->apply(batch, m_active);
}

void EditorView::beginNamedStep(const QString &label)
{
    m_typingSteps->closeStep();
    m_applier->beginNamedStep(label, m_active);
}

void EditorView::endNamedStep()
{
    m_applier->endNamedStep(m_active);
    m_typingSteps->closeStep();
}

void EditorView::closeUndoStep()
{
    m_typingSteps->closeStep();
}

QString EditorView::undoLabel() const
{
    return m_applier->undoLabel();
}

QString EditorView::redoLabel() const
{
    return m_applier->redoLabel();
}

bool EditorView::autoClose(EditorPane *pane, QChar typed)
{
    // Scintilla types into rectangular and multiple selections itself.
    if (pane->SendScintilla(Sci::SCI_GETSELECTIONS) != 1)
        return false;
    const std::optional<EditBatch> batch
        = autoCloseEdit(typed, readSelections(pane, *m_positions), [this](qsizetype offset) {
              return m_positions->unitAt(offset);
          });
    if (!batch)
        return false;
    if (batch->isEmpty()) { // stepping over a closer moves the caret only
        writeSelections(pane, *m_positions, batch->selectionsAfter);
        pane->SendScintilla(Sci::SCI_SCROLLCARET);
        return true;
    }
    return m_applier->apply(*batch, pane);
}

bool EditorView::keyAtManyCarets(EditorPane *pane, const QKeyEvent &event)
{
    if (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier))
        return false;
    if (pane->SendScintilla(Sci::SCI_SELECTIONISRECTANGLE))
        return false; // Scintilla keeps a rectangle's shape as it types
    const Selections selections = readSelections(pane, *m_positions);
    EditBatch batch;
    if (event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete) {
        batch = deleteAtSelections(text(), selections, event.key() == Qt::Key_Backspace);
    } else {
        const QString typed = event.text();
        if (typed.isEmpty() || !std::ranges::all_of(typed, [](QChar c) { return c.isPrint(); }))
            return false;
        batch = typeAtSelections(selections, typed);
    }
    if (!batch.isEmpty())
        m_applier->apply(batch, pane);
    return true;
}

bool EditorView::clipboard(EditorPane *pane, int action)
{
    // One selection, and copying a rectangle (which Scintilla marks as one), are Scintilla's.
    if (pane->SendScintilla(Sci::SCI_GETSELECTIONS) < 2)
        return false;
    const bool rectangle = pane->SendScintilla(Sci::SCI_SELECTIONISRECTANGLE) != 0;
    const Selections selections = readSelections(pane, *m_positions);
    switch (EditorPane::ClipboardAction(action)) {
    case EditorPane::ClipboardAction::copy:
    case EditorPane::ClipboardAction::cut: {
        if (rectangle)
            return false;
        const QString copied = textOfSelections(text(), selections);
        if (copied.isEmpty())
            return true;
        QApplication::clipboard()->setText(copied);
        if (EditorPane::ClipboardAction(action) == EditorPane::ClipboardAction::cut
            && !pane->isReadOnly())
            m_applier->apply(typeAtSelections(selections, {}), pane);
        return true;
    }
    case EditorPane::ClipboardAction::paste: {
        if (pane->isReadOnly())
            return false;
        const std::optional<EditBatch> batch
            = distributeLines(text(), selections, QApplication::clipboard()->text());
        return batch && m_applier->apply(*batch, pane);
    }
    }
    return false;
}

void EditorView::followLineCount()
{
    // Panes that do not see the change notices themselves (the second pane; every pane of a large
    // text) still resize their line-number gutter.
    const long lines = m_primary->SendScintilla(Sci::SCI_GETLINECOUNT);
    if (lines == m_lineCount)
        return;
    m_lineCount = lines;
    Q_EMIT m_primary->linesChanged();
    if (m_secondary)
        Q_EMIT m_secondary->linesChanged();
}

void EditorView::setLanguage(LanguagePtr language)
{
    m_highlighter->setLanguage(std::move(language));
    m_folding->languageChanged();
}

void EditorView::setSplit(std::optional<Qt::Orientation> orientation)
{
    if (!orientation) {
        if (m_secondary) {
            if (m_active == m_secondary)
                m_active = m_primary;
            m_highlighter->detach(m_secondaryTarget);
            m_secondaryTarget = nullptr; // deleted with its pane
            delete m_secondary;
            m_secondary = nullptr;
            m_primary->setFocus();
        }
        return;
    }
    m_splitter->setOrientation(*orientation);
    if (m_secondary)
        return;
    m_secondary = makePane();
    ScintillaDocuments::share(m_primary, m_secondary);
    m_secondary->applyPreferences(m_prefs);
    m_secondary->applyColors(m_colors);
    setShownLineEnding(m_shownLineEnding);
    m_annotations->configurePane(m_secondary);
    m_folding->configurePane(m_secondary);
    m_secondaryTarget = new PaneHighlightTarget(*this, m_secondary, *m_highlighter);
    m_highlighter->attach(m_secondaryTarget);
    m_secondaryTarget->paintTokens(*m_highlighter);
    m_applier->watchPane(m_secondary);
    m_secondary->setReadOnly(!m_editable);
    m_secondary->SendScintilla(Sci::SCI_SETMODEVENTMASK,
                               0L); // edits are reported by the first pane
    const int half = std::max(1, (orientation == Qt::Horizontal ? width() : height()) / 2);
    m_splitter->setSizes({half, half});
}

std::optional<Qt::Orientation> EditorView::split() const
{
    if (!m_secondary)
        return std::nullopt;
    return m_splitter->orientation();
}

TextRange EditorView::selection() const
{
    const long start = m_active->SendScintilla(Sci::SCI_GETSELECTIONSTART);
    const long end = m_active->SendScintilla(Sci::SCI_GETSELECTIONEND);
    const qsizetype location = m_positions->toUtf16(start);
    return {location, m_positions->utf16Count(start, end)};
}

void EditorView::setSelection(TextRange range)
{
    const qsizetype length = textLength();
    const qsizetype from = std::clamp<qsizetype>(range.location, 0, length);
    const qsizetype to = std::clamp<qsizetype>(range.end(), from, length);
    // A selection shown on purpose (a found match, a line or bookmark jumped to) is never hidden.
    m_folding->reveal({from, to - from});
    m_active->SendScintilla(
        Sci::SCI_SETSEL, long(m_positions->toByte(from)), long(m_positions->toByte(to)));
}

Selections EditorView::selections() const
{
    return readSelections(m_active, *m_positions);
}

void EditorView::setSelections(const Selections &selections)
{
    writeSelections(m_active, *m_positions, selections);
}

qsizetype EditorView::caretOffset() const
{
    return m_positions->toUtf16(m_active->SendScintilla(Sci::SCI_GETCURRENTPOS));
}

qsizetype EditorView::selectionLength() const
{
    return selection().length;
}

int EditorView::caretLineNumber() const
{
    const long caret = m_active->SendScintilla(Sci::SCI_GETCURRENTPOS);
    return int(m_active->SendScintilla(Sci::SCI_LINEFROMPOSITION, caret)) + 1;
}

int EditorView::caretColumnNumber() const
{
    const long caret = m_active->SendScintilla(Sci::SCI_GETCURRENTPOS);
    const long line = m_active->SendScintilla(Sci::SCI_LINEFROMPOSITION, caret);
    const long lineStart = m_active->SendScintilla(Sci::SCI_POSITIONFROMLINE, line);
    return int(m_positions->utf16Count(lineStart, caret)) + 1;
}

int EditorView::firstVisibleLine() const
{
    return int(m_active->SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE));
}

void EditorView::setFirstVisibleLine(int lineIndex)
{
    m_active->SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE, long(std::max(0, lineIndex)));
}

qsizetype EditorView::textLength() const
{
    return m_positions->utf16Length();
}

void EditorView::applyPreferences()
{
    m_primary->applyPreferences(m_prefs);
    if (m_secondary)
        m_secondary->applyPreferences(m_prefs);
    m_folding->preferencesChanged();
}

void EditorView::applyColors(const EditorColors &colors)
{
    m_colors = colors;
    m_primary->applyColors(colors);
    if (m_secondary)
        m_secondary->applyColors(colors);
    m_annotations->applyColors(colors);
    m_folding->applyColors(colors);
}

void EditorView::setShownLineEnding(LineEnding ending)
{
    m_shownLineEnding = ending;
    const QString label = ending == LineEnding::lf ? QString() : toString(ending).toUpper();
    m_primary->setLineEndLabel(label);
    if (m_secondary)
        m_secondary->setLineEndLabel(label);
}

std::optional<QString> EditorView::readySnapshot() const
{
    if (m_notices->hasPending())
        return std::nullopt;
    return m_snapshot.ready();
}

QString EditorView::text() const
{
    // A change not yet reported must reach the snapshot (and its listeners) first.
    m_notices->flush();
    return m_snapshot.get([this]() { return utf8Text(); });
}

void EditorView::flushPendingEdit()
{
    m_notices->flush();
}

QByteArray EditorView::utf8Text() const
{
    const long length = m_primary->SendScintilla(Sci::SCI_GETLENGTH);
    const auto *buffer = static_cast<const char *>(
        m_primary->SendScintillaPtrResult(Sci::SCI_GETCHARACTERPOINTER));
    // A fresh copy of a large text is mostly first-touch page faults; huge pages make it a
    // hundredth of them (the session's periodic copy of a 100 MB document on the main thread).
    QByteArray copy(length, Qt::Uninitialized);
    adviseHugePages(copy.data(), size_t(length));
    std::memcpy(copy.data(), buffer, size_t(length));
    return copy;
}

QByteArray EditorView::utf8Prefix(qsizetype maxBytes) const
{
    const long length
        = std::min<long>(m_primary->SendScintilla(Sci::SCI_GETLENGTH), long(maxBytes));
    const char *start = reinterpret_cast<const char *>(
        m_primary->SendScintilla(Sci::SCI_GETRANGEPOINTER, 0UL, length));
    return QByteArray(start, length);
}

bool EditorView::utf8Equals(const QByteArray &utf8) const
{
    const long length = m_primary->SendScintilla(Sci::SCI_GETLENGTH);
    if (length != utf8.size())
        return false;
    // Scintilla's text has a gap where the last edit was. Reading the text on either side of it
    // leaves it there; asking for the whole buffer would move everything after it.
    const long gap = m_primary->SendScintilla(Sci::SCI_GETGAPPOSITION);
    const auto same = [this, &utf8, gap](long from, long to) {
        for (const auto &[start, end] :
             {std::pair{from, std::min(to, gap)}, std::pair{std::max(from, gap), to}}) {
            if (start >= end)
                continue;
            const auto *text = reinterpret_cast<const char *>(m_primary->SendScintilla(
                Sci::SCI_GETRANGEPOINTER, static_cast<unsigned long>(start), end - start));
            if (std::memcmp(text, utf8.constData() + start, std::size_t(end - start)) != 0)
                return false;
        }
        return true;
    };
    const UnchangedEnds &ends = m_notices->unchangedEnds();
    if (ends.isKnown() && utf8.isSharedWith(m_reference)) {
        // Only the edited middle can differ.
        const long from = long(std::min<qsizetype>(ends.head(), length));
        const long to = std::max(from, long(length - std::min<qsizetype>(ends.tail(), length)));
        if (!same(from, to))
            return false;
    } else {
        // A difference is most likely next to the last edit, so that neighbourhood goes first.
        const long nearFrom = std::max(0L, gap - 4096);
        const long nearTo = std::min(length, gap + 4096);
        if (!same(nearFrom, nearTo) || !same(0, nearFrom) || !same(nearTo, length))
            return false;
        m_reference = utf8;
    }
    m_notices->markUnchanged(length);
    return true;
}

QByteArray EditorView::savedUtf8Text()
{
    m_reference = utf8Text();
    m_notices->markUnchanged(m_reference.size());
    return m_reference;
}

void EditorView::replaceText(const QByteArray &utf8)
{
    const bool wasReadOnly = m_primary->isReadOnly();
    m_primary->setReadOnly(false);
    m_applier->replaceAll(utf8);
    m_primary->setReadOnly(wasReadOnly);
    m_annotations->textReplaced();
}

void EditorView::setEditable(bool editable)
{
    m_editable = editable;
    m_primary->setReadOnly(!editable);
    if (m_secondary)
        m_secondary->setReadOnly(!editable);
}

} // namespace mirtex
