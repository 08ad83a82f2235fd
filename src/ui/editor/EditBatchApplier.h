// The one path by which an editor's text is edited on the program's behalf: applies an EditBatch
// to the tab's Scintilla document as one undo step named by the batch's label, inside one group
// that also brackets the highlighter's batch. Undoing the step restores every selection as it was
// before it; redoing it shows the selections after it. Main thread only; owned by the EditorView.
#pragma once

#include "core/text/EditBatch.h"

#include <QObject>

#include <optional>
#include <vector>

class QByteArray;
class QsciScintillaBase;

namespace mirtex {

class EditorPane;
class EditorView;

class EditBatchApplier : public QObject
{
    Q_OBJECT

public:
    // Batches with more replacements than this are applied as one replacement of the span they
    // cover: Scintilla, the undo history and every listener then see one edit instead of
    // hundreds of thousands. Bookmarks and marks inside that span are treated as replaced.
    static constexpr std::size_t kSpanAboveReplacements = 1000;

    explicit EditBatchApplier(EditorView &view);

    // Applies `batch` (see EditBatch's invariant) and shows its selections in `pane`. Returns false
    // and changes nothing when the batch is empty, malformed or the text is read-only. Edits in a
    // large text (deferred notices) are announced before this returns.
    bool apply(const EditBatch &batch, EditorPane *pane);

    // The whole text replaced (a reload), as one unnamed undo step; the caret goes to the start.
    void replaceAll(const QByteArray &utf8);

    // Labels of the steps the next undo and redo would take back or bring back; empty for steps
    // that are not named (typing, pasting). Consecutive unnamed steps are tracked as one: after
    // undoing typing that followed a named step, the label reappears once that step is next undone.
    QString undoLabel() const;
    QString redoLabel() const;

    // Everything done to the text until endNamedStep (typing, key-bound commands, the batches
    // of commands) is one undo step named `label`, whose undo gives back the selections of `pane`
    // from before it (a macro's playback). A begin inside an open step only counts.
    void beginNamedStep(const QString &label, EditorPane *pane);
    void endNamedStep(EditorPane *pane);

    // The undo history was emptied (a new text was loaded).
    void forgetHistory();

    // Lets `pane` (a new pane of the same document) get its selections back on undo and redo.
    void watchPane(EditorPane *pane);

private:
    class UndoGroup;

    struct Step
    {
        QString label;
        Selections before;
        Selections after;
    };

    static constexpr int kUnnamed = -1;

    int addStep(QString label, Selections before, Selections after);
    void replaceBytes(qsizetype fromByte, qsizetype toByte, const QByteArray &utf8);
    void onModified(int type, int token);
    void restoreSelections(EditorPane *pane);
    static void moveStep(std::vector<int> &from, std::vector<int> &to, int step);

    EditorView &m_view;
    QsciScintillaBase *m_sci;  // the first pane: edits and container notices go through it
    std::vector<Step> m_steps; // a step's undo tokens are 2 * index (start) and 2 * index + 1
    std::vector<int> m_undo;   // step indexes or kUnnamed, the next undo last
    std::vector<int> m_redo;
    std::optional<Selections> m_restore; // set by an undo or redo, shown once Scintilla is done
    bool m_applying = false;
    int m_namedDepth = 0; // open named steps; only the outermost is recorded
    int m_namedStep = kUnnamed;
};

} // namespace mirtex
