#include "ui/document/EditCommands.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorPane.h"

#include <QCoreApplication>

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
    registry.add({QStringLiteral("redo:"),
                  tr("Ripeti"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+Z"))},
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
    registry.add({QStringLiteral("selectAll:"),
                  tr("Seleziona tutto"),
                  QKeySequence::keyBindings(QKeySequence::SelectAll),
                  [c](const QVariant &) {
                      if (EditorPane *pane = c->activePane())
                          pane->selectAll();
                  },
                  [c](const QVariant &) { return c->hasDocument(); }});
}

} // namespace mirtex
