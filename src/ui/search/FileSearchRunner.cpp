#include "ui/search/FileSearchRunner.h"

#include "core/app/Preferences.h"
#include "core/search/FindModel.h"
#include "core/search/SearchEngine.h"
#include "ui/commands/Beep.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorView.h"
#include "ui/search/SearchResultSink.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace mirtex {

struct FileSearchRunner::Job
{
    FileSearchRequest request;
    std::atomic_bool stop{false};
};

FileSearchRunner::FileSearchRunner(MainWindow &window,
                                   FindModel &model,
                                   Questions &questions,
                                   Preferences &prefs,
                                   SinkProvider sink,
                                   QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_model(model)
    , m_questions(questions)
    , m_prefs(prefs)
    , m_sink(std::move(sink))
{
    m_pool.setMaxThreadCount(4); // a stale run may still be finishing its file
}

FileSearchRunner::~FileSearchRunner()
{
    if (m_job)
        m_job->stop = true;
    m_pool.waitForDone();
}

QString FileSearchRunner::expandedFolder(const QString &typed)
{
    if (typed == u"~")
        return QDir::homePath();
    if (typed.startsWith(u"~/"))
        return QDir::homePath() + typed.sliced(1);
    return typed;
}

void FileSearchRunner::stop()
{
    if (m_job)
        m_job->stop = true;
}

void FileSearchRunner::start(bool replace)
{
    const FindFields &fields = m_model.fields();
    const QString folder = expandedFolder(fields.directory);
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        m_model.setStatus({tr("Scegli una cartella esistente."), true});
        return;
    }
    const SearchOptions options = m_model.options();
    auto regex = makeRegex(options);
    if (!regex) {
        m_model.setStatus(SearchStatus::failure(regex.error()));
        beep();
        return;
    }
    const QString folderPath = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    if (replace
        && m_questions.askToReplaceInFiles(
               &m_window, options.query, QFileInfo(folderPath).fileName())
               != ReplaceInFilesAnswer::replace)
        return;
    m_prefs.setValue(QLatin1String(PreferenceKeys::kFindDirectory), fields.directory);

    auto job = std::make_shared<Job>();
    FileSearchRequest &request = job->request;
    request.folder = folderPath;
    request.regex = std::move(*regex);
    request.filters = parseFileFilters(fields.filters);
    request.subfolders = fields.subfolders;
    request.hiddenFolders = fields.hiddenFolders;
    request.respectGitignore = fields.respectGitignore;
    request.replace = replace;
    for (DocumentTab *tab : m_window.documents()) {
        const Document &document = tab->document();
        if (document.path())
            request.openDocuments.insert(
                *document.path(), {document.id(), tab->editor()->text(), document.isReadOnly()});
    }

    if (m_job)
        m_job->stop = true; // superseded: let its thread go
    const int generation = ++m_generation;
    m_job = job;
    m_set = -1;
    if (!replace) {
        if (SearchResultSink *sink = m_sink ? m_sink() : nullptr)
            m_set = sink->beginSet(options.query, folderPath);
    }
    m_model.update([replace](FindFields &f) {
        f.status = replace ? tr("Sostituzione in corso…") : tr("Ricerca in corso…");
        f.statusIsError = false;
        f.isBusy = true;
    });
    Q_EMIT runningChanged(true);

    m_pool.start([this, job, generation] {
        const FileSearchOutcome outcome
            = runFileSearch(job->request, job->stop, [this, generation](FileSearchBatch batch) {
                  auto shared = std::make_shared<FileSearchBatch>(std::move(batch));
                  QMetaObject::invokeMethod(
                      this,
                      [this, generation, shared] { applyBatch(generation, std::move(*shared)); },
                      Qt::QueuedConnection);
              });
        auto shared = std::make_shared<FileSearchOutcome>(outcome);
        QMetaObject::invokeMethod(
            this,
            [this, generation, shared] { applyOutcome(generation, std::move(*shared)); },
            Qt::QueuedConnection);
    });
}

void FileSearchRunner::applyBatch(int generation, FileSearchBatch batch)
{
    if (generation != m_generation || !m_job)
        return;
    if (!batch.files.empty() && m_set >= 0) {
        if (SearchResultSink *sink = m_sink ? m_sink() : nullptr)
            sink->appendFiles(m_set, std::move(batch.files));
    }
    m_model.setStatus({tr("Letti %1").arg(batch.filesRead), false});
}

void FileSearchRunner::applyOutcome(int generation, FileSearchOutcome outcome)
{
    if (generation != m_generation || !m_job)
        return;
    const bool replace = m_job->request.replace;
    const SearchOptions options = m_job->request.regex.options();
    m_job.reset();
    if (replace)
        replaceInOpenDocuments(outcome.documentsToReplace, options);

    SearchStatus status;
    if (outcome.error) {
        status = SearchStatus::failure(*outcome.error);
    } else if (outcome.count == 0) {
        status = {tr("Nessun risultato in %1 file.").arg(outcome.filesRead), true};
    } else if (replace) {
        status.text = tr("%1 sostituzioni in %2 file (letti %3).")
                          .arg(outcome.count)
                          .arg(outcome.filesWithMatches)
                          .arg(outcome.filesRead);
        if (!outcome.notWritten.isEmpty())
            status.text += tr(" Non scritti: ") + outcome.notWritten.join(u", ");
    } else {
        status.text = tr("%1 risultati in %2 file (letti %3).")
                          .arg(outcome.count)
                          .arg(outcome.filesWithMatches)
                          .arg(outcome.filesRead);
    }
    if (outcome.stopped)
        status.text += replace ? tr(" Sostituzione interrotta.") : tr(" Ricerca interrotta.");
    m_model.update([&status](FindFields &f) {
        f.status = status.text;
        f.statusIsError = status.isError;
        f.isBusy = false;
    });
    Q_EMIT runningChanged(false);
    Q_EMIT finished();
}

void FileSearchRunner::replaceInOpenDocuments(const std::vector<QUuid> &ids,
                                              const SearchOptions &options)
{
    for (const QUuid &id : ids) {
        for (DocumentTab *tab : m_window.documents()) {
            if (tab->document().id() != id)
                continue;
            EditorView *editor = tab->editor();
            const ReplaceAllResult result = replaceAll(
                editor->text(), editor->selection(), false, tab->document().isReadOnly(), options);
            if (!result.batch.replacements.empty())
                editor->applyBatch(result.batch);
        }
    }
}

} // namespace mirtex
