#include "ui/editor/EditBatchApplier.h"

#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/PaneSelections.h"
#include "ui/editor/TextPositions.h"

#include <QTimer>

namespace mirtex {

using Sci = QsciScintillaBase;

// One undo step: Scintilla's undo group, with a container action at each end that gives the
// step's selections back on undo and redo, around the highlighter's batch. Edits not yet announced
// (large texts) are announced before the highlighter's batch closes.
class EditBatchApplier::UndoGroup
{
public:
    UndoGroup(EditBatchApplier &applier, int step)
        : m_applier(applier)
        , m_step(step)
    {
        m_applier.m_applying = true;
        m_applier.m_sci->SendScintilla(Sci::SCI_BEGINUNDOACTION);
        if (step != kUnnamed) // inside a named step, which marks the ends itself
            m_applier.m_sci->SendScintilla(Sci::SCI_ADDUNDOACTION, 2L * step, 0L);
        m_applier.m_view.highlighter().beginBatch();
        m_applier.m_view.notices().holdDeletions(true); // a replacement is reported as one
    }

    ~UndoGroup()
    {
        m_applier.m_view.notices().holdDeletions(false); // announces what is pending
        m_applier.m_view.highlighter().endBatch();
        if (m_step != kUnnamed)
            m_applier.m_sci->SendScintilla(Sci::SCI_ADDUNDOACTION, 2L * m_step + 1, 0L);
        m_applier.m_sci->SendScintilla(Sci::SCI_ENDUNDOACTION);
        m_applier.m_applying = false;
    }

    UndoGroup(const UndoGroup &) = delete;
    UndoGroup &operator=(const UndoGroup &) = delete;

private:
    EditBatchApplier &m_applier;
    int m_step;
};

EditBatchApplier::EditBatchApplier(EditorView &view)
    : QObject(&view)
    , m_view(view)
    , m_sci(view.primaryPane())
{
    connect(m_sci,
            &Sci::SCN_MODIFIED,
            this,
            [this](int, int type, const char *, int, int, int, int, int, int token, int) {
                onModified(type, token);
            });
    watchPane(view.primaryPane());
}

void EditBatchApplier::watchPane(EditorPane *pane)
{
    // Scintilla ends an undo or redo by collapsing the selection at the last change; that is the
    // moment the step's own selections are put back.
    connect(pane, &Sci::QSCN_SELCHANGED, this, [this, pane]() { restoreSelections(pane); });
}

bool EditBatchApplier::apply(const EditBatch &batch, EditorPane *pane)
{
    if (batch.isEmpty() || m_sci->SendScintilla(Sci::SCI_GETREADONLY))
        return false;
    const TextPositions &positions = m_view.positions();
    if (!isWellFormed(batch, positions.utf16Length())) {
        qWarning("mirtex: an edit batch with overlapping or out-of-range replacements was refused");
        return false;
    }
    const int step
        = m_namedDepth > 0
              ? kUnnamed
              : addStep(batch.undoLabel, readSelections(pane, positions), batch.selectionsAfter);
    {
        const UndoGroup group(*this, step);
        const auto &replacements = batch.replacements;
        if (replacements.size() > kSpanAboveReplacements) {
            const TextRange span{replacements.front().range.location,
                                 replacements.back().range.end()
                                     - replacements.front().range.location};
            const QString replaced
                = applyReplacements(positions.text(span), replacements, span.location);
            replaceBytes(
                positions.toByte(span.location), positions.toByte(span.end()), replaced.toUtf8());
        } else {
            // Back to front, so that the offsets of the replacements still to come stay valid.
            for (auto it = replacements.rbegin(); it != replacements.rend(); ++it)
                replaceBytes(positions.toByte(it->range.location),
                             positions.toByte(it->range.end()),
                             it->text.toUtf8());
        }
    }
    writeSelections(pane, positions, batch.selectionsAfter);
    pane->SendScintilla(Sci::SCI_SCROLLCARET);
    return true;
}

void EditBatchApplier::replaceAll(const QByteArray &utf8)
{
    EditorPane *pane = m_view.primaryPane();
    const int step = addStep({}, readSelections(pane, m_view.positions()), Selections());
    {
        const UndoGroup group(*this, step);
        replaceBytes(0, m_view.positions().byteLength(), utf8);
    }
    writeSelections(pane, m_view.positions(), Selections());
    pane->SendScintilla(Sci::SCI_SCROLLCARET);
}

void EditBatchApplier::beginNamedStep(const QString &label, EditorPane *pane)
{
    if (m_namedDepth++ > 0)
        return;
    m_namedStep = addStep(label, readSelections(pane, m_view.positions()), Selections());
    m_sci->SendScintilla(Sci::SCI_BEGINUNDOACTION);
    m_sci->SendScintilla(Sci::SCI_ADDUNDOACTION, 2L * m_namedStep, 0L);
    m_view.highlighter().beginBatch();
}

void EditBatchApplier::endNamedStep(EditorPane *pane)
{
    if (m_namedDepth == 0 || --m_namedDepth > 0)
        return;
    m_steps[std::size_t(m_namedStep)].after = readSelections(pane, m_view.positions());
    m_view.highlighter().endBatch();
    m_sci->SendScintilla(Sci::SCI_ADDUNDOACTION, 2L * m_namedStep + 1, 0L);
    m_sci->SendScintilla(Sci::SCI_ENDUNDOACTION);
    m_namedStep = kUnnamed;
}

int EditBatchApplier::addStep(QString label, Selections before, Selections after)
{
    const int step = int(m_steps.size());
    m_steps.push_back({std::move(label), std::move(before), std::move(after)});
    m_redo.clear();
    m_undo.push_back(step);
    return step;
}

void EditBatchApplier::replaceBytes(qsizetype fromByte, qsizetype toByte, const QByteArray &utf8)
{
    m_sci->SendScintilla(
        Sci::SCI_SETTARGETRANGE, static_cast<unsigned long>(fromByte), long(toByte));
    m_sci->SendScintilla(
        Sci::SCI_REPLACETARGET, static_cast<unsigned long>(utf8.size()), utf8.constData());
}

void EditBatchApplier::onModified(int type, int token)
{
    if (type & Sci::SC_MOD_CONTAINER) {
        const int step = token / 2;
        if (step < 0 || step >= int(m_steps.size()))
            return;
        const bool atStart = token % 2 == 0;
        // Undo meets the end of the step first and its start last; redo the other way round.
        if (type & Sci::SC_PERFORMED_UNDO) {
            if (!atStart)
                moveStep(m_undo, m_redo, step);
            else
                m_restore = m_steps[std::size_t(step)].before;
        } else if (type & Sci::SC_PERFORMED_REDO) {
            if (atStart)
                moveStep(m_redo, m_undo, step);
            else
                m_restore = m_steps[std::size_t(step)].after;
        }
        if (m_restore) {
            // Should Scintilla not announce its own selection change, the next turn restores.
            QTimer::singleShot(0, this, [this]() { restoreSelections(m_view.activePane()); });
        }
        return;
    }
    const int textChange = Sci::SC_MOD_INSERTTEXT | Sci::SC_MOD_DELETETEXT
                           | Sci::SC_MOD_BEFOREINSERT | Sci::SC_MOD_BEFOREDELETE;
    if (!m_applying && m_namedDepth == 0 && (type & Sci::SC_PERFORMED_USER)
        && (type & textChange)) {
        m_redo.clear();
        if (m_undo.empty() || m_undo.back() != kUnnamed)
            m_undo.push_back(kUnnamed);
    }
}

void EditBatchApplier::restoreSelections(EditorPane *pane)
{
    if (!m_restore)
        return;
    const Selections selections = *std::exchange(m_restore, std::nullopt);
    writeSelections(pane, m_view.positions(), selections);
}

void EditBatchApplier::moveStep(std::vector<int> &from, std::vector<int> &to, int step)
{
    // Unnamed steps above the named one were taken along with it.
    while (!from.empty() && from.back() != step) {
        if (to.empty() || to.back() != from.back() || from.back() != kUnnamed)
            to.push_back(from.back());
        from.pop_back();
    }
    if (!from.empty())
        from.pop_back();
    to.push_back(step);
}

QString EditBatchApplier::undoLabel() const
{
    return m_undo.empty() || m_undo.back() == kUnnamed ? QString()
                                                       : m_steps[std::size_t(m_undo.back())].label;
}

QString EditBatchApplier::redoLabel() const
{
    return m_redo.empty() || m_redo.back() == kUnnamed ? QString()
                                                       : m_steps[std::size_t(m_redo.back())].label;
}

void EditBatchApplier::forgetHistory()
{
    m_steps.clear();
    m_undo.clear();
    m_redo.clear();
    m_restore.reset();
}

} // namespace mirtex
