#include "ui/document/MainWindow.h"

#include "core/app/DisplayPath.h"
#include "core/app/Preferences.h"
#include "core/document/CharacterSetTable.h"
#include "core/document/FileNaming.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/StatusBar.h"
#include "ui/document/WorkspaceSidebar.h"
#include "ui/editor/EditorColors.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>

namespace mirtex {

MainWindow::MainWindow(Preferences &prefs, QWidget *parent)
    : QMainWindow(parent)
    , m_prefs(prefs)
    , m_tabs(new QTabWidget(this))
    , m_statusBar(new StatusBar(this))
    , m_sidebar(new WorkspaceSidebar(prefs, this))
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
    setCentralWidget(m_tabs);
    setStatusBar(m_statusBar);
    m_statusBar->setVisible(m_prefs.showStatusBar());
    addDockWidget(Qt::LeftDockWidgetArea, m_sidebar);
    m_sidebar->hide();

    connect(m_tabs, &QTabWidget::tabCloseRequested, this, [this](int index) {
        if (auto *tab = tabForEditor(m_tabs->widget(index)))
            closeDocument(tab);
    });
    connect(m_tabs, &QTabWidget::currentChanged, this, [this]() {
        refreshStatus();
        refreshTitle();
        Q_EMIT currentDocumentChanged(currentDocument());
    });
    connect(m_sidebar, &WorkspaceSidebar::fileActivated, this, [this](const QString &path) {
        openPath(path);
    });
    connect(&m_prefs, &Preferences::changed, this, &MainWindow::applyPreferenceChange);
    connect(m_statusBar, &StatusBar::convertRequested, this, [this](TextEncoding encoding) {
        if (auto *tab = currentDocument())
            convertEncoding(tab, encoding);
    });
    connect(m_statusBar, &StatusBar::reopenRequested, this, [this](TextEncoding encoding) {
        if (auto *tab = currentDocument())
            reopenWithEncoding(tab, encoding);
    });
    connect(m_statusBar, &StatusBar::lineEndingRequested, this, [this](LineEnding ending) {
        if (auto *tab = currentDocument())
            setLineEnding(tab, ending);
    });
    connect(qApp, &QApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            checkExternalChanges();
    });
}

MainWindow::~MainWindow()
{
    // Tabs go before the tab widget deletes the editors they point to.
    for (auto &doc : m_documents)
        m_tabs->removeTab(m_tabs->indexOf(doc->editor()));
    m_documents.clear();
}

QList<DocumentTab *> MainWindow::documents() const
{
    QList<DocumentTab *> result;
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (auto *tab = tabForEditor(m_tabs->widget(i)))
            result.append(tab);
    }
    return result;
}

DocumentTab *MainWindow::tabForEditor(QWidget *page) const
{
    for (const auto &doc : m_documents) {
        if (doc->editor() == page)
            return doc.get();
    }
    return nullptr;
}

DocumentTab *MainWindow::currentDocument() const
{
    return tabForEditor(m_tabs->currentWidget());
}

int MainWindow::currentIndex() const
{
    return m_tabs->currentIndex();
}

void MainWindow::selectDocument(DocumentTab *tab)
{
    if (tab)
        m_tabs->setCurrentWidget(tab->editor());
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

DocumentTab *MainWindow::newDocument(const QString &text)
{
    // A well-formed identifier may still name a set we cannot convert: such a document could
    // never be saved in its own encoding.
    auto encoding = TextEncoding::fromId(m_prefs.defaultEncodingID());
    if (!encoding || !findCharacterSet(encoding->encoding))
        encoding = TextEncoding::utf8();
    auto *tab = new DocumentTab(m_prefs,
                                text.toUtf8(),
                                std::nullopt,
                                *encoding,
                                lineEndingFromPreference(m_prefs.defaultLineEndingID()),
                                nextUntitledName());
    addDocument(tab);
    return tab;
}

void MainWindow::addDocument(DocumentTab *tab)
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
    const int index = m_tabs->addTab(tab->editor(), tab->document().displayName());
    refreshTab(tab);
    m_tabs->setCurrentIndex(index);
    tab->editor()->primaryPane()->setFocus();
    Q_EMIT documentsChanged();
}

void MainWindow::refreshTab(DocumentTab *tab)
{
    const int index = m_tabs->indexOf(tab->editor());
    if (index < 0)
        return;
    const Document &doc = tab->document();
    QString title = doc.displayName();
    if (doc.isReadOnly())
        title += tr(" (sola lettura)");
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
    const int index = m_tabs->indexOf(tab->editor());
    if (index >= 0)
        m_tabs->removeTab(index);
    m_reportedMissing.remove(tab->document().id());
    std::erase_if(m_documents, [tab](const auto &doc) { return doc.get() == tab; });
    Q_EMIT documentsChanged();
    refreshStatus();
    refreshTitle();
}

void MainWindow::openWorkspace(const QString &folder)
{
    m_sidebar->addFolder(folder);
    setSidebarVisible(true);
}

QStringList MainWindow::workspaceFolders() const
{
    return m_sidebar->folders();
}

void MainWindow::setSidebarVisible(bool visible)
{
    m_sidebar->setVisible(visible);
}

bool MainWindow::isSidebarVisible() const
{
    return m_sidebar->isVisibleTo(this);
}

void MainWindow::setSplit(std::optional<Qt::Orientation> orientation)
{
    if (auto *tab = currentDocument())
        tab->editor()->setSplit(orientation);
}

void MainWindow::setLanguageMenu(QMenu *menu)
{
    m_statusBar->languageButton()->setMenu(menu);
}

void MainWindow::zoomBy(int steps)
{
    m_prefs.setZoom(steps == 0 ? 0 : std::clamp(m_prefs.zoom() + steps, -10, 20));
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
    openPaths(paths);
    event->acceptProposedAction();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tabs->tabBar() && event->type() == QEvent::MouseButtonRelease) {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::MiddleButton) {
            const int index = m_tabs->tabBar()->tabAt(mouse->position().toPoint());
            if (auto *tab = index >= 0 ? tabForEditor(m_tabs->widget(index)) : nullptr) {
                closeDocument(tab);
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace mirtex
