// The main window: the tabs of the open documents, the status bar, the workspace sidebar and the
// docked panels. What the user does with documents is in DocumentFlows, the commands in the
// registry, the menus in MainMenu; the window only shows and keeps the tabs.
#pragma once

#include "core/app/Preferences.h"
#include "core/document/TextEncoding.h"

#include <QMainWindow>
#include <QPoint>

#include <functional>
#include <memory>
#include <vector>

class QDockWidget;
class QMenu;
class QTabWidget;

namespace mirtex {

class DocumentTab;
class PendingTab;
class Preferences;
class StatusBar;
class WorkspaceSidebar;
struct EditorColors;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(Preferences &prefs, QWidget *parent = nullptr);
    ~MainWindow() override;

    Preferences &preferences() { return m_prefs; }

    // Open documents in tab order.
    QList<DocumentTab *> documents() const;
    DocumentTab *currentDocument() const;
    int currentIndex() const;
    void selectDocument(DocumentTab *tab);
    void selectIndex(int index);
    // The open document of this file, if any.
    DocumentTab *findByPath(const QString &canonicalPath) const;

    // The encoding of new documents: the preference when it can be written, else UTF-8.
    TextEncoding defaultEncoding() const;
    // A new untitled document with the default encoding and line ending.
    DocumentTab *newDocument(const QString &text = {});
    // Adds a prepared tab (opened or restored) and selects it; the window owns it.
    void addDocument(DocumentTab *tab);
    QString nextUntitledName() const;
    // Closes without asking (the flows ask first; quit, tests).
    void discardDocument(DocumentTab *tab);

    void openWorkspace(const QString &folder);
    // Shows the file in the sidebar: in the workspace folder that holds it, else in its own folder
    // added to the workspace.
    void revealInSidebar(const QString &path);
    QStringList workspaceFolders() const;

    WorkspaceSidebar *sidebar() const { return m_sidebar; }

    void setSidebarVisible(bool visible);
    bool isSidebarVisible() const;

    // Docks `panel` (its window title is the dock's title) in `area`; the window owns it.
    QDockWidget *addPanel(Qt::DockWidgetArea area, QWidget *panel);

    // The menus the status bar offers (laid out from the registry, shared with the menu bar).
    void setStatusMenus(QMenu *encoding, QMenu *lineEnding, QMenu *language);
    void applyColors(const EditorColors &colors, bool isDark);

    std::function<void()> onQuitRequested;

    // Tabs whose document is loaded when first shown (see PendingTab); the window owns them.
    // documents() leaves them out. Adding one does not select it.
    void addPendingTab(PendingTab *pending);
    // Puts `tab` in the place of `pending` and selects it; `pending` is deleted later.
    void replacePendingTab(PendingTab *pending, DocumentTab *tab);
    void removePendingTab(PendingTab *pending);
    // Every tab's page in tab order: a DocumentTab's page or a PendingTab.
    QList<QWidget *> pagesInOrder() const;
    // The loaded document of a tab page; nullptr for a pending tab (or no tab's page).
    DocumentTab *tabForPage(QWidget *page) const;
    // The document of a tab page, loading it first when the tab is pending; nullptr when it does
    // not load (declined, or nothing left to show).
    DocumentTab *loadedTabForPage(QWidget *page);
    // The name a tab's document goes by, loaded or not (menus listing the tabs).
    QString pageName(QWidget *page) const;

Q_SIGNALS:
    void currentDocumentChanged(mirtex::DocumentTab *tab);
    void documentsChanged();
    // The user asked to close a tab (its close button, a middle click).
    void closeRequested(mirtex::DocumentTab *tab);
    // Files or folders dropped on the window or chosen in the sidebar.
    void openRequested(const QStringList &paths);
    // The user right-clicked a tab (at `globalPos`).
    void tabMenuRequested(mirtex::DocumentTab *tab, const QPoint &globalPos);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refreshTab(DocumentTab *tab);
    void refreshStatus();
    void refreshTitle();
    void applyPreferenceChange(Preferences::Field field);
    void removeTab(DocumentTab *tab);
    void insertDocument(int index, DocumentTab *tab);

    Preferences &m_prefs;
    QTabWidget *m_tabs;
    StatusBar *m_statusBar;
    WorkspaceSidebar *m_sidebar;
    QDockWidget *m_sidebarDock;
    std::vector<std::unique_ptr<DocumentTab>> m_documents;
    std::unique_ptr<EditorColors> m_colors;
};

} // namespace mirtex
