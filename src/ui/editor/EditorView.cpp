#include "ui/editor/EditorView.h"

#include "core/app/Preferences.h"
#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/PaneHighlightTarget.h"
#include "ui/editor/ScintillaDocuments.h"
#include "ui/editor/TextPositions.h"

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
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);
    m_splitter->setChildrenCollapsible(false);
    m_primary = makePane();
    m_active = m_primary;
    m_positions = std::make_unique<TextPositions>(m_primary);
    connect(
        m_primary,
        &Sci::SCN_MODIFIED,
        this,
        [this](int position, int type, const char *text, int length, int, int, int, int, int, int) {
            onModified(position, type, text, length);
        });
    m_highlighter = new SyntaxHighlighter(nullptr, Language::text(), this);
    m_primaryTarget = new PaneHighlightTarget(*this, m_primary, *m_highlighter);
    m_highlighter->attach(m_primaryTarget);
    connect(this, &EditorView::textEdited, m_highlighter, [this](TextRange range, qsizetype delta) {
        m_highlighter->textDidChange(range, delta);
    });
    m_annotations = new EditorAnnotations(*this, prefs);
    m_annotations->configurePane(m_primary);
    applyPreferences();
}

EditorView::~EditorView() = default;

EditorPane *EditorView::makePane()
{
    auto *pane = new EditorPane(m_splitter);
    m_splitter->addWidget(pane);
    pane->applyPreferences(m_prefs);
    connect(pane, &EditorPane::inputHandled, this, &EditorView::flushPendingEdit);
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
    m_loading = true;
    // The first text goes in unobserved: QScintilla's accessibility notice of an insertion
    // converts the whole inserted text to UTF-16 and counts characters up to it, and the undo
    // history would copy it, only to be emptied. Room for some typing is reserved up front, so
    // that the first keystroke does not reallocate the whole buffer.
    const long eventMask = m_primary->SendScintilla(Sci::SCI_GETMODEVENTMASK);
    m_primary->SendScintilla(Sci::SCI_SETMODEVENTMASK, 0L);
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
    // QScintilla's accessibility notice after each change counts the characters from the start
    // of the text up to it: about 4 ns a byte. Large texts therefore only ask for the notices sent
    // before a change, and report each change right after it (next notice, end of the input
    // event, or the next event-loop turn).
    m_deferEdits = utf8.size() > kDeferredEditsAboveBytes;
    m_primary->SendScintilla(
        Sci::SCI_SETMODEVENTMASK,
        m_deferEdits ? long(Sci::SC_MOD_BEFOREINSERT | Sci::SC_MOD_BEFOREDELETE) : eventMask);
    // What the pane would have announced had it seen the insertion (the gutter width follows).
    Q_EMIT m_primary->textChanged();
    Q_EMIT m_primary->linesChanged();
    m_primary->SendScintilla(Sci::SCI_EMPTYUNDOBUFFER);
    m_primary->SendScintilla(Sci::SCI_SETSAVEPOINT);
    m_primary->SendScintilla(Sci::SCI_GOTOPOS, 0L);
    ++m_revision;
    m_loading = false;
}

void EditorView::onModified(int position, int type, const char *text, int length)
{
    if (m_deferEdits) {
        onModifiedDeferred(position, type, length);
        return;
    }
    if (type & Sci::SC_MOD_BEFOREDELETE) {
        m_pendingDeleteLocation = m_positions->toUtf16(position);
        m_pendingDeleteLength = m_positions->utf16Count(position, position + length);
        return;
    }
    if (!(type & (Sci::SC_MOD_INSERTTEXT | Sci::SC_MOD_DELETETEXT)))
        return;
    if (type & Sci::SC_MOD_INSERTTEXT)
        reportInsertion(position, length, text);
    else
        reportDeletion(m_pendingDeleteLocation, m_pendingDeleteLength);
}

void EditorView::onModifiedDeferred(int position, int type, int length)
{
    // Only the notices sent before a change arrive here: the previous change is complete by now.
    flushPendingEdit();
    if (type & Sci::SC_MOD_BEFOREINSERT) {
        m_pendingEdit = PendingEdit{true, position, length, 0, 0};
    } else if (type & Sci::SC_MOD_BEFOREDELETE) {
        m_pendingEdit = PendingEdit{false,
                                    position,
                                    length,
                                    m_positions->toUtf16(position),
                                    m_positions->utf16Count(position, position + length)};
    } else {
        return;
    }
    QMetaObject::invokeMethod(this, &EditorView::flushPendingEdit, Qt::QueuedConnection);
}

void EditorView::flushPendingEdit()
{
    if (!m_pendingEdit)
        return;
    const PendingEdit edit = *m_pendingEdit;
    m_pendingEdit.reset();
    if (edit.insertion) {
        const char *inserted = reinterpret_cast<const char *>(
            m_primary->SendScintilla(Sci::SCI_GETRANGEPOINTER,
                                     static_cast<unsigned long>(edit.bytePosition),
                                     long(edit.byteLength)));
        reportInsertion(edit.bytePosition, edit.byteLength, inserted);
    } else {
        reportDeletion(edit.utf16Location, edit.utf16Length);
    }
}

void EditorView::reportInsertion(qsizetype bytePosition, qsizetype byteLength, const char *text)
{
    // The UTF-16 snapshot follows the edit instead of being rebuilt from the whole text.
    const bool snapshotValid = m_cachedRevision == m_revision;
    ++m_revision;
    if (m_loading)
        return;
    const qsizetype location = m_positions->toUtf16(bytePosition);
    const qsizetype inserted = m_positions->utf16Count(bytePosition, bytePosition + byteLength);
    if (snapshotValid && text) {
        m_cachedText.insert(location, QString::fromUtf8(text, byteLength));
        m_cachedRevision = m_revision;
    }
    Q_EMIT textEdited({location, inserted}, inserted);
    followLineCount();
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

void EditorView::reportDeletion(qsizetype utf16Location, qsizetype utf16Length)
{
    const bool snapshotValid = m_cachedRevision == m_revision;
    ++m_revision;
    if (m_loading)
        return;
    if (snapshotValid) {
        m_cachedText.remove(utf16Location, utf16Length);
        m_cachedRevision = m_revision;
    }
    Q_EMIT textEdited({utf16Location, 0}, -utf16Length);
    followLineCount();
}

void EditorView::setLanguage(LanguagePtr language)
{
    m_highlighter->setLanguage(std::move(language));
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
    m_annotations->configurePane(m_secondary);
    m_secondaryTarget = new PaneHighlightTarget(*this, m_secondary, *m_highlighter);
    m_highlighter->attach(m_secondaryTarget);
    m_secondaryTarget->paintTokens(*m_highlighter);
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
    m_active->SendScintilla(
        Sci::SCI_SETSEL, long(m_positions->toByte(from)), long(m_positions->toByte(to)));
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
}

void EditorView::applyColors(const EditorColors &colors)
{
    m_colors = colors;
    m_primary->applyColors(colors);
    if (m_secondary)
        m_secondary->applyColors(colors);
    m_annotations->applyColors(colors);
}

std::optional<QString> EditorView::readySnapshot() const
{
    if (m_pendingEdit || m_cachedRevision != m_revision)
        return std::nullopt;
    return m_cachedText;
}

QString EditorView::text() const
{
    // A change not yet reported must reach the snapshot (and its listeners) first.
    const_cast<EditorView *>(this)->flushPendingEdit();
    if (m_cachedRevision != m_revision) {
        m_cachedText = QString::fromUtf8(utf8Text());
        m_cachedRevision = m_revision;
    }
    return m_cachedText;
}

QByteArray EditorView::utf8Text() const
{
    const long length = m_primary->SendScintilla(Sci::SCI_GETLENGTH);
    const auto *buffer = static_cast<const char *>(
        m_primary->SendScintillaPtrResult(Sci::SCI_GETCHARACTERPOINTER));
    return QByteArray(buffer, length);
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
    // leaves it there; asking for the whole buffer would move everything after it. A difference
    // is most likely next to the last edit, so that neighbourhood is compared first.
    const long gap = m_primary->SendScintilla(Sci::SCI_GETGAPPOSITION);
    const auto same = [this, &utf8](long from, long to) {
        if (from >= to)
            return true;
        const auto *text = reinterpret_cast<const char *>(m_primary->SendScintilla(
            Sci::SCI_GETRANGEPOINTER, static_cast<unsigned long>(from), to - from));
        return std::memcmp(text, utf8.constData() + from, std::size_t(to - from)) == 0;
    };
    const long nearFrom = std::max(0L, gap - 4096);
    const long nearTo = std::min(length, gap + 4096);
    return same(nearFrom, gap) && same(gap, nearTo) && same(0, nearFrom) && same(nearTo, length);
}

void EditorView::replaceText(const QByteArray &utf8)
{
    const bool wasReadOnly = m_primary->isReadOnly();
    m_primary->setReadOnly(false);
    m_primary->beginUndoAction();
    m_primary->SendScintilla(Sci::SCI_CLEARALL);
    m_primary->SendScintilla(
        Sci::SCI_APPENDTEXT, static_cast<unsigned long>(utf8.size()), utf8.constData());
    m_primary->endUndoAction();
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
