// The document flows of the main window: opening (with the large-file question), saving (with
// the UTF-8 offer), closing with unsaved changes, reopening in another encoding, and the questions
// about files changed by other programs.
#include "core/app/Preferences.h"
#include "core/document/FileNaming.h"
#include "ui/app/Alerts.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/SaveDialog.h"
#include "ui/editor/EditorView.h"

#include <QFileDialog>
#include <QFileInfo>

namespace mirtex {

int MainWindow::openPaths(const QStringList &paths)
{
    int opened = 0;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (info.isDir()) {
            openWorkspace(info.canonicalFilePath());
            continue;
        }
        if (openPath(path))
            ++opened;
    }
    return opened;
}

DocumentTab *MainWindow::openPath(const QString &path, std::optional<TextEncoding> forced)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    if (canonical.isEmpty()) {
        Alerts::instance().inform(this, DocumentError::unreadable(path).description());
        return nullptr;
    }
    if (QFileInfo(canonical).isDir()) {
        openWorkspace(canonical);
        return nullptr;
    }
    if (auto *existing = findByPath(canonical)) {
        selectDocument(existing);
        return existing;
    }
    if (!confirmLargeFile(canonical))
        return nullptr;
    auto loaded = Document::read(
        canonical, forced, lineEndingFromPreference(m_prefs.defaultLineEndingID()));
    if (!loaded) {
        Alerts::instance().inform(this, loaded.error().description());
        return nullptr;
    }
    auto *tab = new DocumentTab(
        m_prefs, loaded->utf8, canonical, loaded->encoding, loaded->lineEnding, QString());
    loaded->utf8 = {};
    tab->document().setFileModificationDate(loaded->modified);
    tab->document().setReadOnly(loaded->readOnly);
    tab->detectLanguage();
    addDocument(tab);
    return tab;
}

bool MainWindow::confirmLargeFile(const QString &path)
{
    const qint64 size = QFileInfo(path).size();
    if (size <= kLargeFileBytes)
        return true;
    const int answer = Alerts::instance().ask(
        this,
        tr("“%1” è molto grande (%2).").arg(QFileInfo(path).fileName(), formatFileSize(size)),
        tr("Aprirlo può richiedere tempo e molta memoria."),
        {tr("Apri comunque"), tr("Annulla")});
    return answer == 0;
}

bool MainWindow::writeAdopting(DocumentTab *tab,
                               const QString &path,
                               std::optional<TextEncoding> encoding,
                               std::optional<LineEnding> ending)
{
    Document &doc = tab->document();
    for (;;) {
        auto written = doc.write(path, encoding, true, ending);
        if (written) {
            m_reportedMissing.remove(doc.id());
            refreshTab(tab);
            refreshStatus();
            return true;
        }
        if (written.error().kind == DocumentError::Kind::unencodable) {
            const int answer
                = Alerts::instance().ask(this,
                                         tr("Alcuni caratteri non si possono salvare in %1.")
                                             .arg(written.error().encoding.label()),
                                         tr("Salvare il file in UTF-8?"),
                                         {tr("Salva in UTF-8"), tr("Annulla")});
            if (answer != 0)
                return false;
            encoding = TextEncoding::utf8();
            continue;
        }
        Alerts::instance().inform(this, written.error().description());
        return false;
    }
}

bool MainWindow::save(DocumentTab *tab)
{
    if (!tab)
        return false;
    const auto &path = tab->document().path();
    if (!path)
        return saveAs(tab);
    return writeAdopting(tab, *path, std::nullopt, std::nullopt);
}

bool MainWindow::saveAs(DocumentTab *tab)
{
    if (!tab)
        return false;
    const auto choice = SaveDialog::ask(this, m_prefs, tab->document(), tr("Salva con nome"));
    if (!choice)
        return false;
    return writeAdopting(tab, choice->path, choice->encoding, choice->lineEnding);
}

bool MainWindow::saveCopy(DocumentTab *tab)
{
    if (!tab)
        return false;
    const auto choice = SaveDialog::ask(this, m_prefs, tab->document(), tr("Salva una copia"));
    if (!choice)
        return false;
    auto written = tab->document().write(choice->path, choice->encoding, false, choice->lineEnding);
    if (!written) {
        Alerts::instance().inform(this, written.error().description());
        return false;
    }
    return true;
}

bool MainWindow::saveAll()
{
    bool all = true;
    for (auto *tab : documents()) {
        if (tab->document().isDirty()) {
            selectDocument(tab);
            all = save(tab) && all;
        }
    }
    return all;
}

MainWindow::SaveAnswer MainWindow::askToSave(DocumentTab *tab)
{
    selectDocument(tab);
    const int answer = Alerts::instance().ask(
        this,
        tr("Salvare le modifiche a “%1”?").arg(tab->document().displayName()),
        tr("Se non salvi, le modifiche andranno perse."),
        {tr("Salva"), tr("Annulla"), tr("Non salvare")},
        1);
    if (answer == 0)
        return save(tab) ? SaveAnswer::saved : SaveAnswer::cancelled;
    if (answer == 2)
        return SaveAnswer::discarded;
    return SaveAnswer::cancelled;
}

bool MainWindow::closeDocument(DocumentTab *tab)
{
    if (!tab)
        return false;
    if (tab->document().isDirty() && askToSave(tab) == SaveAnswer::cancelled)
        return false;
    discardDocument(tab);
    return true;
}

void MainWindow::convertEncoding(DocumentTab *tab, TextEncoding encoding)
{
    tab->document().setEncoding(encoding);
}

void MainWindow::setLineEnding(DocumentTab *tab, LineEnding ending)
{
    tab->document().setLineEnding(ending);
}

void MainWindow::reopenWithEncoding(DocumentTab *tab, TextEncoding encoding)
{
    Document &doc = tab->document();
    if (!doc.path()) {
        convertEncoding(tab, encoding);
        return;
    }
    if (doc.isDirty()) {
        const int answer = Alerts::instance().ask(
            this,
            tr("Riaprire “%1” come %2?").arg(doc.displayName(), encoding.label()),
            tr("Le modifiche non salvate andranno perse."),
            {tr("Riapri"), tr("Annulla")});
        if (answer != 0)
            return;
    }
    auto loaded = Document::read(
        *doc.path(), encoding, lineEndingFromPreference(m_prefs.defaultLineEndingID()));
    if (!loaded) {
        Alerts::instance().inform(this, loaded.error().description());
        return;
    }
    doc.reload(*loaded);
}

void MainWindow::checkExternalChanges()
{
    if (!m_prefs.checkExternalChanges() || m_isCheckingDisk)
        return;
    m_isCheckingDisk = true;
    for (auto *tab : documents()) {
        Document &doc = tab->document();
        if (!doc.path())
            continue;
        if (!QFileInfo::exists(*doc.path())) {
            if (m_reportedMissing.contains(doc.id()))
                continue;
            m_reportedMissing.insert(doc.id());
            selectDocument(tab);
            const int answer = Alerts::instance().ask(
                this,
                tr("“%1” non esiste più sul disco.").arg(doc.displayName()),
                tr("Vuoi tenerlo aperto? Salvandolo lo ricrei."),
                {tr("Tieni aperto"), tr("Chiudi")},
                0);
            if (answer == 1)
                discardDocument(tab);
            continue;
        }
        m_reportedMissing.remove(doc.id());
        if (!doc.hasChangedOnDisk())
            continue;
        selectDocument(tab);
        const int answer = Alerts::instance().ask(
            this,
            tr("“%1” è cambiato sul disco.").arg(doc.displayName()),
            doc.isDirty() ? tr("È stato modificato da un altro programma. Ricaricandolo perderai "
                               "le modifiche fatte qui.")
                          : tr("È stato modificato da un altro programma. Vuoi ricaricarlo?"),
            {tr("Ricarica"), tr("Ignora")});
        if (answer == 0) {
            auto loaded = Document::read(
                *doc.path(), std::nullopt, lineEndingFromPreference(m_prefs.defaultLineEndingID()));
            if (loaded)
                doc.reload(*loaded);
            else
                Alerts::instance().inform(this, loaded.error().description());
        } else {
            // Remember the new date so that one outside change is asked about once.
            doc.setFileModificationDate(QFileInfo(*doc.path()).lastModified());
        }
    }
    m_isCheckingDisk = false;
}

void MainWindow::showOpenPanel()
{
    const QStringList paths = QFileDialog::getOpenFileNames(this, tr("Apri"));
    openPaths(paths);
}

void MainWindow::showOpenFolderPanel()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Apri cartella"));
    if (!folder.isEmpty())
        openWorkspace(folder);
}

} // namespace mirtex
