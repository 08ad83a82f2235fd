#include "ui/document/MultiCaretCommands.h"

#include "core/editor/CaretCommands.h"
#include "ui/commands/Beep.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

} // namespace

void MultiCaretCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };
    // The new selections shown, the main caret scrolled into view; a beep when nothing changes.
    auto select =
        [c](std::function<std::optional<Selections>(QStringView, const Selections &)> step) {
            return [c, step](const QVariant &) {
                EditorView *editor = c->currentEditor();
                if (!editor)
                    return;
                const std::optional<Selections> after = step(editor->text(), editor->selections());
                if (!after) {
                    beep();
                    return;
                }
                editor->setSelections(*after);
                editor->activePane()->SendScintilla(QsciScintillaBase::SCI_SCROLLCARET);
            };
        };
    registry.add({QStringLiteral("selectNextOccurrence:"),
                  tr("Aggiungi l'occorrenza successiva"),
                  {QKeySequence(QStringLiteral("Ctrl+D"))},
                  select(addNextOccurrence),
                  hasDocument});
    registry.add({QStringLiteral("selectAllOccurrences:"),
                  tr("Seleziona tutte le occorrenze"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+L"))},
                  select(selectAllOccurrences),
                  hasDocument});
    // Ctrl+Alt+arrows switch workspaces on GNOME; Ctrl+Shift+arrows are free in the editor.
    registry.add({QStringLiteral("addCaretAbove:"),
                  tr("Aggiungi un cursore sopra"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+Up"))},
                  select([](QStringView t, const Selections &s) {
                      return addCaretOnAdjacentLine(t, s, true);
                  }),
                  hasDocument});
    registry.add({QStringLiteral("addCaretBelow:"),
                  tr("Aggiungi un cursore sotto"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+Down"))},
                  select([](QStringView t, const Selections &s) {
                      return addCaretOnAdjacentLine(t, s, false);
                  }),
                  hasDocument});
    // Escape does the same in the editor itself.
    registry.add({QStringLiteral("singleCaret:"),
                  tr("Torna a un solo cursore"),
                  {},
                  [c](const QVariant &) {
                      if (EditorView *editor = c->currentEditor())
                          editor->setSelections(editor->selections().main());
                  },
                  hasDocument});
}

void MultiCaretCommands::addToMenu(CommandRegistry &registry, QMenu *edit)
{
    QMenu *carets = edit->addMenu(tr("Cursori multipli"));
    carets->setObjectName(QStringLiteral("mirtex.menu.edit.carets"));
    for (const char *name : {"selectNextOccurrence:",
                             "selectAllOccurrences:",
                             "addCaretAbove:",
                             "addCaretBelow:",
                             "singleCaret:"}) {
        if (QAction *action = registry.action(QString::fromLatin1(name)))
            carets->addAction(action);
    }
}

} // namespace mirtex
