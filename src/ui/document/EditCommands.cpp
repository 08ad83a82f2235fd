#include "ui/document/EditCommands.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

void EditCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto onPane = [c](void (EditorPane::*run)()) {
        return [c, run](const QVariant &) {
            if (EditorPane *pane = c->activePane())
                (pane->*run)();
        };
    };
    auto editable = [c](const QVariant &) { return c->isEditable(); };
    auto tr = [](const char *text) { return QCoreApplication::translate("MainMenu", text); };

    registry.add({QStringLiteral("undo:"),
                  tr("Annulla"),
                  QKeySequence::keyBindings(QKeySequence::Undo),
                  onPane(&EditorPane::undo),
                  editable});
    registry.add(
        {QStringLiteral("redo:"),
         tr("Ripeti"),
         {QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))},
         onPane(&EditorPane::redo),
         editable});
    registry.add({QStringLiteral("cut:"),
                  tr("Taglia"),
                  QKeySequence::keyBindings(QKeySequence::Cut),
                  onPane(&EditorPane::cut),
                  [c](const QVariant &) { return c->isEditable() && c->hasSelection(); }});
    registry.add({QStringLiteral("copy:"),
                  tr("Copia"),
                  QKeySequence::keyBindings(QKeySequence::Copy),
                  onPane(&EditorPane::copy),
                  [c](const QVariant &) { return c->hasSelection(); }});
    registry.add({QStringLiteral("paste:"),
                  tr("Incolla"),
                  QKeySequence::keyBindings(QKeySequence::Paste),
                  onPane(&EditorPane::paste),
                  editable});
    // Delete and Backspace stay the editor's own keys.
    registry.add({QStringLiteral("delete:"),
                  tr("Elimina"),
                  {},
                  onPane(&EditorPane::removeSelectedText),
                  [c](const QVariant &) { return c->isEditable() && c->hasSelection(); }});
    registry.add({QStringLiteral("selectAll:"),
                  tr("Seleziona tutto"),
                  QKeySequence::keyBindings(QKeySequence::SelectAll),
                  [c](const QVariant &) {
                      if (EditorPane *pane = c->activePane())
                          pane->selectAll();
                  },
                  [c](const QVariant &) { return c->hasDocument(); }});

    // Whatever runs, typing after it starts a new undo step.
    registry.addListener([c](const QString &, const QVariant &) {
        if (EditorView *editor = c->currentEditor())
            editor->closeUndoStep();
    });

    CommandRegistry *r = &registry;
    QObject::connect(
        c, &CommandContext::editorContextMenuRequested, c, [r](EditorPane *pane, QPoint globalPos) {
            QMenu *menu = makeContextMenu(*r, pane);
            menu->setAttribute(Qt::WA_DeleteOnClose);
            menu->popup(globalPos);
        });
}

QMenu *EditCommands::makeContextMenu(CommandRegistry &registry, QWidget *parent)
{
    // Empty names separate groups.
    static const char *const kEntries[]
        = {"undo:", "redo:", "", "cut:", "copy:", "paste:", "delete:", "", "selectAll:"};
    auto *menu = new QMenu(parent);
    menu->setObjectName(QStringLiteral("mirtex.editorMenu"));
    for (const char *name : kEntries) {
        if (*name == 0)
            menu->addSeparator();
        else if (QAction *action = registry.makeAction(QString::fromLatin1(name), {}, {}, menu))
            menu->addAction(action);
    }
    return menu;
}

} // namespace mirtex
