#include "ui/app/MainMenu.h"

#include "ui/commands/CommandRegistry.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/EncodingCommands.h"
#include "ui/document/LanguageCommands.h"
#include "ui/document/MainWindow.h"

#include <QAction>
#include <QMenuBar>

namespace mirtex {

MainMenu::MainMenu(MainWindow &window, CommandRegistry &registry, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_registry(registry)
{
    place(addMenu(QStringLiteral("mirtex.menu.file"), tr("File")),
          {QStringLiteral("newDocument:"),
           QStringLiteral("openDocument:"),
           QStringLiteral("openFolder:"),
           QStringLiteral("recoverUnsavedText:"),
           {},
           QStringLiteral("saveDocument:"),
           QStringLiteral("saveDocumentAs:"),
           QStringLiteral("saveDocumentTo:"),
           QStringLiteral("saveAllDocuments:"),
           {},
           QStringLiteral("closeTab:"),
           {},
           QStringLiteral("terminate:")});
    place(addMenu(QStringLiteral("mirtex.menu.edit"), tr("Modifica")),
          {QStringLiteral("undo:"),
           QStringLiteral("redo:"),
           {},
           QStringLiteral("cut:"),
           QStringLiteral("copy:"),
           QStringLiteral("paste:"),
           QStringLiteral("selectAll:"),
           {},
           QStringLiteral("showPreferences:")});
    addMenu(QStringLiteral("mirtex.menu.search"), tr("Cerca"));
    place(addMenu(QStringLiteral("mirtex.menu.view"), tr("Visualizza")),
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
           QStringLiteral("toggleAlwaysOnTop:")});
    buildEncoding();
    buildLanguage();
    m_window.setStatusMenus(m_statusEncodingMenu, m_lineEndingMenu, m_languageMenu);
    addMenu(QStringLiteral("mirtex.menu.tools"), tr("Strumenti"));
    buildWindow();
    place(addMenu(QStringLiteral("mirtex.menu.help"), tr("Aiuto")),
          {QStringLiteral("showShortcuts:")});
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
    QMenu *encoding = addMenu(QStringLiteral("mirtex.menu.encoding"), tr("Codifica"));
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
    m_languageMenu = addMenu(QStringLiteral("mirtex.menu.language"), tr("Linguaggio"));
    LanguageCommands::layOut(m_registry, m_languageMenu);
}

void MainMenu::buildWindow()
{
    QMenu *window = addMenu(QStringLiteral("mirtex.menu.window"), tr("Finestra"));
    MainWindow *w = &m_window;
    CommandRegistry *registry = &m_registry;
    connect(window, &QMenu::aboutToShow, this, [w, window, registry]() {
        window->clear();
        const auto docs = w->documents();
        for (int i = 0; i < docs.size(); ++i) {
            QAction *action = registry->makeAction(
                QStringLiteral("selectTab:"), i, docs[i]->document().displayName(), window);
            action->setCheckable(true);
            action->setChecked(docs[i] == w->currentDocument());
            window->addAction(action);
        }
    });
    // Keyboard switching must work without opening the menu.
    for (int i = 0; i < 9; ++i) {
        QAction *go = m_registry.makeAction(QStringLiteral("selectTab:"), i, {}, w);
        go->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(i + 1)));
        w->addAction(go);
    }
}

} // namespace mirtex
