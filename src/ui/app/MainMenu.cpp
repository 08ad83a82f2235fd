#include "ui/app/MainMenu.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/EncodingCommands.h"
#include "ui/document/LanguageCommands.h"
#include "ui/document/MainWindow.h"
#include "ui/document/RecentFileCommands.h"
#include "ui/document/TabCommands.h"
// Lines, comments, bookmarks and several carets.
#include "ui/document/LineCommands.h"
#include "ui/document/MultiCaretCommands.h"
// Search: the find panel and the in-document search commands.
#include "ui/search/SearchCommands.h"

#include <QAction>
#include <QMenuBar>

namespace mirtex {

MainMenu::MainMenu(MainWindow &window,
                   CommandRegistry &registry,
                   RecentFiles &recent,
                   QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_registry(registry)
{
    buildFile(recent);
    place(addMenu(QStringLiteral("mirtex.menu.edit"), tr("&Modifica")),
          {QStringLiteral("undo:"),
           QStringLiteral("redo:"),
           {},
           QStringLiteral("cut:"),
           QStringLiteral("copy:"),
           QStringLiteral("paste:"),
           QStringLiteral("selectAll:"),
           {},
           QStringLiteral("showPreferences:")});
    // Lines, comments, bookmarks and several carets, then the command palette under View.
    LineCommands::addToMenu(m_registry, menu(QStringLiteral("mirtex.menu.edit")));
    MultiCaretCommands::addToMenu(m_registry, menu(QStringLiteral("mirtex.menu.edit")));
    addMenu(QStringLiteral("mirtex.menu.search"), tr("&Cerca"));
    // Search: the find panel's tabs and the commands on the current document.
    SearchCommands::addToMenu(m_registry, menu(QStringLiteral("mirtex.menu.search")));
    place(addMenu(QStringLiteral("mirtex.menu.view"), tr("&Visualizza")),
          {QStringLiteral("zoomIn:"),
           QStringLiteral("zoomOut:"),
           QStringLiteral("zoomReset:"),
           {},
           QStringLiteral("toggleWordWrap:"),
           QStringLiteral("toggleLineNumbers:"),
           QStringLiteral("toggleCurrentLine:"),
           QStringLiteral("toggleWhitespace:"),
           QStringLiteral("toggleLineEndings:"),
           QStringLiteral("toggleIndentGuides:"),
           {},
           QStringLiteral("splitSideBySide:"),
           QStringLiteral("splitStacked:"),
           QStringLiteral("unsplit:"),
           {},
           QStringLiteral("toggleSidebar:"),
           QStringLiteral("toggleStatusBar:"),
           QStringLiteral("toggleAlwaysOnTop:"),
           QStringLiteral("toggleFullScreen:")});
    if (QMenu *view = menu(QStringLiteral("mirtex.menu.view"))) {
        view->addSeparator();
        view->addAction(m_registry.action(QStringLiteral("showCommandPalette:")));
    }
    buildEncoding();
    buildLanguage();
    m_window.setStatusMenus(m_statusEncodingMenu, m_lineEndingMenu, m_languageMenu);
    addMenu(QStringLiteral("mirtex.menu.tools"), tr("S&trumenti"));
    buildWindow();
    place(addMenu(QStringLiteral("mirtex.menu.help"), tr("&Aiuto")),
          {QStringLiteral("showShortcuts:"), {}, QStringLiteral("showAbout:")});

    // F10 opens the menu bar at its first menu, from anywhere in the window.
    QAction *menuKey = m_registry.action(QStringLiteral("openMenuBar:"));
    m_window.addAction(menuKey);
    connect(&m_window, &MainWindow::tabMenuRequested, this, [this](DocumentTab *tab, QPoint at) {
        showTabMenu(int(m_window.pagesInOrder().indexOf(tab->page())), at);
    });
}

void MainMenu::buildFile(RecentFiles &recent)
{
    QMenu *file = addMenu(QStringLiteral("mirtex.menu.file"), tr("&File"));
    place(file,
          {QStringLiteral("newDocument:"),
           QStringLiteral("openDocument:"),
           QStringLiteral("openFolder:")});
    RecentFileCommands::addRecentMenu(m_registry, recent, file);
    place(file,
          {QStringLiteral("recoverUnsavedText:"),
           QStringLiteral("reloadFromDisk:"),
           {},
           QStringLiteral("saveDocument:"),
           QStringLiteral("saveDocumentAs:"),
           QStringLiteral("saveDocumentTo:"),
           QStringLiteral("saveAllDocuments:"),
           {},
           QStringLiteral("closeTab:"),
           QStringLiteral("closeOtherTabs:"),
           QStringLiteral("closeTabsToTheRight:"),
           QStringLiteral("closeAllTabs:"),
           {},
           QStringLiteral("printDocument:"),
           QStringLiteral("printPreview:"),
           {},
           QStringLiteral("terminate:")});
}

void MainMenu::showTabMenu(int index, const QPoint &globalPos)
{
    if (index < 0)
        return;
    QMenu *menu = TabCommands::tabMenu(m_registry, index, &m_window);
    for (const auto &add : m_tabMenuEntries)
        add(menu, index);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPos);
}

QMenu *MainMenu::menu(const QString &objectName) const
{
    return m_window.menuBar()->findChild<QMenu *>(objectName);
}

QMenu *MainMenu::addMenu(const QString &objectName, const QString &title)
{
    QMenu *menu = m_window.menuBar()->addMenu(title);
    menu->setObjectName(objectName);
    return menu;
}

void MainMenu::place(QMenu *menu, const QStringList &names)
{
    for (const QString &name : names) {
        if (name.isEmpty())
            menu->addSeparator();
        else if (QAction *action = m_registry.action(name))
            menu->addAction(action);
        else
            qWarning("mirtex: no command %s to lay out", qPrintable(name));
    }
}

void MainMenu::buildEncoding()
{
    QMenu *encoding = addMenu(QStringLiteral("mirtex.menu.encoding"), tr("C&odifica"));
    QMenu *convert = EncodingCommands::encodingMenu(
        m_registry, EncodingCommands::kConvert, tr("Converti in"), encoding);
    QMenu *reopen = EncodingCommands::encodingMenu(
        m_registry, EncodingCommands::kReopen, tr("Riapri con codifica"), encoding);
    m_lineEndingMenu = EncodingCommands::lineEndingMenu(m_registry, tr("Fine riga"), encoding);
    encoding->addMenu(convert);
    encoding->addMenu(reopen);
    encoding->addSeparator();
    encoding->addMenu(m_lineEndingMenu);

    // The status bar offers the same menus.
    m_statusEncodingMenu = new QMenu(&m_window);
    m_statusEncodingMenu->addMenu(convert);
    m_statusEncodingMenu->addMenu(reopen);
}

void MainMenu::buildLanguage()
{
    m_languageMenu = addMenu(QStringLiteral("mirtex.menu.language"), tr("&Linguaggio"));
    LanguageCommands::layOut(m_registry, m_languageMenu);
}

void MainMenu::buildWindow()
{
    QMenu *window = addMenu(QStringLiteral("mirtex.menu.window"), tr("F&inestra"));
    MainWindow *w = &m_window;
    CommandRegistry *registry = &m_registry;
    auto fill = [w, window, registry]() {
        window->clear();
        window->addAction(registry->action(QStringLiteral("selectNextTab:")));
        window->addAction(registry->action(QStringLiteral("selectPreviousTab:")));
        window->addSeparator();
        // Every tab, loaded or not: the index is the tab's position.
        const auto pages = w->pagesInOrder();
        for (int i = 0; i < pages.size(); ++i) {
            QAction *action = registry->makeAction(
                QStringLiteral("selectTab:"), i, w->pageName(pages[i]), window);
            action->setCheckable(true);
            action->setChecked(i == w->currentIndex());
            window->addAction(action);
        }
    };
    fill(); // the shortcuts window finds the menu's own commands before it is first opened
    connect(window, &QMenu::aboutToShow, this, fill);
    // Keyboard switching must work without opening the menu.
    w->addAction(registry->action(QStringLiteral("selectNextTab:")));
    w->addAction(registry->action(QStringLiteral("selectPreviousTab:")));
    for (int i = 0; i < 9; ++i) {
        QAction *go = m_registry.makeAction(QStringLiteral("selectTab:"), i, {}, w);
        go->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(i + 1)));
        w->addAction(go);
    }
}

} // namespace mirtex
