#include "ui/document/MacroPlayer.h"

#include "core/editor/MacroRecorder.h"
#include "core/editor/MacroRepeat.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/MacroInput.h"

#include <QCoreApplication>

#include <algorithm>

namespace mirtex {

namespace {

// Commands and actions that only move, select, find, copy or mark: a macro made of them (and no
// typing) may play in a read-only document.
bool leavesTextAlone(const MacroStep &step)
{
    static const QStringList readOnlyActions{QStringLiteral("copy:"),
                                             QStringLiteral("selectAll:"),
                                             QStringLiteral("findNext:"),
                                             QStringLiteral("findPrevious:"),
                                             QStringLiteral("toggleBookmark:"),
                                             QStringLiteral("nextBookmark:"),
                                             QStringLiteral("previousBookmark:")};
    switch (step.kind) {
    case MacroStep::Kind::insert:
        return step.text.isEmpty();
    case MacroStep::Kind::command:
        return !step.text.startsWith(u"insert") && !step.text.startsWith(u"delete");
    case MacroStep::Kind::action:
        return readOnlyActions.contains(step.text);
    }
    return false;
}

QString tr(const char *text)
{
    return QCoreApplication::translate("MacroPlayer", text);
}

} // namespace

QString MacroPlayer::Result::message() const
{
    switch (outcome) {
    case Outcome::played:
    case Outcome::noEditor:
        return {};
    case Outcome::noMacro:
        return tr("Non c'è nessuna macro da eseguire: registrane una prima.");
    case Outcome::readOnly:
        return tr("Il documento è di sola lettura: la macro non è stata eseguita.");
    case Outcome::stepRefused:
        return tr("La macro si è fermata: «%1» non si può eseguire qui. Il testo è rimasto "
                  "com'era.")
            .arg(refusedStep);
    }
    return {};
}

MacroPlayer::MacroPlayer(MacroRecorder &recorder,
                         CommandRegistry &registry,
                         CommandContext &context)
    : m_recorder(recorder)
    , m_registry(registry)
    , m_context(context)
{}

MacroPlayer::Result MacroPlayer::play(const Macro &steps, int count)
{
    using Outcome = Result::Outcome;
    EditorView *editor = m_context.currentEditor();
    if (steps.isEmpty() || !editor) {
        beep();
        return {steps.isEmpty() ? Outcome::noMacro : Outcome::noEditor, 0, {}};
    }
    if (!m_context.isEditable() && !std::ranges::all_of(steps, leavesTextAlone)) {
        beep();
        return {Outcome::readOnly, 0, {}};
    }
    const MacroRecorder::Playing playing(m_recorder);
    EditorPane *pane = editor->activePane();
    // The panes repaint once, at the end, not after every step of every run.
    pane->viewport()->setUpdatesEnabled(false);
    editor->beginNamedStep(tr("Macro"));
    QString refused;
    const int runs = MacroRepeat(count).run(
        [&] { return playOnce(steps, *editor, refused); },
        [&] {
            return MacroProgress{editor->selection().location, editor->textLength()};
        });
    editor->endNamedStep();
    if (!refused.isEmpty())
        editor->activePane()->undo(); // the whole playback, as one step
    pane->viewport()->setUpdatesEnabled(true);
    editor->activePane()->SendScintilla(QsciScintillaBase::SCI_SCROLLCARET);
    if (!refused.isEmpty()) {
        beep();
        return {Outcome::stepRefused, runs, refused};
    }
    return {Outcome::played, runs, {}};
}

bool MacroPlayer::playOnce(const Macro &steps, EditorView &editor, QString &refused)
{
    for (const MacroStep &step : steps) {
        EditorPane *pane = editor.activePane();
        bool acted = true;
        switch (step.kind) {
        case MacroStep::Kind::insert:
            MacroInput::type(*pane, step.text);
            break;
        case MacroStep::Kind::command:
            acted = MacroInput::perform(*pane, step.text);
            break;
        case MacroStep::Kind::action:
            acted = m_registry.dispatch(step.text,
                                        step.argument ? QVariant(*step.argument) : QVariant());
            break;
        }
        if (!acted) {
            refused = step.text;
            return false;
        }
    }
    return true;
}

} // namespace mirtex
