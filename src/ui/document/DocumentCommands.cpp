#include "ui/document/DocumentCommands.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/MainWindow.h"
#include "ui/document/TabCommands.h"

#include <QCoreApplication>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

} // namespace

void DocumentCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };
    auto onCurrent = [c](bool (DocumentFlows::*flow)(DocumentTab *)) {
        return [c, flow](const QVariant &) { (c->flows().*flow)(c->currentTab()); };
    };

    registry.add({QStringLiteral("newDocument:"),
                  tr("Nuovo"),
                  QKeySequence::keyBindings(QKeySequence::New),
                  [c](const QVariant &) { c->window().newDocument(); }});
    registry.add({QStringLiteral("openDocument:"),
                  tr("Apri…"),
                  QKeySequence::keyBindings(QKeySequence::Open),
                  [c](const QVariant &) { c->flows().showOpenPanel(); }});
    registry.add({QStringLiteral("openFolder:"),
                  tr("Apri cartella…"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+O"))},
                  [c](const QVariant &) { c->flows().showOpenFolderPanel(); }});
    registry.add({QStringLiteral("saveDocument:"),
                  tr("Salva"),
                  QKeySequence::keyBindings(QKeySequence::Save),
                  onCurrent(&DocumentFlows::save),
                  hasDocument});
    registry.add({QStringLiteral("saveDocumentAs:"),
                  tr("Salva con nome…"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+S"))},
                  onCurrent(&DocumentFlows::saveAs),
                  hasDocument});
    registry.add({QStringLiteral("saveDocumentTo:"),
                  tr("Salva una copia…"),
                  {QKeySequence(QStringLiteral("Ctrl+Alt+S"))},
                  onCurrent(&DocumentFlows::saveCopy),
                  hasDocument});
    registry.add({QStringLiteral("saveAllDocuments:"),
                  tr("Salva tutto"),
                  {QKeySequence(QStringLiteral("Ctrl+Alt+Shift+S"))},
                  [c](const QVariant &) { c->flows().saveAll(); },
                  hasDocument});
    registry.add({QStringLiteral("closeTab:"),
                  tr("Chiudi scheda"),
                  QKeySequence::keyBindings(QKeySequence::Close),
                  // The tab context menu names its tab.
                  [c](const QVariant &argument) {
                      c->flows().closeDocument(TabCommands::tabFor(*c, argument));
                  },
                  hasDocument});
    // The argument is the tab's index; one past the end selects the last tab.
    registry.add({QStringLiteral("selectTab:"),
                  tr("Scheda"),
                  {},
                  [c](const QVariant &index) { c->window().selectIndex(index.toInt()); },
                  hasDocument});
}

} // namespace mirtex
