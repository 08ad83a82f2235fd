// A job's text is the editor's UTF-16 snapshot when it is current, else a copy of the UTF-8 bytes
// converted on the worker, so the main thread never converts a large text for it. Whether the
// text changed meanwhile is told by the editor's edit signal, watched for the job's lifetime.
#include "ui/search/InDocumentSearch.h"

#include "core/document/Utf8Codec.h"
#include "core/editor/LineIndex.h"
#include "core/search/FindModel.h"
#include "core/search/MarkAll.h"
#include "core/search/SearchEngine.h"
#include "core/search/SearchStop.h"
#include "ui/commands/Beep.h"
#include "ui/document/CommandContext.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent>

#include <algorithm>

namespace mirtex {

struct InDocumentSearch::Job
{
    quint64 generation = 0;
    QPointer<EditorView> editor;
    std::shared_ptr<std::atomic<bool>> stop = std::make_shared<std::atomic<bool>>(false);
    bool textChanged = false;
    bool busyShown = false; // the model shows this job as busy
    QMetaObject::Connection edits;
    QTimer *busyTimer = nullptr;
};

InDocumentSearch::InDocumentSearch(CommandContext &context, FindModel &model, QObject *parent)
    : QObject(parent)
    , m_context(context)
    , m_model(model)
{}

InDocumentSearch::~InDocumentSearch()
{
    if (m_job)
        m_job->stop->store(true);
    endJob();
    m_pool.waitForDone();
}

EditorView *InDocumentSearch::editor() const
{
    return m_context.currentEditor();
}

void InDocumentSearch::show(EditorView &editor, const FindResult &result)
{
    if (result.found) {
        editor.setSelection(*result.found); // opens the folds around it
        editor.activePane()->SendScintilla(QsciScintillaBase::SCI_SCROLLRANGE,
                                           long(editor.positions().toByte(result.found->location)),
                                           long(editor.positions().toByte(result.found->end())));
    }
    m_model.setStatus(result.status);
    if (result.beep)
        beep();
}

void InDocumentSearch::findNext()
{
    EditorView *e = editor();
    if (!e)
        return;
    const FindFields &f = m_model.fields();
    m_model.recordSearch(f.query);
    show(*e, mirtex::findNext(e->text(), e->selection(), m_model.options(), f.wrapAround));
}

void InDocumentSearch::findPrevious()
{
    EditorView *e = editor();
    if (!e)
        return;
    const FindFields &f = m_model.fields();
    m_model.recordSearch(f.query);
    show(*e, mirtex::findPrevious(e->text(), e->selection(), m_model.options(), f.wrapAround));
}

void InDocumentSearch::findWordAtCaret()
{
    EditorView *e = editor();
    if (!e)
        return;
    QString word;
    const TextRange selection = e->selection();
    if (selection.length > 0) {
        word = e->positions().text(selection).section(QLatin1Char('\n'), 0, 0);
    } else {
        EditorPane *pane = e->activePane();
        const long caret = pane->SendScintilla(QsciScintillaBase::SCI_GETCURRENTPOS);
        const long from = pane->SendScintilla(QsciScintillaBase::SCI_WORDSTARTPOSITION, caret, 1L);
        const long to = pane->SendScintilla(QsciScintillaBase::SCI_WORDENDPOSITION, caret, 1L);
        word = e->positions().text(e->positions().toUtf16Range(from, to));
    }
    if (word.isEmpty()) {
        beep();
        return;
    }
    m_model.update([&](FindFields &f) { f.query = word; });
    findNext();
}

void InDocumentSearch::replace()
{
    EditorView *e = editor();
    if (!e)
        return;
    const FindFields &f = m_model.fields();
    const ReplaceOneResult result = replaceOne(
        e->text(), e->selection(), !m_context.isEditable(), m_model.options(), f.wrapAround);
    if (!result.batch.isEmpty())
        e->applyBatch(result.batch);
    show(*e, result.next);
}

void InDocumentSearch::count()
{
    EditorView *e = editor();
    if (!e)
        return;
    const SearchOptions options = m_model.options();
    const TextRange selection = e->selection();
    const bool inSelection = m_model.fields().inSelection;
    run(*e, tr("Conteggio in corso…"), [=, this](QStringView text) -> Apply {
        const CountResult result = countMatches(text, selection, inSelection, options);
        return [this, result](EditorView &) {
            m_model.setStatus(result.status);
            if (result.beep)
                beep();
        };
    });
}

void InDocumentSearch::replaceAll()
{
    EditorView *e = editor();
    if (!e)
        return;
    const SearchOptions options = m_model.options();
    const TextRange selection = e->selection();
    const bool inSelection = m_model.fields().inSelection;
    const bool readOnly = !m_context.isEditable();
    run(*e, tr("Sostituzione in corso…"), [=, this](QStringView text) -> Apply {
        auto result = std::make_shared<ReplaceAllResult>(
            mirtex::replaceAll(text, selection, inSelection, readOnly, options));
        return [this, result](EditorView &editor) {
            if (!result->batch.isEmpty())
                editor.applyBatch(result->batch); // one undo step, "Sostituisci tutto"
            m_model.setStatus(result->status);
            if (result->beep)
                beep();
        };
    });
}

void InDocumentSearch::markAll()
{
    EditorView *e = editor();
    if (!e)
        return;
    const SearchOptions options = m_model.options();
    const TextRange selection = e->selection();
    const bool inSelection = m_model.fields().inSelection;
    const bool bookmarkLines = m_model.fields().bookmarkLines;
    run(*e, tr("Ricerca in corso…"), [=, this](QStringView text) -> Apply {
        LineIndex lines;
        if (bookmarkLines)
            lines.rebuild(text);
        auto result = std::make_shared<MarkAllResult>(
            mirtex::markAll(text, selection, inSelection, options, bookmarkLines, lines.starts()));
        return [this, result](EditorView &editor) {
            if (!result->beep) {
                EditorAnnotations &annotations = editor.annotations();
                annotations.setMarkRanges(std::move(result->ranges));
                if (!result->lines.empty()) {
                    std::vector<qsizetype> merged = annotations.bookmarkedLines();
                    merged.insert(merged.end(), result->lines.begin(), result->lines.end());
                    std::sort(merged.begin(), merged.end());
                    merged.erase(std::unique(merged.begin(), merged.end()), merged.end());
                    annotations.setBookmarkedLines(merged);
                }
            }
            m_model.setStatus(result->status);
            if (result->beep)
                beep();
        };
    });
}

void InDocumentSearch::clearMarks()
{
    EditorView *e = editor();
    if (!e)
        return;
    e->annotations().setMarkRanges({});
    m_model.setStatus(SearchStatus::marksCleared());
}

void InDocumentSearch::run(EditorView &editor, const QString &progress, Work work)
{
    if (m_job) {
        m_job->stop->store(true); // a newer command supersedes it
        endJob();
    }
    if (editor.textLength() <= m_backgroundAbove) {
        work(editor.text())(editor);
        return;
    }
    const quint64 generation = ++m_generation;
    m_job = std::make_unique<Job>();
    Job &job = *m_job;
    job.generation = generation;
    job.editor = &editor;
    job.edits = connect(&editor, &EditorView::textEdited, this, [this] {
        if (m_job)
            m_job->textChanged = true;
    });
    job.busyTimer = new QTimer(this);
    job.busyTimer->setSingleShot(true);
    connect(job.busyTimer, &QTimer::timeout, this, [this, progress] {
        m_job->busyShown = true;
        m_model.setStatus({progress, false});
        m_model.setBusy(true);
    });
    job.busyTimer->start(kBusyAfterMs);

    const std::optional<QString> snapshot = editor.readySnapshot();
    const QByteArray bytes = snapshot ? QByteArray() : editor.utf8Text();
    auto *watcher = new QFutureWatcher<Apply>(this);
    connect(watcher, &QFutureWatcher<Apply>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        finish(generation, watcher->result());
    });
    watcher->setFuture(
        QtConcurrent::run(&m_pool, [snapshot, bytes, work, stop = job.stop]() -> Apply {
            const SearchStopScope scope(*stop);
            if (stop->load())
                return {};
            const QString text = snapshot ? *snapshot : Utf8Codec::toUtf16(bytes);
            return work(text);
        }));
}

void InDocumentSearch::finish(quint64 generation, const Apply &apply)
{
    if (!m_job || m_job->generation != generation)
        return; // cancelled or superseded: the text is left alone
    QPointer<EditorView> editor = m_job->editor;
    const bool changed = m_job->textChanged;
    endJob();
    if (!editor || !apply)
        return;
    if (changed) {
        m_model.setStatus(
            {tr("Il testo è cambiato durante la ricerca: nulla è stato applicato."), true});
        beep();
        return;
    }
    apply(*editor);
}

bool InDocumentSearch::cancel()
{
    if (!m_job)
        return false;
    m_job->stop->store(true);
    endJob();
    m_model.setStatus({tr("Operazione annullata."), false});
    return true;
}

void InDocumentSearch::endJob()
{
    if (!m_job)
        return;
    disconnect(m_job->edits);
    delete m_job->busyTimer;
    const bool busyShown = m_job->busyShown;
    m_job.reset();
    if (busyShown)
        m_model.setBusy(false);
    Q_EMIT jobEnded();
}

} // namespace mirtex
