#include "ui/app/WindowSession.h"

#include "core/app/Preferences.h"
#include "core/document/FileNaming.h"
#include "core/document/HugePageHint.h"
#include "core/document/SessionFolder.h"
#include "core/document/SessionLock.h"
#include "core/document/SessionRestore.h"
#include "core/languages/Language.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProgressDialog>
#include <Qsci/qsciscintillabase.h>

#include <cstring>

namespace mirtex {

namespace {
Q_LOGGING_CATEGORY(lcWindowSession, "mirtex.session")
} // namespace

WindowSession::WindowSession(Preferences &prefs, const QString &folder)
    : m_prefs(prefs)
    , m_lock(std::make_unique<SessionLock>(folder))
    , m_store(folder)
{
    QObject::connect(&m_writer, &SessionWriter::written, &m_writer, [this](const auto &result) {
        apply(result);
    });
    if (m_lock->isHeld())
        SessionFolder::makeAllPrivate(folder);
    else
        qCInfo(lcWindowSession).noquote()
            << "the session in" << folder << "is kept by process" << m_lock->holder()
            << "; this one runs without a session";
}

WindowSession::~WindowSession()
{
    m_writer.finishPending();
}

bool WindowSession::isWriter() const
{
    return m_lock->isHeld();
}

namespace {

// The editor's UTF-8 into `into`, in its memory when that is not shared and large enough; else in
// new memory with room to grow by the typing of a few ticks.
void copyEditorText(const EditorView &editor, QByteArray &into)
{
    using Sci = QsciScintillaBase;
    EditorPane *pane = editor.primaryPane();
    const long length = long(pane->SendScintilla(Sci::SCI_GETLENGTH));
    const auto *buffer
        = static_cast<const char *>(pane->SendScintillaPtrResult(Sci::SCI_GETCHARACTERPOINTER));
    if (!into.isDetached() || into.capacity() < length) {
        QByteArray fresh;
        fresh.reserve(length + length / 16 + 65536);
        adviseHugePages(fresh.data(), size_t(fresh.capacity()));
        into = std::move(fresh);
    }
    into.resize(length);
    std::memcpy(into.data(), buffer, size_t(length));
}

} // namespace

SessionWriteRequest WindowSession::request(MainWindow &window) const
{
    QHash<QWidget *, DocumentTab *> tabs;
    for (DocumentTab *tab : window.documents())
        tabs.insert(tab->page(), tab);
    const QList<QWidget *> pages = window.pagesInOrder();
    SessionWriteRequest request;
    request.documents.reserve(pages.size());
    QHash<QString, QByteArray> copies;
    for (QWidget *page : pages) {
        DocumentTab *tab = tabs.value(page);
        if (!tab) {
            if (auto *pending = qobject_cast<PendingTab *>(page)) {
                SessionDocument item;
                item.entry = pending->entry();
                item.carried = true;
                request.documents.append(std::move(item));
            }
            continue;
        }
        const Document &doc = tab->document();
        EditorView *editor = tab->editor();
        SessionDocument item;
        SessionState::Entry &entry = item.entry;
        entry.id = doc.id().toString(QUuid::WithoutBraces);
        entry.path = doc.path();
        if (!doc.path())
            entry.untitledName = doc.untitledName();
        entry.encoding = doc.encoding().id();
        entry.lineEnding = toString(doc.lineEnding());
        entry.language = doc.languageId();
        entry.selection = editor->selection();
        entry.scroll = editor->firstVisibleLine();
        for (qsizetype line : editor->annotations().bookmarkedLines())
            entry.bookmarks.append(line);
        entry.readOnly = doc.isReadOnly();
        if (const auto split = editor->split())
            entry.split
                = *split == Qt::Horizontal ? QStringLiteral("side") : QStringLiteral("stacked");
        // Folded blocks.
        for (qint64 line : editor->folding().foldedLines())
            entry.folds.append(qsizetype(line));
        item.needsBackup = doc.isDirty() || (!doc.path() && editor->textLength() > 0);
        item.changeCount = doc.changeCount();
        item.backedUpChangeCount = doc.backedUpChangeCount();
        // One copy of the editor's bytes, made now: the write may run while the text changes.
        if (item.needsBackup && item.changeCount != item.backedUpChangeCount) {
            const QString id = doc.id().toString(QUuid::WithoutBraces);
            QByteArray &copy = copies[id];
            copy = m_textCopies.take(id);
            copyEditorText(*editor, copy);
            item.utf8Text = [utf8 = copy]() { return utf8; };
        }
        request.documents.append(std::move(item));
    }
    // Copies of documents not copied this time (saved, closed) are let go.
    m_textCopies = std::move(copies);
    request.selected = window.currentIndex();
    request.workspace = window.workspaceFolders();
    request.sidebarVisible = window.isSidebarVisible();
    request.carried = m_notRestored.value_or(QList<SessionState::Entry>());
    return request;
}

void WindowSession::apply(const SessionWriteResult &result)
{
    if (!m_window)
        return;
    for (DocumentTab *tab : m_window->documents()) {
        Document &doc = tab->document();
        const QString id = doc.id().toString(QUuid::WithoutBraces);
        // Only backups really written count; a failed write is tried again at the next tick.
        if (const auto written = result.backedUpChangeCounts.find(id);
            written != result.backedUpChangeCounts.end())
            doc.setBackedUpChangeCount(*written);
        else if (result.textNeeded.contains(id))
            doc.setBackedUpChangeCount(-1); // the file went missing: the next write brings text
    }
    if (!result.succeeded)
        qCWarning(lcWindowSession).noquote() << "session not written:" << result.failure;
}

std::optional<QString> WindowSession::write(MainWindow &window)
{
    if (!isWriter())
        return std::nullopt;
    m_window = &window;
    const SessionWriteResult result = m_writer.writeNow(request(window));
    if (result.succeeded)
        return std::nullopt;
    return result.failure;
}

void WindowSession::writeInBackground(MainWindow &window)
{
    if (!isWriter() || m_writer.isWriting())
        return;
    m_window = &window;
    m_writer.writeInBackground(request(window));
}

void WindowSession::remove()
{
    m_writer.finishPending();
    if (isWriter())
        m_store.removeSessionFile();
}

bool WindowSession::restore(DocumentFlows &flows)
{
    if (!isWriter())
        return false;
    MainWindow &window = flows.window();
    auto state = m_store.load();
    if (!state)
        return false;
    SessionRestore::nameUntitledEntries(state->entries);
    const qsizetype count = state->entries.size();
    const qsizetype selected
        = std::clamp<qsizetype>(state->selected, 0, std::max<qsizetype>(0, count - 1));
    // A few tabs are loaded at once; beyond that only the selected one, the others when shown.
    const bool lazily = count > kLoadedAtOnce;
    QProgressDialog progress(
        QCoreApplication::translate("WindowSession", "Ripristino della sessione…"),
        QString(),
        0,
        int(count),
        &window);
    progress.setWindowTitle(QStringLiteral("Mirtex++"));
    progress.setMinimumDuration(1000);
    progress.setWindowModality(Qt::WindowModal);
    int opened = 0;
    int selectedIndex = -1;
    m_notRestored = state->entries;
    for (qsizetype i = 0; i < count; ++i) {
        const SessionState::Entry &entry = state->entries[i];
        progress.setValue(int(i));
        // Carried until its tab exists: a write during its large-file question keeps it as it was.
        bool placed = false;
        if (lazily && i != selected) {
            placed = addPending(flows, entry);
        } else {
            bool kept = false;
            placed = restoreEntry(flows, entry, nullptr, &kept) != nullptr || kept;
            if (placed && i == selected)
                selectedIndex = int(window.pagesInOrder().size()) - 1;
        }
        if (placed)
            ++opened;
        m_notRestored->removeFirst();
    }
    m_notRestored.reset();
    progress.setValue(int(count));
    if (selectedIndex >= 0)
        window.selectIndex(selectedIndex);
    else if (const auto clamped = SessionRestore::clampSelected(state->selected, opened))
        window.selectIndex(int(*clamped));
    for (const QString &folder : std::as_const(state->workspace)) {
        if (QFileInfo(folder).isDir())
            window.openWorkspace(folder);
    }
    window.setSidebarVisible(state->sidebarVisible && !window.workspaceFolders().isEmpty());
    return opened > 0;
}

bool WindowSession::addPending(DocumentFlows &flows, const SessionState::Entry &entry)
{
    // Without a backup a tab is its file: one that is gone (or no regular file) is skipped now,
    // as a loaded restore would.
    if (!entry.hasBackup && (!entry.path || !QFileInfo(*entry.path).isFile()))
        return false;
    QString title
        = entry.path ? QFileInfo(*entry.path).fileName() : entry.untitledName.value_or(QString());
    if (entry.hasBackup && entry.path)
        title = QStringLiteral("● ") + title;
    std::weak_ptr<WindowSession *> self = m_self;
    auto *pending = new PendingTab(title, entry, [self, &flows](PendingTab *tab) -> DocumentTab * {
        const auto session = self.lock();
        if (!session)
            return nullptr;
        bool kept = false;
        DocumentTab *loaded = (*session)->restoreEntry(flows, tab->entry(), tab, &kept);
        if (!loaded && !kept)
            flows.window().removePendingTab(tab); // nothing left to show, as at start-up
        return loaded;
    });
    flows.window().addPendingTab(pending);
    return true;
}

DocumentTab *WindowSession::restoreEntry(DocumentFlows &flows,
                                         const SessionState::Entry &entry,
                                         PendingTab *replacing,
                                         bool *keptPending)
{
    const LineEnding fallbackEnding = lineEndingFromPreference(m_prefs.defaultLineEndingID());
    const TextEncoding encoding
        = TextEncoding::fromId(entry.encoding).value_or(TextEncoding::utf8());
    const LineEnding ending = lineEndingFromString(entry.lineEnding).value_or(LineEnding::lf);

    std::optional<QByteArray> backup;
    bool repaired = false;
    if (entry.hasBackup) {
        // A backup as large as a file that is asked about is asked about too; declined, it stays
        // a tab not loaded, its entry and backup carried over as they are.
        const qint64 size = QFileInfo(m_store.backupFilePath(entry.id, entry.backupName)).size();
        if (size > kLargeFileBytes) {
            const QString name = entry.path ? QFileInfo(*entry.path).fileName()
                                            : entry.untitledName.value_or(QString());
            if (flows.questions().askToOpenLargeFile(&flows.window(), name, size)
                != LargeFileAnswer::open) {
                if (!replacing)
                    addPending(flows, entry);
                *keptPending = true;
                return nullptr;
            }
        }
        backup = m_store.readBackup(entry.id, entry.backupName, &repaired);
    }
    // The file on disk: the text itself, or what a backup is compared with.
    std::optional<LoadedFile> disk;
    if (entry.path && flows.confirmLargeFile(*entry.path)) {
        if (auto loaded = Document::read(*entry.path, encoding, fallbackEnding))
            disk = std::move(*loaded);
        else if (auto detected = Document::read(*entry.path, std::nullopt, fallbackEnding))
            disk = std::move(*detected);
    }
    // Neither a backup nor a file: nothing to bring back (an untitled tab whose backup is gone
    // would come back empty, a file that cannot be read is gone).
    if (!backup && !disk)
        return nullptr;

    const QUuid id
        = QUuid::fromString(entry.id).isNull() ? QUuid::createUuid() : QUuid::fromString(entry.id);
    const QByteArray text = backup ? *backup : disk ? disk->utf8 : QByteArray();
    std::optional<QByteArray> saved;
    if (backup)
        saved = disk ? disk->utf8 : QByteArray(); // dirty exactly when the backup differs from disk
    auto *tab = new DocumentTab(m_prefs,
                                text,
                                disk ? std::optional<QString>(disk->path) : entry.path,
                                encoding,
                                ending,
                                entry.untitledName.value_or(QString()),
                                id,
                                saved);
    Document &doc = tab->document();
    tab->setLanguage(Language::byId(entry.language));
    if (disk)
        doc.setFileModificationDate(disk->modified);
    if (backup && !repaired)
        doc.setBackedUpChangeCount(doc.changeCount()); // the backup already holds this text
    if (replacing)
        flows.window().replacePendingTab(replacing, tab);
    else
        flows.window().addDocument(tab);
    tab->setReadOnly(entry.readOnly || (disk && disk->readOnly && !backup));
    if (disk) // a binary file with unsaved edits was already chosen to be edited
        flows.showFileNotices(tab, *disk, !backup);

    EditorView *editor = tab->editor();
    const qsizetype length = editor->textLength();
    if (entry.split)
        editor->setSplit(*entry.split == QLatin1String("stacked") ? Qt::Vertical : Qt::Horizontal);
    editor->setSelection(SessionRestore::clampSelection(entry.selection, length));
    if (!entry.bookmarks.isEmpty()) {
        const QString whole = editor->text();
        const auto lines
            = SessionRestore::bookmarksWithin(entry.bookmarks, SessionRestore::lineCountOf(whole));
        editor->annotations().setBookmarkedLines(
            std::vector<qsizetype>(lines.begin(), lines.end()));
    }
    // Folded blocks, folded again once the blocks are found; the scroll position counts the
    // lines shown, so it is applied after them (and meanwhile, for the first paint).
    const int scroll = int(entry.scroll);
    editor->setFirstVisibleLine(scroll);
    editor->folding().restoreFoldedLines(
        std::vector<qint64>(entry.folds.begin(), entry.folds.end()),
        [editor, scroll] { editor->setFirstVisibleLine(scroll); });
    return tab;
}

} // namespace mirtex
