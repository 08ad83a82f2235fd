// The main window: the tabs of the open documents, the status bar, the workspace sidebar, and
// the document flows the user reaches from the File and Encoding menus (open, new, save, close,
// reload after an outside change). Menus are built by MainMenu; panels by their own classes.
#pragma once

#include "core/app/Preferences.h"
#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QMainWindow>
#include <QSet>
#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

class QMenu;
class QTabWidget;

namespace mirtex {

class DocumentTab;
class EditorView;
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

    // Opens each path as a document (a folder becomes the workspace). Returns how many documents
    // were opened or selected.
    int openPaths(const QStringList &paths);
    // Opens one file; a file already open is selected instead. Nothing when refused or failed.
    DocumentTab *openPath(const QString &path, std::optional<TextEncoding> forced = std::nullopt);

    // The large-file question for files above the threshold: true when the file may be opened.
    bool confirmLargeFile(const QString &path);

    // A new untitled document with the default encoding and line ending.
    DocumentTab *newDocument(const QString &text = {});
    // Adds a prepared tab (session restore) and selects it.
    void addDocument(DocumentTab *tab);
    QString nextUntitledName() const;

    // The flows; each returns whether it completed (false: failed or cancelled).
    bool save(DocumentTab *tab);
    bool saveAs(DocumentTab *tab);
    bool saveCopy(DocumentTab *tab);
    bool saveAll();
    // Asks about unsaved changes first; "Annulla" keeps the tab.
    bool closeDocument(DocumentTab *tab);
    // The save question of closing and quitting: true when the caller may go on.
    enum class SaveAnswer {
        saved,
        discarded,
        cancelled
    };
    SaveAnswer askToSave(DocumentTab *tab);
    // Closes without asking (quit, tests).
    void discardDocument(DocumentTab *tab);

    void reopenWithEncoding(DocumentTab *tab, TextEncoding encoding);
    void convertEncoding(DocumentTab *tab, TextEncoding encoding);
    void setLineEnding(DocumentTab *tab, LineEnding ending);
    void checkExternalChanges();

    void openWorkspace(const QString &folder);
    QStringList workspaceFolders() const;

    WorkspaceSidebar *sidebar() const { return m_sidebar; }

    void setSidebarVisible(bool visible);
    bool isSidebarVisible() const;

    void setSplit(std::optional<Qt::Orientation> orientation);
    // The language menu, also offered by the status bar.
    void setLanguageMenu(QMenu *menu);
    void zoomBy(int steps); // 0 resets
    void applyColors(const EditorColors &colors, bool isDark);

    // Called when the user asks to open: shows the open panel.
    void showOpenPanel();
    void showOpenFolderPanel();

    std::function<void()> onQuitRequested;

Q_SIGNALS:
    void currentDocumentChanged(mirtex::DocumentTab *tab);
    void documentsChanged();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    DocumentTab *tabForEditor(QWidget *page) const;
    DocumentTab *findByPath(const QString &canonicalPath) const;
    void refreshTab(DocumentTab *tab);
    void refreshStatus();
    void refreshTitle();
    void applyPreferenceChange(Preferences::Field field);
    bool writeAdopting(DocumentTab *tab,
                       const QString &path,
                       std::optional<TextEncoding> encoding,
                       std::optional<LineEnding> ending);
    void removeTab(DocumentTab *tab);

    Preferences &m_prefs;
    QTabWidget *m_tabs;
    StatusBar *m_statusBar;
    WorkspaceSidebar *m_sidebar;
    std::vector<std::unique_ptr<DocumentTab>> m_documents;
    std::unique_ptr<EditorColors> m_colors;
    bool m_isCheckingDisk = false;
    QSet<QUuid> m_reportedMissing;
};

} // namespace mirtex
