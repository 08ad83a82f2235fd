#include "ui/document/PrintCommands.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentPrinter.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QPrintDialog>
#include <QPrintPreviewDialog>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

void print(CommandContext &c, bool preview)
{
    DocumentTab *tab = c.currentTab();
    EditorPane *pane = c.activePane();
    if (!tab || !pane)
        return;
    DocumentPrinter printer(tab->document().displayName());
    if (preview) {
        QPrintPreviewDialog dialog(&printer, &c.window());
        dialog.setWindowTitle(tr("Anteprima di stampa"));
        QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter *) {
            printer.print(*pane);
        });
        dialog.exec();
        return;
    }
    QPrintDialog dialog(&printer, &c.window());
    dialog.setWindowTitle(tr("Stampa"));
    if (dialog.exec() == QDialog::Accepted)
        printer.print(*pane);
}

} // namespace

void PrintCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };
    registry.add({QStringLiteral("printDocument:"),
                  tr("Stampa…"),
                  QKeySequence::keyBindings(QKeySequence::Print),
                  [c](const QVariant &) { print(*c, false); },
                  hasDocument});
    registry.add({QStringLiteral("printPreview:"),
                  tr("Anteprima di stampa…"),
                  {},
                  [c](const QVariant &) { print(*c, true); },
                  hasDocument});
}

} // namespace mirtex
