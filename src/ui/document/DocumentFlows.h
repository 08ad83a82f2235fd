// What the user does with documents, with every question it takes: opening (with the large-file
// question), saving (with the UTF-8 offer), closing with unsaved changes, reopening in or
// converting to another encoding, and the questions about files changed by other programs.
#pragma once

#include "core/document/DocumentError.h"
#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QObject>
#include <QSet>
#include <QUuid>

#include <optional>

namespace mirtex {

class DocumentTab;
class MainWindow;
class Preferences;
class Questions;
struct LoadedFile;

class DocumentFlows : public QObject
{
    Q_OBJECT

public:
    // Follows the window's close and open requests and checks the files when the application
    // becomes active. `questions` must outlive this object.
    DocumentFlows(MainWindow &window, Questions &questions);

    MainWindow &window() const { return m_window; }

    Questions &questions() const { return m_questions; }

    // Opens each path as a document (a folder becomes the workspace). Returns how many documents
    // were opened or selected.
    int openPaths(const QStringList &paths);
    // Opens one file; a file already open is selected instead. A path that does not exist in an
    // existing folder opens as an empty tab of that name, created on disk by the first save.
    // Nothing when refused or failed.
    DocumentTab *openPath(const QString &path, std::optional<TextEncoding> forced = std::nullopt);
    // The large-file question for files above the threshold: true when the file may be opened.
    bool confirmLargeFile(const QString &path);
    // The tab's info bars about what reading `file` found (binary bytes, a likelier encoding,
    // mixed line breaks). With `lockBinary` a binary file's text becomes read-only.
    void showFileNotices(DocumentTab *tab, const LoadedFile &file, bool lockBinary);

    // Each returns whether it completed (false: failed or cancelled).
    bool save(DocumentTab *tab);
    bool saveAs(DocumentTab *tab);
    bool saveCopy(DocumentTab *tab);
    bool saveAll();
    // Asks about unsaved changes first; "Annulla" keeps the tab.
    bool closeDocument(DocumentTab *tab);
    // Closes each in turn as closeDocument does; stops at the first cancelled one.
    bool closeDocuments(const QList<DocumentTab *> &tabs);
    // Closes tabs by their pages, loaded or pending, as closeDocuments does. A pending tab
    // without unsaved text (its text is its file) just goes; one with a backup is loaded first
    // and asked about as any unsaved tab; if it does not load, that counts as cancelled.
    bool closePage(QWidget *page);
    bool closePages(const QList<QWidget *> &pages);
    // Reads the file again, asking first when the tab has unsaved changes.
    bool reloadFromDisk(DocumentTab *tab);
    // The save question of closing and quitting.
    enum class SaveOutcome {
        saved,
        discarded,
        cancelled
    };
    SaveOutcome askToSave(DocumentTab *tab);

    void reopenWithEncoding(DocumentTab *tab, TextEncoding encoding);
    void convertEncoding(DocumentTab *tab, TextEncoding encoding);
    void setLineEnding(DocumentTab *tab, LineEnding ending);
    void checkExternalChanges();
    // The tab's file was moved to the trash from the sidebar: the tab keeps its text, says the
    // file is gone, and is not asked about as a file removed by another program.
    void fileRemovedByUser(DocumentTab *tab);
    // The alert for a failed read or write: what failed, and why in the informative text.
    void report(const DocumentError &error);

    // The open panels.
    void showOpenPanel();
    void showOpenFolderPanel();

Q_SIGNALS:
    // A file was opened into a tab or saved under a new name (recent files).
    void fileOpened(const QString &path);

private:
    DocumentTab *openNewPath(const QString &path);
    // The first file opened into the window takes the place of an untouched "nuovo 1".
    void replaceUntouchedUntitled(DocumentTab *opened);
    bool writeAdopting(DocumentTab *tab,
                       const QString &path,
                       std::optional<TextEncoding> encoding,
                       std::optional<LineEnding> ending);
    LineEnding fallbackLineEnding() const;

    MainWindow &m_window;
    Preferences &m_prefs;
    Questions &m_questions;
    bool m_isCheckingDisk = false;
    QSet<QUuid> m_reportedMissing;
};

} // namespace mirtex
