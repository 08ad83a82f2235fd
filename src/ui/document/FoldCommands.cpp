#include "ui/document/FoldCommands.h"

#include "core/editor/FoldStyle.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

constexpr int kLevels = 5;

} // namespace

void FoldCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    // Keys: Ctrl+Alt+Left/Right switch workspaces on Linux desktops, and shifted brackets are
    // other characters on most layouts, so the block keys are Ctrl+Alt with the brackets and the
    // "everything" keys are chords after Ctrl+K.
    CommandContext *c = &context;
    auto on = [c](bool (EditorFolding::*act)()) {
        return [c, act](const QVariant &) {
            if (EditorView *editor = c->currentEditor())
                (editor->folding().*act)();
        };
    };
    auto folds = [c](const QVariant &) {
        EditorView *editor = c->currentEditor();
        return editor && editor->folding().style() != FoldStyle::none;
    };
    registry.add({QStringLiteral("foldCurrentBlock:"),
                  tr("Piega il blocco"),
                  {QKeySequence(QStringLiteral("Ctrl+Alt+["))},
                  on(&EditorFolding::foldCurrentBlock),
                  folds});
    registry.add({QStringLiteral("unfoldCurrentBlock:"),
                  tr("Espandi il blocco"),
                  {QKeySequence(QStringLiteral("Ctrl+Alt+]"))},
                  on(&EditorFolding::unfoldCurrentBlock),
                  folds});
    registry.add({QStringLiteral("foldAllBlocks:"),
                  tr("Piega tutto"),
                  {QKeySequence(QStringLiteral("Ctrl+K, Ctrl+0"))},
                  on(&EditorFolding::foldAll),
                  folds});
    registry.add({QStringLiteral("unfoldAllBlocks:"),
                  tr("Espandi tutto"),
                  {QKeySequence(QStringLiteral("Ctrl+K, Ctrl+J"))},
                  on(&EditorFolding::unfoldAll),
                  folds});
    registry.add({QStringLiteral("foldAllExceptCurrentBlock:"),
                  tr("Piega tutto tranne il blocco corrente"),
                  {},
                  on(&EditorFolding::foldAllExceptCurrentBlock),
                  folds});
    registry.add({QStringLiteral("foldLevel:"),
                  tr("Piega il livello "),
                  {},
                  [c](const QVariant &level) {
                      EditorView *editor = c->currentEditor();
                      const int depth = level.toInt();
                      if (editor && depth >= 1 && depth <= kLevels)
                          editor->folding().foldLevel(depth);
                  },
                  folds});
}

QMenu *FoldCommands::addFoldMenu(CommandRegistry &registry, QMenu *parent)
{
    QMenu *menu = parent->addMenu(tr("Piegatura del codice"));
    menu->setObjectName(QStringLiteral("mirtex.menu.folding"));
    for (const char *name : {"foldCurrentBlock:",
                             "unfoldCurrentBlock:",
                             "foldAllBlocks:",
                             "unfoldAllBlocks:",
                             "foldAllExceptCurrentBlock:"})
        menu->addAction(registry.action(QString::fromLatin1(name)));
    menu->addSeparator();
    for (int level = 1; level <= kLevels; ++level)
        menu->addAction(registry.action(
            QStringLiteral("foldLevel:"), level, tr("Piega il livello ") + QString::number(level)));
    return menu;
}

} // namespace mirtex
