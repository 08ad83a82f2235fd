#include "ui/document/DocumentFlows.h"

#include "core/app/Preferences.h"
#include "core/document/FileNaming.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/FileNotices.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include <cerrno>
#include <sys/stat.h>

namespace mirtex {

namespace {

// Why a path has no canonical form: it is missing, or a folder on the way cannot be searched.
FileProblem unresolvedProblem(const QString &path)
{
    struct stat status
    {};

    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return fileProblemFromErrno(errno);
    return FileProblem::other;
}

// Where the open panel was last used (a key of the preferences store).
constexpr auto kLastOpenDirectory = "lastOpenDirectory";
} // namespace

DocumentFlows::DocumentFlows(MainWindow &window, Questions &questions)
    : QObject(&window)
    , m_window(window)
    , m_prefs(window.preferences())
    , m_questions(questions)
{
    connect(&m_window, &MainWindow::closeRequested, this, [this](DocumentTab *tab) {
        closeDocument(tab);
    });
    connect(&m_window, &MainWindow::openRequested, this, &DocumentFlows::openPaths);
    connect(qApp, &QApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            checkExternalChanges();
    });
}

LineEnding DocumentFlows::fallbackLineEnding() const
{
    return lineEndingFromPreference(m_prefs.defaultLineEndingID());
}

void DocumentFlows::report(const DocumentError &error)
{
    m_questions.inform(&m_window, error.description(), error.reason());
}

void DocumentFlows::showFileNotices(DocumentTab *tab, const LoadedFile &file, bool lockBinary)
{
    const QPointer<DocumentTab> target(tab);
    tab->notices().showRead(file, lockBinary, [this, target](TextEncoding encoding) {
        if (target)
            reopenWithEncoding(target, encoding);
    });
}

int DocumentFlows::openPaths(const QStringList &paths)
{
    int opened = 0;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (info.isDir()) {
            m_window.openWorkspace(info.canonicalFilePath());
            continue;
        }
        if (openPath(path))
            ++opened;
    }
    return opened;
}

DocumentTab *DocumentFlows::openPath(const QString &path, std::optional<TextEncoding> forced)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    if (!info.exists() && !info.isSymLink())
        return openNewPath(info.absoluteFilePath());
    if (canonical.isEmpty()) {
        report(DocumentError::unreadable(path, unresolvedProblem(path)));
        return nullptr;
    }
    if (QFileInfo(canonical).isDir()) {
        m_window.openWorkspace(canonical);
        return nullptr;
    }
    if (auto *existing = m_window.findByPath(canonical)) {
        m_window.selectDocument(existing);
        return existing;
    }
    if (!confirmLargeFile(canonical))
        return nullptr;
    auto loaded = Document::read(canonical, forced, fallbackLineEnding());
    if (!loaded) {
        report(loaded.error());
        return nullptr;
    }
    auto *tab = new DocumentTab(
        m_prefs, loaded->utf8, canonical, loaded->encoding, loaded->lineEnding, QString());
    loaded->utf8 = {};
    tab->document().setFileModificationDate(loaded->modified);
    tab->setReadOnly(loaded->readOnly);
    tab->detectLanguage();
    showFileNotices(tab, *loaded, true);
    m_window.addDocument(tab);
    replaceUntouchedUntitled(tab);
    Q_EMIT fileOpened(canonical);
    return tab;
}

DocumentTab *DocumentFlows::openNewPath(const QString &path)
{
    const QFileInfo info(path);
    for (DocumentTab *existing : m_window.documents()) {
        if (existing->document().path() == path) {
            m_window.selectDocument(existing);
            return existing;
        }
    }
    // A restored tab of a file that is gone from disk still holds its text: it is that file's tab.
    for (QWidget *page : m_window.pagesInOrder()) {
        auto *pending = qobject_cast<PendingTab *>(page);
        if (pending && pending->entry().path == path) {
            if (DocumentTab *loaded = pending->load()) {
                m_window.selectDocument(loaded);
                return loaded;
            }
            return nullptr;
        }
    }
    if (!info.dir().exists()) {
        m_questions.inform(&m_window,
                           tr("Impossibile creare “%1”: la cartella “%2” non esiste.")
                               .arg(info.fileName(), QDir::toNativeSeparators(info.path())));
        return nullptr;
    }
    auto *tab = new DocumentTab(
        m_prefs, QByteArray(), path, m_window.defaultEncoding(), fallbackLineEnding(), QString());
    tab->detectLanguage();
    // Not on disk yet: not a file that went missing.
    m_reportedMissing.insert(tab->document().id());
    m_window.addDocument(tab);
    replaceUntouchedUntitled(tab);
    return tab;
}

void DocumentFlows::replaceUntouchedUntitled(DocumentTab *opened)
{
    const QList<DocumentTab *> tabs = m_window.documents();
    if (tabs.size() != 2)
        return;
    DocumentTab *other = tabs[0] == opened ? tabs[1] : tabs[0];
    const Document &doc = other->document();
    if (!doc.path() && doc.changeCount() == 0 && !doc.isDirty()
        && other->editor()->text().isEmpty())
        m_window.discardDocument(other);
}

bool DocumentFlows::confirmLargeFile(const QString &path)
{
    const qint64 size = QFileInfo(path).size();
    if (size <= kLargeFileBytes)
        return true;
    return m_questions.askToOpenLargeFile(&m_window, QFileInfo(path).fileName(), size)
           == LargeFileAnswer::open;
}

bool DocumentFlows::writeAdopting(DocumentTab *tab,
                                  const QString &path,
                                  std::optional<TextEncoding> encoding,
                                  std::optional<LineEnding> ending)
{
    Document &doc = tab->document();
    for (;;) {
        auto written = doc.write(path, encoding, true, ending);
        if (written) {
            m_reportedMissing.remove(doc.id());
            return true;
        }
        if (written.error().kind == DocumentError::Kind::unencodable) {
            if (m_questions.offerUtf8(&m_window, written.error().encoding.label())
                != Utf8OfferAnswer::saveInUtf8)
                return false;
            encoding = TextEncoding::utf8();
            continue;
        }
        report(written.error());
        return false;
    }
}

bool DocumentFlows::save(DocumentTab *tab)
{
    if (!tab)
        return false;
    const auto &path = tab->document().path();
    if (!path)
        return saveAs(tab);
    if (tab->notices().locksSaving()) {
        m_questions.inform(&m_window,
                           tr("“%1” sembra binario ed è aperto in sola lettura.")
                               .arg(tab->document().displayName()),
                           tr("Per salvarlo scegli prima “Modifica comunque”."));
        return false;
    }
    return writeAdopting(tab, *path, std::nullopt, std::nullopt);
}

bool DocumentFlows::saveAs(DocumentTab *tab)
{
    if (!tab)
        return false;
    const auto choice
        = m_questions.chooseSaveLocation(&m_window, m_prefs, tab->document(), tr("Salva con nome"));
    if (!choice)
        return false;
    if (!writeAdopting(tab, choice->path, choice->encoding, choice->lineEnding))
        return false;
    Q_EMIT fileOpened(choice->path);
    return true;
}

bool DocumentFlows::saveCopy(DocumentTab *tab)
{
    if (!tab)
        return false;
    const auto choice = m_questions.chooseSaveLocation(
        &m_window, m_prefs, tab->document(), tr("Salva una copia"));
    if (!choice)
        return false;
    auto written = tab->document().write(choice->path, choice->encoding, false, choice->lineEnding);
    if (!written) {
        report(written.error());
        return false;
    }
    return true;
}

bool DocumentFlows::saveAll()
{
    bool all = true;
    // Pending tabs with unsaved text are loaded to be saved; loading replaces their pages.
    const QList<QWidget *> pages = m_window.pagesInOrder();
    const QList<QPointer<QWidget>> guarded(pages.begin(), pages.end());
    for (const QPointer<QWidget> &page : guarded) {
        if (!page)
            continue;
        DocumentTab *tab = m_window.tabForPage(page);
        if (auto *pending = qobject_cast<PendingTab *>(page.data())) {
            if (!pending->entry().hasBackup)
                continue;
            tab = pending->load();
            if (!tab) {
                all = false;
                continue;
            }
        }
        if (tab && tab->document().isDirty()) {
            m_window.selectDocument(tab);
            all = save(tab) && all;
        }
    }
    return all;
}

DocumentFlows::SaveOutcome DocumentFlows::askToSave(DocumentTab *tab)
{
    m_window.selectDocument(tab);
    switch (m_questions.askToSave(&m_window, tab->document().displayName())) {
    case SaveQuestionAnswer::save:
        return save(tab) ? SaveOutcome::saved : SaveOutcome::cancelled;
    case SaveQuestionAnswer::discard:
        return SaveOutcome::discarded;
    case SaveQuestionAnswer::cancel:
        break;
    }
    return SaveOutcome::cancelled;
}

bool DocumentFlows::closeDocument(DocumentTab *tab)
{
    if (!tab)
        return false;
    if (tab->document().isDirty() && askToSave(tab) == SaveOutcome::cancelled)
        return false;
    m_window.discardDocument(tab);
    return true;
}

bool DocumentFlows::closeDocuments(const QList<DocumentTab *> &tabs)
{
    for (DocumentTab *tab : tabs) {
        if (!closeDocument(tab))
            return false;
    }
    return true;
}

bool DocumentFlows::closePage(QWidget *page)
{
    auto *pending = qobject_cast<PendingTab *>(page);
    if (!pending)
        return closeDocument(m_window.tabForPage(page));
    if (!pending->entry().hasBackup) {
        m_window.removePendingTab(pending);
        return true;
    }
    if (DocumentTab *loaded = pending->load())
        return closeDocument(loaded);
    // Not loaded: declined (the tab stays, as a cancel), or nothing was left to show (gone).
    return !m_window.pagesInOrder().contains(page);
}

bool DocumentFlows::closePages(const QList<QWidget *> &pages)
{
    // Closing (or loading) a tab deletes its page: the ones gone meanwhile are skipped.
    const QList<QPointer<QWidget>> guarded(pages.begin(), pages.end());
    for (const QPointer<QWidget> &page : guarded) {
        if (!page || !m_window.pagesInOrder().contains(page.data()))
            continue;
        if (!closePage(page))
            return false;
    }
    return true;
}

bool DocumentFlows::reloadFromDisk(DocumentTab *tab)
{
    if (!tab || !tab->document().path())
        return false;
    Document &doc = tab->document();
    if (doc.isDirty()
        && m_questions.askToReload(&m_window, doc.displayName()) != ReloadAnswer::reload)
        return false;
    auto loaded = Document::read(*doc.path(), doc.encoding(), fallbackLineEnding());
    if (!loaded) {
        m_questions.inform(&m_window, loaded.error().description());
        return false;
    }
    doc.reload(*loaded);
    return true;
}

void DocumentFlows::convertEncoding(DocumentTab *tab, TextEncoding encoding)
{
    tab->document().setEncoding(encoding);
}

void DocumentFlows::setLineEnding(DocumentTab *tab, LineEnding ending)
{
    tab->document().setLineEnding(ending);
}

void DocumentFlows::reopenWithEncoding(DocumentTab *tab, TextEncoding encoding)
{
    Document &doc = tab->document();
    if (!doc.path()) {
        convertEncoding(tab, encoding);
        return;
    }
    if (doc.isDirty()) {
        if (m_questions.askToReopen(&m_window, doc.displayName(), encoding.label())
            != ReopenAnswer::reopen)
            return;
    }
    auto loaded = Document::read(*doc.path(), encoding, fallbackLineEnding());
    if (!loaded) {
        report(loaded.error());
        return;
    }
    doc.reload(*loaded);
    showFileNotices(tab, *loaded, true);
}

void DocumentFlows::fileRemovedByUser(DocumentTab *tab)
{
    // The user removed it here: no question about a file that vanished.
    m_reportedMissing.insert(tab->document().id());
    tab->markFileRemoved();
}

void DocumentFlows::checkExternalChanges()
{
    if (!m_prefs.checkExternalChanges() || m_isCheckingDisk)
        return;
    m_isCheckingDisk = true;
    for (auto *tab : m_window.documents()) {
        Document &doc = tab->document();
        if (!doc.path())
            continue;
        if (!QFileInfo::exists(*doc.path())) {
            if (m_reportedMissing.contains(doc.id()))
                continue;
            m_reportedMissing.insert(doc.id());
            m_window.selectDocument(tab);
            if (m_questions.askAboutMissingFile(&m_window, doc.displayName())
                == MissingFileAnswer::close)
                m_window.discardDocument(tab);
            else
                tab->markFileRemoved();
            continue;
        }
        m_reportedMissing.remove(doc.id());
        if (!doc.hasChangedOnDisk())
            continue;
        m_window.selectDocument(tab);
        if (m_questions.askAboutChangedFile(&m_window, doc.displayName(), doc.isDirty())
            == ChangedFileAnswer::reload) {
            auto loaded = Document::read(*doc.path(), std::nullopt, fallbackLineEnding());
            if (loaded) {
                doc.reload(*loaded);
                showFileNotices(tab, *loaded, true);
            } else {
                report(loaded.error());
            }
        } else {
            // Remember the new date so that one outside change is asked about once.
            doc.setFileModificationDate(QFileInfo(*doc.path()).lastModified());
        }
    }
    m_isCheckingDisk = false;
}

void DocumentFlows::showOpenPanel()
{
    // The current file's folder, else where the last file was opened.
    QString folder;
    if (DocumentTab *tab = m_window.currentDocument(); tab && tab->document().path())
        folder = QFileInfo(*tab->document().path()).absolutePath();
    if (folder.isEmpty())
        folder = m_prefs.value(QLatin1String(kLastOpenDirectory)).toString();
    if (folder.isEmpty())
        folder = m_prefs.value(QLatin1String(PreferenceKeys::kLastSaveDirectory)).toString();
    const QStringList paths = m_questions.chooseFilesToOpen(&m_window, folder);
    if (!paths.isEmpty())
        m_prefs.setValue(QLatin1String(kLastOpenDirectory), QFileInfo(paths[0]).absolutePath());
    openPaths(paths);
}

void DocumentFlows::showOpenFolderPanel()
{
    const QString folder = m_questions.chooseFolderToOpen(&m_window);
    if (!folder.isEmpty())
        m_window.openWorkspace(folder);
}

} // namespace mirtex
