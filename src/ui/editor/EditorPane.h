// One Scintilla view of a document. A split editor has two panes over the same Scintilla
// document, so they share text and undo history.
#pragma once

#include <Qsci/qscicommand.h>
#include <Qsci/qsciscintilla.h>

#include <functional>
#include <memory>

namespace mirtex {

class PaneOverlay;
class Preferences;
class TypingUndoSteps;
struct EditorColors;

class EditorPane : public QsciScintilla
{
    Q_OBJECT

public:
    explicit EditorPane(QWidget *parent = nullptr);
    ~EditorPane() override;

    // Reads every display preference (font, zoom, tabs, wrapping, invisibles, gutter...).
    void applyPreferences(const Preferences &prefs);
    void applyColors(const EditorColors &colors);

    void paste() override;
    void copy() override;
    void cut() override;

    enum class ClipboardAction {
        copy,
        cut,
        paste
    };

    // Asked first for every copy, cut and paste; returns whether it handled it (several
    // selections: one line per selection). Otherwise Scintilla does it.
    void setClipboardHandler(std::function<bool(ClipboardAction)> handler)
    {
        m_clipboardHandler = std::move(handler);
    }

    // Asked for every printable key typed while auto-close is on and the pane is editable;
    // returns whether it handled the key (the rules live in core/editor/AutoClose.h).
    void setAutoCloseHandler(std::function<bool(QChar typed)> handler)
    {
        m_autoCloseHandler = std::move(handler);
    }

    // With more carets than this, keys that type or delete go to the many-carets handler: one
    // edit of the whole span instead of one per caret.
    static constexpr long kBatchKeysAboveCarets = 64;

    // Asked for typing, Backspace and Delete at more than kBatchKeysAboveCarets carets; returns
    // whether it handled the key.
    void setManyCaretsHandler(std::function<bool(const QKeyEvent &)> handler)
    {
        m_manyCaretsHandler = std::move(handler);
    }

    // Told of every key, input-method commit and mouse press, to end typing's undo steps where
    // users expect them (shared by the panes of one document; not owned).
    void setTypingSteps(TypingUndoSteps *steps) { m_typingSteps = steps; }

    // The mark "Mostra i fine riga" shows at each line break: the document's own ending ("CRLF",
    // "CR"); empty for LF, which Scintilla marks itself.
    void setLineEndLabel(const QString &label);

    // Draws over the text and takes clicks first (not owned; null for none).
    void setOverlay(PaneOverlay *overlay) { m_overlay = overlay; }

    // Performs a key-bound command as its key would (a macro's named command): at every caret,
    // through the many-carets handler where a key would go there.
    void performCommand(QsciCommand::Command command);

Q_SIGNALS:
    void focused(mirtex::EditorPane *pane);
    // The user asked for the context menu at `globalPos`; the pane shows none of its own.
    void contextMenuRequested(mirtex::EditorPane *pane, QPoint globalPos);
    // Around every key, input-method, drop or paste the pane handles.
    void inputStarting();
    void inputHandled();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    bool handleAutoClose(QKeyEvent *event);
    void startRectangle();
    void backToMainCaret();
    void updateLineNumberWidth();

    void refreshStyles();

    std::unique_ptr<EditorColors> m_colors;
    bool m_autoClose = false;
    std::function<bool(QChar)> m_autoCloseHandler;
    std::function<bool(ClipboardAction)> m_clipboardHandler;
    std::function<bool(const QKeyEvent &)> m_manyCaretsHandler;
    TypingUndoSteps *m_typingSteps = nullptr;
    PaneOverlay *m_overlay = nullptr;
    bool m_showLineNumbers = true;
    QString m_lineEndLabel;
};

} // namespace mirtex
