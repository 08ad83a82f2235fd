#include "ui/document/MainWindow.h"

#include "core/app/DisplayPath.h"
#include "core/app/Preferences.h"
#include "core/document/CharacterSetTable.h"
#include "core/document/FileNaming.h"
#include "ui/document/DocumentPage.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/PendingTab.h"
#include "ui/document/StatusBar.h"
#include "ui/document/WorkspaceSidebar.h"
#include "ui/editor/EditorColors.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QMimeData>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>

namespace mirtex {

MainWindow::MainWindow(Preferences &prefs, QWidget *parent)
    : QMainWindow(parent)
    , m_prefs(prefs)
    , m_tabs(new QTabWidget(this))
    , m_statusBar(new StatusBar(this))
    , m_sidebar(new WorkspaceSidebar(prefs))
    , m_sidebarDock(nullptr)
    , m_colors(std::make_unique<EditorColors>())
{
    setObjectName(QStringLiteral("mirtex.main"));
    setWindowTitle(QStringLiteral("Mirtex++"));
    setAcceptDrops(true);
    resize(1100, 720);

    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_tabs->setUsesScrollButtons(true);
    m_tabs->tabBar()->setExpanding(false);
    m_tabs->tabBar()->installEventFilter(this);
    m_tabs->tabBar()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_tabs->tabBar(), &QWidget::customContextMenuRequested, this, [this](QPoint at) {
        QTabBar *bar = m_tabs->tabBar();
        const int index = bar->tabAt(at);
        if (auto *tab = index >= 0 ? loadedTabForPage(m_tabs->widget(index)) : nullptr)
            Q_EMIT tabMenuRequested(tab, bar->mapToGlobal(at));
    });
    setCentralWidget(m_tabs);
    setStatusBar(m_statusBar);
    m_statusBar->setVisible(m_prefs.showStatusBar());
    m_sidebarDock = addPanel(Qt::LeftDockWidgetArea, m_sidebar);
    m_sidebarDock->hide();

    connect(m_tabs, &QTabWidget::tabCloseRequested, this, [this](int index) {
        if (auto *tab = loadedTabForPage(m_tabs->widget(index)))
            Q_EMIT closeRequested(tab);
    });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this]() {
        // A pending tab loads once shown, after the change that showed it is over.
        if (auto *pending = qobject_cast<PendingTab *>(m_tabs->currentWidget()))
            QTimer::singleShot(0, pending, [this, pending]() {
                if (m_tabs->currentWidget() == pending)
                    pending->load();
            });
        refreshStatus();
        refreshTitle();
        Q_EMIT currentDocumentChanged(currentDocument());
    });
    connect(m_sidebar, &WorkspaceSidebar::fileActivated, this, [this](const QString &path) {
        Q_EMIT openRequested({path});
    });
    connect(&m_prefs, &Preferences::changed, this, &MainWindow::applyPreferenceChange);
}

MainWindow::~MainWindow()
{
    // Tabs go before the tab widget deletes the pages they point to.
    for (auto &doc : m_documents)
        m_tabs->removeTab(m_tabs->indexOf(doc->page()));
    m_documents.clear();
}

QList<DocumentTab *> MainWindow::documents() const
{
    QList<DocumentTab *> result;
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (auto *tab = tabForPage(m_tabs->widget(i)))
            result.append(tab);
    }
    return result;
}

DocumentTab *MainWindow::tabForPage(QWidget *page) const
{
    for (const auto &doc : m_documents) {
        if (doc->page() == page)
            return doc.get();
    }
    return nullptr;
}

DocumentTab *MainWindow::currentDocument() const
{
    return tabForPage(m_tabs->currentWidget());
}

int MainWindow::currentIndex() const
{
    return m_tabs->currentIndex();
}

void MainWindow::selectDocument(DocumentTab *tab)
{
    if (tab)
        m_tabs->setCurrentWidget(tab->page());
}

void MainWindow::selectIndex(int index)
{
    if (m_tabs->count() > 0)
        m_tabs->setCurrentIndex(std::clamp(index, 0, m_tabs->count() - 1));
}

DocumentTab *MainWindow::findByPath(const QString &canonicalPath) const
{
    for (const auto &doc : m_documents) {
        const auto &path = doc->document().path();
        if (path && QFileInfo(*path).canonicalFilePath() == canonicalPath)
            return doc.get();
    }
    // A pending tab of that file is the file's tab: it loads rather than a second tab opening.
    for (int i = 0; i < m_tabs->count(); ++i) {
        auto *pending = qobject_cast<PendingTab *>(m_tabs->widget(i));
        if (pending && pending->entry().path
            && QFileInfo(*pending->entry().path).canonicalFilePath() == canonicalPath)
            return pending->load();
    }
    return nullptr;
}

QString MainWindow::nextUntitledName() const
{
    QStringList inUse;
    for (const auto &doc : m_documents) {
        if (!doc->document().path())
            inUse.append(doc->document().untitledName());
    }
    return mirtex::nextUntitledName(inUse);
}

TextEncoding MainWindow::defaultEncoding() const
{
    // A well-formed identifier may still name a set we cannot convert: such a document could
    // never be saved in its own encoding.
    auto encoding = TextEncoding::fromId(m_prefs.defaultEncodingID());
    if (!encoding || !findCharacterSet(encoding->encoding))
        return TextEncoding::utf8();
    return *encoding;
}

DocumentTab *MainWindow::newDocument(const QString &text)
{
    auto *tab = new DocumentTab(m_prefs,
                                text.toUtf8(),
                                std::nullopt,
                                defaultEncoding(),
                                lineEndingFromPreference(m_prefs.defaultLineEndingID()),
                                nextUntitledName());
    addDocument(tab);
    return tab;
}

void MainWindow::addDocument(DocumentTab *tab)
{
    insertDocument(m_tabs->count(), tab);
}

void MainWindow::insertDocument(int index, DocumentTab *tab)
{
    m_documents.emplace_back(tab);
    tab->editor()->applyColors(*m_colors);
    connect(tab, &DocumentTab::stateChanged, this, [this, tab]() {
        refreshTab(tab);
        if (tab == currentDocument())
            refreshStatus();
    });
    connect(tab->editor(), &EditorView::caretMoved, this, [this, tab]() {
        if (tab == currentDocument())
            m_statusBar->showCaret(*tab->editor());
    });
    connect(
        tab->editor(), &EditorView::zoomChanged, this, [this](int zoom) { m_prefs.setZoom(zoom); });
    index = m_tabs->insertTab(index, tab->page(), tab->document().displayName());
    refreshTab(tab);
    m_tabs->setCurrentIndex(index);
    tab->editor()->primaryPane()->setFocus();
    Q_EMIT documentsChanged();
}

void MainWindow::refreshTab(DocumentTab *tab)
{
    const int index = m_tabs->indexOf(tab->page());
    if (index < 0)
        return;
    const Document &doc = tab->document();
    QString title = doc.displayName();
    if (doc.isReadOnly())
        title += tr(" (sola lettura)");
    if (tab->isFileRemoved())
        title += tr(" (eliminato)");
    if (doc.isDirty())
        title = QStringLiteral("● ") + title;
    m_tabs->setTabText(index, title);
    m_tabs->setTabToolTip(index,
                          doc.path() ? DisplayPath::forDisplay(*doc.path()) : doc.displayName());
    if (tab == currentDocument())
        refreshTitle();
}

void MainWindow::refreshTitle()
{
    auto *tab = currentDocument();
    if (!tab) {
        setWindowTitle(QStringLiteral("Mirtex++"));
        return;
    }
    const Document &doc = tab->document();
    const QString where = doc.path() ? DisplayPath::forDisplay(*doc.path()) : doc.displayName();
    setWindowTitle(where + (doc.isDirty() ? QStringLiteral(" ●") : QString())
                   + QStringLiteral(" — Mirtex++"));
}

void MainWindow::refreshStatus()
{
    m_statusBar->showDocument(currentDocument());
    m_statusBar->showZoom(m_prefs.zoom());
}

void MainWindow::discardDocument(DocumentTab *tab)
{
    removeTab(tab);
}

void MainWindow::removeTab(DocumentTab *tab)
{
    const int index = m_tabs->indexOf(tab->page());
    if (index >= 0)
        m_tabs->removeTab(index);
    std::erase_if(m_documents, [tab](const auto &doc) { return doc.get() == tab; });
    Q_EMIT documentsChanged();
    refreshStatus();
    refreshTitle();
}

void MainWindow::addPendingTab(PendingTab *pending)
{
    const QSignalBlocker quiet(m_tabs); // the first tab added would become current and load
    const int index = m_tabs->addTab(pending, pending->title());
    if (pending->entry().path)
        m_tabs->setTabToolTip(index, DisplayPath::forDisplay(*pending->entry().path));
}

void MainWindow::replacePendingTab(PendingTab *pending, DocumentTab *tab)
{
    // Inserted before the pending tab goes, so that no neighbour becomes current (and loads).
    insertDocument(m_tabs->indexOf(pending), tab);
    removePendingTab(pending);
}

void MainWindow::removePendingTab(PendingTab *pending)
{
    const int index = m_tabs->indexOf(pending);
    if (index >= 0)
        m_tabs->removeTab(index);
    pending->deleteLater();
}

QList<QWidget *> MainWindow::pagesInOrder() const
{
    QList<QWidget *> pages;
    pages.reserve(m_tabs->count());
    for (int i = 0; i < m_tabs->count(); ++i)
        pages.append(m_tabs->widget(i));
    return pages;
}

DocumentTab *MainWindow::loadedTabForPage(QWidget *page)
{
    if (auto *pending = qobject_cast<PendingTab *>(page))
        return pending->load();
    return tabForPage(page);
}

QString MainWindow::pageName(QWidget *page) const
{
    if (const DocumentTab *tab = tabForPage(page))
        return tab->document().displayName();
    if (const auto *pending = qobject_cast<PendingTab *>(page)) {
        const SessionState::Entry &entry = pending->entry();
        return entry.path ? QFileInfo(*entry.path).fileName()
                          : entry.untitledName.value_or(QString());
    }
    return {};
}

void MainWindow::openWorkspace(const QString &folder)
{
    m_sidebar->addFolder(folder);
    setSidebarVisible(true);
}

void MainWindow::revealInSidebar(const QString &path)
{
    m_sidebar->reveal(path);
    setSidebarVisible(true);
}

QStringList MainWindow::workspaceFolders() const
{
    return m_sidebar->folders();
}

void MainWindow::setSidebarVisible(bool visible)
{
    m_sidebarDock->setVisible(visible);
}

bool MainWindow::isSidebarVisible() const
{
    return m_sidebarDock->isVisibleTo(this);
}

QDockWidget *MainWindow::addPanel(Qt::DockWidgetArea area, QWidget *panel)
{
    auto *dock = new QDockWidget(panel->windowTitle(), this);
    dock->setObjectName(panel->objectName() + QStringLiteral(".dock"));
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    dock->setWidget(panel);
    connect(panel, &QWidget::windowTitleChanged, dock, &QWidget::setWindowTitle);
    addDockWidget(area, dock);
    return dock;
}

void MainWindow::setStatusMenus(QMenu *encoding, QMenu *lineEnding, QMenu *language)
{
    m_statusBar->setMenus(encoding, lineEnding, language);
}

void MainWindow::applyColors(const EditorColors &colors, bool isDark)
{
    *m_colors = colors;
    m_colors->isDark = isDark;
    for (const auto &doc : m_documents)
        doc->editor()->applyColors(*m_colors);
}

void MainWindow::applyPreferenceChange(Preferences::Field field)
{
    if (field == Preferences::Field::showStatusBar) {
        m_statusBar->setVisible(m_prefs.showStatusBar());
        return;
    }
    if (field == Preferences::Field::showHiddenFiles) {
        m_sidebar->setShowHidden(m_prefs.showHiddenFiles());
        return;
    }
    if (field == Preferences::Field::alwaysOnTop) {
        setWindowFlag(Qt::WindowStaysOnTopHint, m_prefs.alwaysOnTop());
        show();
        return;
    }
    for (const auto &doc : m_documents)
        doc->editor()->applyPreferences();
    refreshStatus();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // Closing the main window quits; the quit sequence decides whether it may.
    event->ignore();
    if (onQuitRequested)
        onQuitRequested();
    else
        event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    QStringList paths;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    Q_EMIT openRequested(paths);
    event->acceptProposedAction();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tabs->tabBar() && event->type() == QEvent::MouseButtonRelease) {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::MiddleButton) {
            const int index = m_tabs->tabBar()->tabAt(mouse->position().toPoint());
            if (auto *tab = index >= 0 ? loadedTabForPage(m_tabs->widget(index)) : nullptr) {
                Q_EMIT closeRequested(tab);
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace mirtex
