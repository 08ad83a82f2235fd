#include "ui/editor/EditorPane.h"

#include "core/app/Preferences.h"
#include "ui/editor/EditorColors.h"
#include "ui/editor/EditorKeys.h"
#include "ui/editor/LineEndMarks.h"
#include "ui/editor/MacroInput.h"
#include "ui/editor/PaneHighlightTarget.h"
#include "ui/editor/PaneOverlay.h"
#include "ui/editor/TypingUndoSteps.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

namespace mirtex {

namespace {

// While no assistive technology listens, panes get Qt's plain widget interface instead of
// QScintilla's, which counts the characters from the start of the text up to the caret after
// every caret move and edit (hundreds of milliseconds deep in a 100 MB file).
QAccessibleInterface *plainPaneAccessible(const QString &className, QObject *object)
{
    if (QAccessible::isActive() || className != QLatin1String("mirtex::EditorPane")
        || !object->isWidgetType())
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::EditableText);
}

} // namespace

EditorPane::EditorPane(QWidget *parent)
    : QsciScintilla(parent)
{
    // Installed after QScintilla's own factory, so it is asked first.
    static const bool installed = [] {
        QAccessible::installFactory(plainPaneAccessible);
        return true;
    }();
    Q_UNUSED(installed);
    setUtf8(true);
    EditorKeys::configure(*this);
    setFrameShape(QFrame::NoFrame);
    setBraceMatching(NoBraceMatch); // matching braces are painted by the editor view
    setMarginType(0, NumberMargin);
    setMarginType(1, SymbolMargin);
    setMarginWidth(1, 14);
    setMarginSensitivity(1, true);
    setMarginWidth(2, 0);
    setEolMode(EolUnix); // the text always holds LF; the file's ending is applied on save
    setScrollWidthTracking(true);
    setScrollWidth(1);
    SendScintilla(SCI_SETMODEVENTMASK,
                  SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT | SC_MOD_BEFOREDELETE | SC_PERFORMED_USER
                      | SC_PERFORMED_UNDO | SC_PERFORMED_REDO);
    connect(this, &QsciScintilla::linesChanged, this, &EditorPane::updateLineNumberWidth);

    // Several carets: Ctrl+click adds one, Alt+drag and Alt+Shift+arrows select a rectangle;
    // typing, deleting and pasting act at every caret.
    SendScintilla(SCI_SETMULTIPLESELECTION, 1L);
    SendScintilla(SCI_SETADDITIONALSELECTIONTYPING, 1L);
    SendScintilla(SCI_SETMULTIPASTE, static_cast<unsigned long>(SC_MULTIPASTE_EACH));
    SendScintilla(SCI_SETADDITIONALCARETSVISIBLE, 1L);
    SendScintilla(SCI_SETRECTANGULARSELECTIONMODIFIER, static_cast<unsigned long>(SCMOD_ALT));
    SendScintilla(SCI_SETMOUSESELECTIONRECTANGULARSWITCH, 1L);
}

EditorPane::~EditorPane() = default;

void EditorPane::setLineEndLabel(const QString &label)
{
    if (label == m_lineEndLabel)
        return;
    m_lineEndLabel = label;
    viewport()->update();
}

void EditorPane::paintEvent(QPaintEvent *event)
{
    QsciScintilla::paintEvent(event);
    const bool lineEnds = !m_lineEndLabel.isEmpty() && eolVisibility();
    if (!lineEnds && !m_overlay)
        return;
    QPainter painter(viewport());
    if (lineEnds)
        LineEndMarks::paint(*this, painter, m_lineEndLabel);
    if (m_overlay)
        m_overlay->paintOver(*this, painter);
}

void EditorPane::applyPreferences(const Preferences &prefs)
{
    QFont font = prefs.fontName().isEmpty() ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                                            : QFont(prefs.fontName());
    font.setPointSizeF(prefs.fontSize() > 0 ? prefs.fontSize() : 13);
    setFont(font);
    setMarginsFont(font);
    zoomTo(prefs.zoom());

    setTabWidth(std::max(1, prefs.tabWidth()));
    setIndentationsUseTabs(!prefs.useSpaces());
    setAutoIndent(prefs.autoIndent());
    m_autoClose = prefs.autoClose();
    setWrapMode(prefs.wordWrap() ? WrapWord : WrapNone);
    m_showLineNumbers = prefs.showLineNumbers();
    updateLineNumberWidth();
    setCaretLineVisible(prefs.highlightCurrentLine());
    setWhitespaceVisibility(prefs.showWhitespace() ? WsVisible : WsInvisible);
    setEolVisibility(prefs.showLineEndings());
    setIndentationGuides(prefs.showIndentGuides());
    refreshStyles();
}

void EditorPane::applyColors(const EditorColors &colors)
{
    m_colors = std::make_unique<EditorColors>(colors);
    refreshStyles();
}

void EditorPane::refreshStyles()
{
    if (!m_colors)
        return;
    const EditorColors &colors = *m_colors;
    setPaper(colors.background);
    setColor(colors.text);
    SendScintilla(SCI_STYLESETBACK, STYLE_DEFAULT, colors.background);
    SendScintilla(SCI_STYLESETFORE, STYLE_DEFAULT, colors.text);
    // Every token style starts as a copy of the default (font, size, page), then gets its colour.
    SendScintilla(SCI_STYLECLEARALL);
    for (int kind = 0; kind < kTokenKindCount; ++kind)
        SendScintilla(SCI_STYLESETFORE,
                      PaneHighlightTarget::kFirstTokenStyle + kind,
                      colors.tokens[std::size_t(kind)]);
    SendScintilla(SCI_STYLESETBACK, STYLE_LINENUMBER, colors.gutter);
    SendScintilla(SCI_STYLESETFORE, STYLE_LINENUMBER, colors.gutterText);
    setCaretForegroundColor(colors.caret);
    setSelectionBackgroundColor(colors.selection);
    resetSelectionForegroundColor();
    setCaretLineBackgroundColor(colors.currentLine);
    setMarginsBackgroundColor(colors.gutter);
    setMarginsForegroundColor(colors.gutterText);
    setFoldMarginColors(colors.gutter, colors.gutter);
    setWhitespaceForegroundColor(colors.invisibles);
    setIndentationGuidesForegroundColor(colors.invisibles);
    setIndentationGuidesBackgroundColor(colors.background);
    // Line-end marks use the control-character style.
    SendScintilla(SCI_STYLESETFORE, STYLE_CONTROLCHAR, colors.invisibles);
    SendScintilla(SCI_STYLESETBACK, STYLE_CONTROLCHAR, colors.background);
}

void EditorPane::updateLineNumberWidth()
{
    if (!m_showLineNumbers) {
        setMarginWidth(0, 0);
        return;
    }
    const int digits = std::max(3, int(QString::number(lines()).size()) + 1);
    setMarginWidth(0, QString(digits, u'9'));
}

void EditorPane::focusInEvent(QFocusEvent *event)
{
    QsciScintilla::focusInEvent(event);
    Q_EMIT focused(this);
}

void EditorPane::keyPressEvent(QKeyEvent *event)
{
    if (m_typingSteps)
        m_typingSteps->beforeInput(*this, TypingUndoSteps::classify(*event), event->text());
    MacroInput::keyPressed(*this, *event);
    Q_EMIT inputStarting();
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier
        && SendScintilla(SCI_GETSELECTIONS) > 1) {
        backToMainCaret();
    } else if (m_manyCaretsHandler && !isReadOnly()
               && SendScintilla(SCI_GETSELECTIONS) > kBatchKeysAboveCarets
               && m_manyCaretsHandler(*event)) {
        // typed or deleted at every caret in one edit
    } else if (!(m_autoClose && !isReadOnly() && handleAutoClose(event))) {
        if (event->modifiers() == (Qt::AltModifier | Qt::ShiftModifier))
            startRectangle();
        QsciScintilla::keyPressEvent(event);
    }
    Q_EMIT inputHandled();
    if (m_typingSteps)
        m_typingSteps->afterInput(*this);
}

void EditorPane::backToMainCaret()
{
    // Back to one caret, the main one, also from a rectangle (Scintilla keeps those).
    const long main = SendScintilla(SCI_GETMAINSELECTION);
    SendScintilla(SCI_SETEMPTYSELECTION,
                  static_cast<unsigned long>(
                      SendScintilla(SCI_GETSELECTIONNCARET, static_cast<unsigned long>(main))));
}

// Macros' named commands.
void EditorPane::performCommand(QsciCommand::Command command)
{
    using C = QsciCommand::Command;
    Q_EMIT inputStarting();
    const long selections = SendScintilla(SCI_GETSELECTIONS);
    const bool deletion = command == C::DeleteBack || command == C::Delete;
    if (command == C::Cancel && selections > 1) {
        backToMainCaret();
    } else if (deletion && m_manyCaretsHandler && !isReadOnly()
               && selections > kBatchKeysAboveCarets
               && m_manyCaretsHandler(
                   QKeyEvent(QEvent::KeyPress,
                             command == C::DeleteBack ? Qt::Key_Backspace : Qt::Key_Delete,
                             Qt::NoModifier))) {
        // deleted at every caret in one edit
    } else {
        switch (command) {
        case C::CharLeftRectExtend:
        case C::CharRightRectExtend:
        case C::LineUpRectExtend:
        case C::LineDownRectExtend:
        case C::VCHomeRectExtend:
        case C::HomeRectExtend:
        case C::LineEndRectExtend:
        case C::PageUpRectExtend:
        case C::PageDownRectExtend:
            startRectangle();
            break;
        default:
            break;
        }
        SendScintilla(static_cast<unsigned int>(command));
    }
    Q_EMIT inputHandled();
}

void EditorPane::startRectangle()
{
    // Scintilla grows a rectangle from the corner where the last one was made, not from a
    // selection set by the program; the rectangle starts at the main selection instead.
    if (SendScintilla(SCI_SELECTIONISRECTANGLE))
        return;
    const auto main = static_cast<unsigned long>(SendScintilla(SCI_GETMAINSELECTION));
    const long anchor = SendScintilla(SCI_GETSELECTIONNANCHOR, main);
    const long caret = SendScintilla(SCI_GETSELECTIONNCARET, main);
    SendScintilla(SCI_SETRECTANGULARSELECTIONANCHOR, static_cast<unsigned long>(anchor));
    SendScintilla(SCI_SETRECTANGULARSELECTIONCARET, static_cast<unsigned long>(caret));
}

void EditorPane::mousePressEvent(QMouseEvent *event)
{
    if (m_overlay && m_overlay->mousePressed(*this, *event))
        return;
    if (m_typingSteps)
        m_typingSteps->closeStep();
    QsciScintilla::mousePressEvent(event);
}

void EditorPane::contextMenuEvent(QContextMenuEvent *event)
{
    // From the keyboard (the Menu key) the menu opens at the caret.
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const long caret = SendScintilla(SCI_GETCURRENTPOS);
        at = viewport()->mapToGlobal(
            QPoint(int(SendScintilla(SCI_POINTXFROMPOSITION, 0, caret)),
                   int(SendScintilla(SCI_POINTYFROMPOSITION, 0, caret)) + textHeight(0)));
    }
    event->accept();
    Q_EMIT contextMenuRequested(this, at);
}

namespace {
// Files dragged from a file manager are opened by the window, not pasted as their paths.
bool carriesFiles(const QMimeData *data)
{
    if (!data->hasUrls())
        return false;
    const QList<QUrl> urls = data->urls();
    return std::all_of(urls.begin(), urls.end(), [](const QUrl &url) { return url.isLocalFile(); });
}
} // namespace

void EditorPane::dragEnterEvent(QDragEnterEvent *event)
{
    if (carriesFiles(event->mimeData()))
        event->ignore();
    else
        QsciScintilla::dragEnterEvent(event);
}

void EditorPane::dragMoveEvent(QDragMoveEvent *event)
{
    if (carriesFiles(event->mimeData()))
        event->ignore();
    else
        QsciScintilla::dragMoveEvent(event);
}

void EditorPane::dropEvent(QDropEvent *event)
{
    if (carriesFiles(event->mimeData())) {
        event->ignore();
        return;
    }
    Q_EMIT inputStarting();
    QsciScintilla::dropEvent(event);
    Q_EMIT inputHandled();
}

void EditorPane::inputMethodEvent(QInputMethodEvent *event)
{
    const QString committed = event->commitString();
    if (m_typingSteps)
        m_typingSteps->beforeInput(*this,
                                   committed.isEmpty() ? TypingUndoSteps::Input::none
                                                       : TypingUndoSteps::Input::typing,
                                   committed);
    MacroInput::textCommitted(committed);
    Q_EMIT inputStarting();
    QsciScintilla::inputMethodEvent(event);
    Q_EMIT inputHandled();
    if (m_typingSteps)
        m_typingSteps->afterInput(*this);
}

void EditorPane::paste()
{
    Q_EMIT inputStarting();
    if (!(m_clipboardHandler && m_clipboardHandler(ClipboardAction::paste)))
        QsciScintilla::paste();
    Q_EMIT inputHandled();
}

void EditorPane::copy()
{
    if (!(m_clipboardHandler && m_clipboardHandler(ClipboardAction::copy)))
        QsciScintilla::copy();
}

void EditorPane::cut()
{
    Q_EMIT inputStarting();
    if (!(m_clipboardHandler && m_clipboardHandler(ClipboardAction::cut)))
        QsciScintilla::cut();
    Q_EMIT inputHandled();
}

bool EditorPane::handleAutoClose(QKeyEvent *event)
{
    if (!m_autoCloseHandler || event->text().size() != 1
        || (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        return false;
    return m_autoCloseHandler(event->text().front());
}

} // namespace mirtex
