#include "ui/app/WindowSession.h"

#include "core/app/Preferences.h"
#include "core/document/SessionFolder.h"
#include "core/document/SessionLock.h"
#include "core/document/SessionRestore.h"
#include "core/languages/Language.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>

namespace mirtex {

namespace {
Q_LOGGING_CATEGORY(lcWindowSession, "mirtex.session")
} // namespace

WindowSession::WindowSession(Preferences &prefs, const QString &folder)
    : m_prefs(prefs)
    , m_lock(std::make_unique<SessionLock>(folder))
    , m_store(folder)
{
    if (m_lock->isHeld())
        SessionFolder::makeAllPrivate(folder);
    else
        qCInfo(lcWindowSession).noquote()
            << "the session in" << folder << "is kept by process" << m_lock->holder()
            << "; this one runs without a session";
}

WindowSession::~WindowSession() = default;

bool WindowSession::isWriter() const
{
    return m_lock->isHeld();
}

std::optional<QString> WindowSession::write(MainWindow &window)
{
    if (!isWriter())
        return std::nullopt;
    const QList<DocumentTab *> tabs = window.documents();
    QList<SessionDocument> documents;
    documents.reserve(tabs.size());
    for (DocumentTab *tab : tabs) {
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
        item.utf8Text = [editor]() { return editor->utf8Text(); };
        documents.append(std::move(item));
    }
    const SessionWriteResult result
        = m_store.write(documents,
                        window.currentIndex(),
                        window.workspaceFolders(),
                        window.isSidebarVisible(),
                        m_notRestored.value_or(QList<SessionState::Entry>()));
    // Only backups really written count; a failed write is tried again at the next tick.
    for (DocumentTab *tab : tabs) {
        const auto written
            = result.backedUpChangeCounts.find(tab->document().id().toString(QUuid::WithoutBraces));
        if (written != result.backedUpChangeCounts.end())
            tab->document().setBackedUpChangeCount(*written);
    }
    if (result.succeeded)
        return std::nullopt;
    qCWarning(lcWindowSession).noquote() << "session not written:" << result.failure;
    return result.failure;
}

void WindowSession::remove()
{
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
    int opened = 0;
    m_notRestored = state->entries;
    for (const SessionState::Entry &entry : std::as_const(state->entries)) {
        // Carried until its tab exists: a write during its large-file question keeps it as it was.
        if (restoreEntry(flows, entry))
            ++opened;
        m_notRestored->removeFirst();
    }
    m_notRestored.reset();
    if (const auto selected
        = SessionRestore::clampSelected(state->selected, window.documents().size()))
        window.selectIndex(int(*selected));
    for (const QString &folder : std::as_const(state->workspace)) {
        if (QFileInfo(folder).isDir())
            window.openWorkspace(folder);
    }
    window.setSidebarVisible(state->sidebarVisible && !window.workspaceFolders().isEmpty());
    return opened > 0;
}

bool WindowSession::restoreEntry(DocumentFlows &flows, const SessionState::Entry &entry)
{
    const LineEnding fallbackEnding = lineEndingFromPreference(m_prefs.defaultLineEndingID());
    const TextEncoding encoding
        = TextEncoding::fromId(entry.encoding).value_or(TextEncoding::utf8());
    const LineEnding ending = lineEndingFromString(entry.lineEnding).value_or(LineEnding::lf);

    std::optional<QByteArray> backup;
    bool repaired = false;
    if (entry.hasBackup)
        backup = m_store.readBackup(entry.id, entry.backupName, &repaired);
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
        return false;

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
    flows.window().addDocument(tab);
    tab->setReadOnly(entry.readOnly || (disk && disk->readOnly && !backup));
    if (disk) // a binary file with unsaved edits was already chosen to be edited
        flows.showFileNotices(tab, *disk, !backup);

    EditorView *editor = tab->editor();
    const qsizetype length = editor->textLength();
    if (entry.split)
        editor->setSplit(*entry.split == QLatin1String("stacked") ? Qt::Vertical : Qt::Horizontal);
    editor->setSelection(SessionRestore::clampSelection(entry.selection, length));
    editor->setFirstVisibleLine(int(entry.scroll));
    if (!entry.bookmarks.isEmpty()) {
        const QString whole = editor->text();
        const auto lines
            = SessionRestore::bookmarksWithin(entry.bookmarks, SessionRestore::lineCountOf(whole));
        editor->annotations().setBookmarkedLines(
            std::vector<qsizetype>(lines.begin(), lines.end()));
    }
    // Folded blocks, folded again once the blocks are found.
    editor->folding().restoreFoldedLines(
        std::vector<qint64>(entry.folds.begin(), entry.folds.end()));
    return true;
}

} // namespace mirtex
