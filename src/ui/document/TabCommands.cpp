#include "ui/document/TabCommands.h"

#include "ui/commands/CommandMenu.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

} // namespace

DocumentTab *TabCommands::tabFor(const CommandContext &context, const QVariant &argument)
{
    if (!argument.isValid())
        return context.currentTab();
    return context.window().tabForPage(pageFor(context, argument));
}

QWidget *TabCommands::pageFor(const CommandContext &context, const QVariant &argument)
{
    const QList<QWidget *> pages = context.window().pagesInOrder();
    const int index = argument.isValid() ? argument.toInt() : context.window().currentIndex();
    return index >= 0 && index < pages.size() ? pages[index] : nullptr;
}

void TabCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    MainWindow *w = &context.window();
    // The pages of the tabs after `page` (or of every tab but it), in order, loaded or not.
    auto others = [w](QWidget *page, bool rightOnly) {
        QList<QWidget *> pages = w->pagesInOrder();
        const qsizetype at = page ? pages.indexOf(page) : -1;
        if (at < 0)
            return QList<QWidget *>();
        if (rightOnly)
            return pages.mid(at + 1);
        pages.removeAt(at);
        return pages;
    };
    auto step = [w](int by) {
        return [w, by](const QVariant &) {
            const int count = int(w->pagesInOrder().size());
            if (count > 1)
                w->selectIndex((w->currentIndex() + by + count) % count);
        };
    };
    auto hasPath = [c](const QVariant &argument) {
        const DocumentTab *tab = tabFor(*c, argument);
        return tab && tab->document().path();
    };
    auto onDisk = [c](const QVariant &argument) {
        const DocumentTab *tab = tabFor(*c, argument);
        return tab && tab->document().path() && QFileInfo::exists(*tab->document().path());
    };
    auto severalTabs = [w](const QVariant &) { return w->pagesInOrder().size() > 1; };

    registry.add({QStringLiteral("selectNextTab:"),
                  tr("Scheda successiva"),
                  {QKeySequence(Qt::CTRL | Qt::Key_PageDown), QKeySequence(Qt::CTRL | Qt::Key_Tab)},
                  step(1),
                  severalTabs});
    registry.add({QStringLiteral("selectPreviousTab:"),
                  tr("Scheda precedente"),
                  {QKeySequence(Qt::CTRL | Qt::Key_PageUp),
                   QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab)},
                  step(-1),
                  severalTabs});
    registry.add(
        {QStringLiteral("reloadFromDisk:"),
         tr("Ricarica dal disco"),
         {},
         [c](const QVariant &argument) { c->flows().reloadFromDisk(tabFor(*c, argument)); },
         onDisk});
    registry.add({QStringLiteral("closeOtherTabs:"),
                  tr("Chiudi le altre schede"),
                  {},
                  [c, others](const QVariant &argument) {
                      c->flows().closePages(others(pageFor(*c, argument), false));
                  },
                  [c, others](const QVariant &argument) {
                      return !others(pageFor(*c, argument), false).isEmpty();
                  }});
    registry.add({QStringLiteral("closeTabsToTheRight:"),
                  tr("Chiudi le schede a destra"),
                  {},
                  [c, others](const QVariant &argument) {
                      c->flows().closePages(others(pageFor(*c, argument), true));
                  },
                  [c, others](const QVariant &argument) {
                      return !others(pageFor(*c, argument), true).isEmpty();
                  }});
    registry.add({QStringLiteral("closeAllTabs:"),
                  tr("Chiudi tutte le schede"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+W"))},
                  [c, w](const QVariant &) { c->flows().closePages(w->pagesInOrder()); },
                  [w](const QVariant &) { return !w->pagesInOrder().isEmpty(); }});
    registry.add({QStringLiteral("copyPath:"),
                  tr("Copia percorso"),
                  {},
                  [c](const QVariant &argument) {
                      if (const DocumentTab *tab = tabFor(*c, argument);
                          tab && tab->document().path())
                          QGuiApplication::clipboard()->setText(
                              QDir::toNativeSeparators(*tab->document().path()));
                  },
                  hasPath});
    registry.add({QStringLiteral("revealInSidebar:"),
                  tr("Mostra nella barra laterale"),
                  {},
                  [c, w](const QVariant &argument) {
                      if (const DocumentTab *tab = tabFor(*c, argument);
                          tab && tab->document().path())
                          w->revealInSidebar(*tab->document().path());
                  },
                  hasPath});
}

QMenu *TabCommands::tabMenu(CommandRegistry &registry, int index, QWidget *parent)
{
    return commandMenu(registry,
                       QStringLiteral("mirtex.menu.tab"),
                       {"closeTab:",
                        "closeOtherTabs:",
                        "closeTabsToTheRight:",
                        "closeAllTabs:",
                        "",
                        "reloadFromDisk:",
                        "copyPath:",
                        "revealInSidebar:"},
                       QVariant(index),
                       parent);
}

} // namespace mirtex
