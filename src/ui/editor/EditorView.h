// The editor of one tab: one Scintilla document shown by one or two panes (a split shares text
// and undo). It is the document's text, reports every edit in UTF-16 terms, edits the text only
// through its EditBatchApplier (and loadText), and applies the preferences and colours to its
// panes. Main thread only.
#pragma once

#include "core/document/DocumentText.h"
#include "core/document/LineEnding.h"
#include "core/languages/Language.h"
#include "core/text/EditBatch.h"
#include "core/text/TextRange.h"
#include "ui/editor/EditNotices.h"
#include "ui/editor/EditorColors.h"
#include "ui/editor/TextSnapshotCache.h"

#include <QWidget>

#include <memory>
#include <optional>

class QKeyEvent;
class QSplitter;

namespace mirtex {

class EditBatchApplier;
class EditorAnnotations;
class EditorFolding;
class PaneHighlightTarget;
class SyntaxHighlighter;
class EditorPane;
class Preferences;
class TextPositions;
class TypingUndoSteps;

class EditorView : public QWidget, public DocumentText
{
    Q_OBJECT

public:
    EditorView(Preferences &prefs, QWidget *parent = nullptr);
    ~EditorView() override;

    // Texts above this size report their edits just after they happen (see EditNotices).
    static constexpr qsizetype kDeferredEditsAboveBytes = EditNotices::kDeferredAboveBytes;

    // Puts the initial text in: no edit is reported and the undo history starts empty.
    void loadText(const QByteArray &utf8);

    // Applies a command's edit as one undo step in the active pane (see EditBatchApplier::apply).
    bool applyBatch(const EditBatch &batch);
    // Labels of the next undo and redo steps; empty for unnamed steps (typing).
    QString undoLabel() const;
    QString redoLabel() const;

    // Everything done until endNamedStep is one undo step named `label` (a macro's playback).
    void beginNamedStep(const QString &label);
    void endNamedStep();

    // The next typing starts a new undo step (a command ran).
    void closeUndoStep();

    TypingUndoSteps &typingSteps() const { return *m_typingSteps; }

    EditorPane *primaryPane() const { return m_primary; }

    EditorPane *activePane() const;

    EditorPane *secondaryPane() const { return m_secondary; }

    // Split of the same document: Qt::Horizontal puts the panes side by side.
    void setSplit(std::optional<Qt::Orientation> orientation);
    std::optional<Qt::Orientation> split() const;

    const TextPositions &positions() const { return *m_positions; }

    EditNotices &notices() const { return *m_notices; }

    EditorAnnotations &annotations() const { return *m_annotations; }

    SyntaxHighlighter &highlighter() const { return *m_highlighter; }

    EditorFolding &folding() const { return *m_folding; }

    // Colours the text in this language from now on.
    void setLanguage(LanguagePtr language);

    // The active pane's main selection and caret, in UTF-16 units.
    TextRange selection() const;
    void setSelection(TextRange range);
    // Every selection of the active pane.
    Selections selections() const;
    void setSelections(const Selections &selections);
    qsizetype selectionLength() const;
    qsizetype caretOffset() const; // UTF-16
    int caretLineNumber() const;   // from 1
    int caretColumnNumber() const; // from 1, in UTF-16 units
    int firstVisibleLine() const;
    void setFirstVisibleLine(int lineIndex);
    qsizetype textLength() const;

    void applyPreferences();
    void applyColors(const EditorColors &colors);
    // The line ending "Mostra i fine riga" shows (the document's; the text itself holds LF).
    void setShownLineEnding(LineEnding ending);

    const EditorColors &colors() const { return m_colors; }

    // DocumentText
    QString text() const override;
    // The UTF-16 snapshot when it is up to date (it then costs nothing to share); nothing when
    // making it would mean converting the whole text.
    std::optional<QString> readySnapshot() const;
    QByteArray utf8Text() const override;
    // At most `maxBytes` from the start of the text.
    QByteArray utf8Prefix(qsizetype maxBytes) const;
    bool utf8Equals(const QByteArray &utf8) const override;
    QByteArray savedUtf8Text() override;
    void replaceText(const QByteArray &utf8) override;
    void setEditable(bool editable) override;

    // Reports a change that was made but not yet announced (large texts); does nothing otherwise.
    void flushPendingEdit();

Q_SIGNALS:
    // One change of the text: the edited range as it stands in the new text, and the change in
    // length (new minus old), both in UTF-16 units.
    void textEdited(mirtex::TextRange editedInNewText, qsizetype changeInLength);
    void caretMoved();
    void zoomChanged(int zoomStep);
    // Right click or the Menu key in one of the panes; the pane is the active one by then.
    void contextMenuRequested(mirtex::EditorPane *pane, QPoint globalPos);

private:
    void followLineCount();
    bool autoClose(EditorPane *pane, QChar typed);
    bool clipboard(EditorPane *pane, int action);
    bool keyAtManyCarets(EditorPane *pane, const QKeyEvent &event);
    EditorPane *makePane();

    Preferences &m_prefs;
    QSplitter *m_splitter;
    std::unique_ptr<TypingUndoSteps> m_typingSteps; // before the panes, which are told of it
    EditorPane *m_primary;
    EditorPane *m_secondary = nullptr;
    EditorPane *m_active;
    std::unique_ptr<TextPositions> m_positions;
    mutable TextSnapshotCache m_snapshot;
    EditNotices *m_notices = nullptr;
    EditBatchApplier *m_applier = nullptr;
    EditorAnnotations *m_annotations = nullptr;
    SyntaxHighlighter *m_highlighter = nullptr;
    EditorFolding *m_folding = nullptr;
    PaneHighlightTarget *m_primaryTarget = nullptr;
    PaneHighlightTarget *m_secondaryTarget = nullptr;
    EditorColors m_colors;
    LineEnding m_shownLineEnding = LineEnding::lf;
    long m_lineCount = 1;
    bool m_editable = true;
    // The bytes the text was last known equal to (shared with the document's saved text), so
    // that deciding whether the text is back to them compares only the edited middle.
    mutable QByteArray m_reference;
};

} // namespace mirtex
