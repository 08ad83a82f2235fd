#include "ui/app/MainMenu.h"

#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/EncodingMenus.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QMenuBar>

namespace mirtex {

MainMenu::MainMenu(MainWindow *window, QObject *parent)
    : QObject(parent)
    , m_window(window)
{
    buildFile();
    buildEdit();
    auto *search = m_window->menuBar()->addMenu(tr("Cerca"));
    search->setObjectName(QStringLiteral("mirtex.menu.search"));
    buildView();
    buildEncoding();
    buildLanguage();
    auto *tools = m_window->menuBar()->addMenu(tr("Strumenti"));
    tools->setObjectName(QStringLiteral("mirtex.menu.tools"));
    buildWindow();
    buildHelp();
    connect(&m_window->preferences(), &Preferences::changed, this, &MainMenu::syncToggles);
}

QMenu *MainMenu::menu(const QString &objectName) const
{
    return m_window->menuBar()->findChild<QMenu *>(objectName);
}

QAction *MainMenu::action(const QString &objectName) const
{
    return m_window->findChild<QAction *>(objectName);
}

QAction *MainMenu::add(QMenu *menu,
                       const QString &name,
                       const QString &label,
                       const QKeySequence &shortcut,
                       std::function<void()> run)
{
    auto *action = new QAction(label, m_window);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WindowShortcut);
    connect(action, &QAction::triggered, this, [run]() { run(); });
    menu->addAction(action);
    return action;
}

QAction *
MainMenu::addToggle(QMenu *menu, const QString &name, const QString &label, Getter get, Setter set)
{
    auto *action = new QAction(label, m_window);
    action->setObjectName(name);
    action->setCheckable(true);
    menu->addAction(action);
    Preferences &prefs = m_window->preferences();
    action->setChecked((prefs.*get)());
    connect(action, &QAction::toggled, this, [&prefs, set](bool on) { (prefs.*set)(on); });
    m_toggles.append({action, get});
    return action;
}

void MainMenu::syncToggles()
{
    Preferences &prefs = m_window->preferences();
    for (const auto &[action, get] : m_toggles) {
        const QSignalBlocker block(action);
        action->setChecked((prefs.*get)());
    }
}

void MainMenu::buildFile()
{
    MainWindow *w = m_window;
    QMenu *file = w->menuBar()->addMenu(tr("File"));
    file->setObjectName(QStringLiteral("mirtex.menu.file"));
    add(file, QStringLiteral("newDocument:"), tr("Nuovo"), QKeySequence::New, [w]() {
        w->newDocument();
    });
    add(file, QStringLiteral("openDocument:"), tr("Apri…"), QKeySequence::Open, [w]() {
        w->showOpenPanel();
    });
    add(file,
        QStringLiteral("openFolder:"),
        tr("Apri cartella…"),
        QKeySequence(QStringLiteral("Ctrl+Shift+O")),
        [w]() { w->showOpenFolderPanel(); });
    file->addSeparator();
    add(file, QStringLiteral("saveDocument:"), tr("Salva"), QKeySequence::Save, [w]() {
        w->save(w->currentDocument());
    });
    add(file,
        QStringLiteral("saveDocumentAs:"),
        tr("Salva con nome…"),
        QKeySequence(QStringLiteral("Ctrl+Shift+S")),
        [w]() { w->saveAs(w->currentDocument()); });
    add(file,
        QStringLiteral("saveDocumentTo:"),
        tr("Salva una copia…"),
        QKeySequence(QStringLiteral("Ctrl+Alt+S")),
        [w]() { w->saveCopy(w->currentDocument()); });
    add(file,
        QStringLiteral("saveAllDocuments:"),
        tr("Salva tutto"),
        QKeySequence(QStringLiteral("Ctrl+Alt+Shift+S")),
        [w]() { w->saveAll(); });
    file->addSeparator();
    add(file, QStringLiteral("closeTab:"), tr("Chiudi scheda"), QKeySequence::Close, [w]() {
        w->closeDocument(w->currentDocument());
    });
    file->addSeparator();
    add(file, QStringLiteral("terminate:"), tr("Esci"), QKeySequence::Quit, [this]() {
        if (onQuit)
            onQuit();
    });
}

void MainMenu::buildEdit()
{
    MainWindow *w = m_window;
    QMenu *edit = w->menuBar()->addMenu(tr("Modifica"));
    edit->setObjectName(QStringLiteral("mirtex.menu.edit"));
    auto pane = [w]() -> EditorPane * {
        auto *tab = w->currentDocument();
        return tab ? tab->editor()->activePane() : nullptr;
    };
    add(edit, QStringLiteral("undo:"), tr("Annulla"), QKeySequence::Undo, [pane]() {
        if (auto *p = pane())
            p->undo();
    });
    add(edit,
        QStringLiteral("redo:"),
        tr("Ripeti"),
        QKeySequence(QStringLiteral("Ctrl+Shift+Z")),
        [pane]() {
            if (auto *p = pane())
                p->redo();
        });
    edit->addSeparator();
    add(edit, QStringLiteral("cut:"), tr("Taglia"), QKeySequence::Cut, [pane]() {
        if (auto *p = pane())
            p->cut();
    });
    add(edit, QStringLiteral("copy:"), tr("Copia"), QKeySequence::Copy, [pane]() {
        if (auto *p = pane())
            p->copy();
    });
    add(edit, QStringLiteral("paste:"), tr("Incolla"), QKeySequence::Paste, [pane]() {
        if (auto *p = pane())
            p->paste();
    });
    add(edit,
        QStringLiteral("selectAll:"),
        tr("Seleziona tutto"),
        QKeySequence::SelectAll,
        [pane]() {
            if (auto *p = pane())
                p->selectAll();
        });
    edit->addSeparator();
    add(edit,
        QStringLiteral("showPreferences:"),
        tr("Impostazioni…"),
        QKeySequence(QStringLiteral("Ctrl+,")),
        [this]() {
            if (onShowPreferences)
                onShowPreferences();
        });
}

void MainMenu::buildView()
{
    MainWindow *w = m_window;
    QMenu *view = w->menuBar()->addMenu(tr("Visualizza"));
    view->setObjectName(QStringLiteral("mirtex.menu.view"));
    auto *zoomIn
        = add(view, QStringLiteral("zoomIn:"), tr("Ingrandisci"), QKeySequence::ZoomIn, [w]() {
              w->zoomBy(1);
          });
    zoomIn->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
    add(view,
        QStringLiteral("zoomOut:"),
        tr("Riduci"),
        QKeySequence(QStringLiteral("Ctrl+-")),
        [w]() { w->zoomBy(-1); });
    add(view,
        QStringLiteral("zoomReset:"),
        tr("Dimensione reale"),
        QKeySequence(QStringLiteral("Ctrl+0")),
        [w]() { w->zoomBy(0); });
    view->addSeparator();
    addToggle(view,
              QStringLiteral("toggleWordWrap:"),
              tr("A capo automatico"),
              &Preferences::wordWrap,
              &Preferences::setWordWrap);
    addToggle(view,
              QStringLiteral("toggleLineNumbers:"),
              tr("Numeri di riga"),
              &Preferences::showLineNumbers,
              &Preferences::setShowLineNumbers);
    addToggle(view,
              QStringLiteral("toggleCurrentLine:"),
              tr("Evidenzia la riga corrente"),
              &Preferences::highlightCurrentLine,
              &Preferences::setHighlightCurrentLine);
    addToggle(view,
              QStringLiteral("toggleWhitespace:"),
              tr("Mostra spazi e tabulazioni"),
              &Preferences::showWhitespace,
              &Preferences::setShowWhitespace);
    addToggle(view,
              QStringLiteral("toggleLineEndings:"),
              tr("Mostra i fine riga"),
              &Preferences::showLineEndings,
              &Preferences::setShowLineEndings);
    addToggle(view,
              QStringLiteral("toggleIndentGuides:"),
              tr("Mostra le guide di rientro"),
              &Preferences::showIndentGuides,
              &Preferences::setShowIndentGuides);
    view->addSeparator();
    add(view,
        QStringLiteral("splitSideBySide:"),
        tr("Dividi affiancato"),
        QKeySequence(QStringLiteral("Ctrl+Alt+\\")),
        [w]() { w->setSplit(Qt::Horizontal); });
    add(view,
        QStringLiteral("splitStacked:"),
        tr("Dividi sopra e sotto"),
        QKeySequence(QStringLiteral("Ctrl+Alt+-")),
        [w]() { w->setSplit(Qt::Vertical); });
    add(view, QStringLiteral("unsplit:"), tr("Un solo riquadro"), {}, [w]() {
        w->setSplit(std::nullopt);
    });
    view->addSeparator();
    add(view,
        QStringLiteral("toggleSidebar:"),
        tr("Mostra o nascondi la barra laterale"),
        QKeySequence(QStringLiteral("Ctrl+Shift+B")),
        [w]() { w->setSidebarVisible(!w->isSidebarVisible()); });
    addToggle(view,
              QStringLiteral("toggleStatusBar:"),
              tr("Barra di stato"),
              &Preferences::showStatusBar,
              &Preferences::setShowStatusBar);
    addToggle(view,
              QStringLiteral("toggleAlwaysOnTop:"),
              tr("Sempre in primo piano"),
              &Preferences::alwaysOnTop,
              &Preferences::setAlwaysOnTop);
}

void MainMenu::buildEncoding()
{
    MainWindow *w = m_window;
    QMenu *encoding = w->menuBar()->addMenu(tr("Codifica"));
    encoding->setObjectName(QStringLiteral("mirtex.menu.encoding"));
    encoding->addMenu(EncodingMenus::build(tr("Converti in"), encoding, [w](TextEncoding e) {
        if (auto *tab = w->currentDocument())
            w->convertEncoding(tab, e);
    }));
    encoding->addMenu(
        EncodingMenus::build(tr("Riapri con codifica"), encoding, [w](TextEncoding e) {
            if (auto *tab = w->currentDocument())
                w->reopenWithEncoding(tab, e);
        }));
    encoding->addSeparator();
    encoding->addMenu(EncodingMenus::buildLineEndings(tr("Fine riga"), encoding, [w](LineEnding e) {
        if (auto *tab = w->currentDocument())
            w->setLineEnding(tab, e);
    }));
}

void MainMenu::buildLanguage()
{
    MainWindow *w = m_window;
    QMenu *menu = w->menuBar()->addMenu(tr("Linguaggio"));
    menu->setObjectName(QStringLiteral("mirtex.menu.language"));
    auto *group = new QActionGroup(menu);
    for (const LanguagePtr &language : Language::all()) {
        QAction *action = menu->addAction(language->name());
        action->setObjectName(QStringLiteral("setLanguage:") + language->id());
        action->setData(language->id());
        action->setCheckable(true);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [w, language]() {
            if (auto *tab = w->currentDocument())
                tab->setLanguage(language);
        });
    }
    connect(menu, &QMenu::aboutToShow, this, [w, group]() {
        const QString current
            = w->currentDocument() ? w->currentDocument()->document().languageId() : QString();
        for (QAction *action : group->actions())
            action->setChecked(action->data().toString() == current);
    });
    w->setLanguageMenu(menu);
}

void MainMenu::buildWindow()
{
    MainWindow *w = m_window;
    QMenu *window = w->menuBar()->addMenu(tr("Finestra"));
    window->setObjectName(QStringLiteral("mirtex.menu.window"));
    connect(window, &QMenu::aboutToShow, this, [w, window]() {
        window->clear();
        const auto docs = w->documents();
        for (int i = 0; i < docs.size(); ++i) {
            DocumentTab *tab = docs[i];
            QAction *action = window->addAction(tab->document().displayName());
            action->setCheckable(true);
            action->setChecked(tab == w->currentDocument());
            QObject::connect(
                action, &QAction::triggered, w, [w, tab]() { w->selectDocument(tab); });
        }
    });
    // Keyboard switching must work without opening the menu.
    for (int i = 0; i < 9; ++i) {
        auto *go = new QAction(w);
        go->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(i + 1)));
        connect(go, &QAction::triggered, w, [w, i]() { w->selectIndex(i); });
        w->addAction(go);
    }
}

void MainMenu::buildHelp()
{
    QMenu *help = m_window->menuBar()->addMenu(tr("Aiuto"));
    help->setObjectName(QStringLiteral("mirtex.menu.help"));
    add(help,
        QStringLiteral("showShortcuts:"),
        tr("Scorciatoie da tastiera"),
        QKeySequence(QStringLiteral("F1")),
        [this]() {
            if (onShowShortcuts)
                onShowShortcuts();
        });
}

} // namespace mirtex
