// Replace all in a real editor holding a 100 MB log: the span computed over the editor's UTF-8 by
// replaceAllUtf8, applied as the one "Sostituisci tutto" step (its text handed over as UTF-16, as
// the edit path takes it today), and the one undo that restores the text — the step the user waits
// for after "Annulla". Peak memory: run it under /usr/bin/time -v.
#include "core/app/Preferences.h"
#include "core/search/Utf8Search.h"
#include "core/text/EditBatch.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace mirtex;

// 100 MB of log lines, about one "INFO" in three lines.
QByteArray hundredMegabyteLog()
{
    const QByteArray lines[] = {
        "2024-03-01T10:00:00.123Z INFO connessione aperta verso db-01 in 12 ms\n",
        "2024-03-01T10:00:01.456Z WARN timeout dopo 30 s, nuovo tentativo per caffè\n",
        "2024-03-01T10:00:02.789Z ERROR richiesta GET /api/v2/items?id=42 fallita 😀\n",
    };
    QByteArray text;
    text.reserve(100'000'000 + 100);
    for (int i = 0; text.size() < 100'000'000; ++i)
        text += lines[i % 3];
    return text;
}

struct LogEditor
{
    LogEditor()
        : prefs(folder.filePath(QStringLiteral("Mirtex++.conf")))
        , view(prefs)
    {
        view.loadText(hundredMegabyteLog());
    }

    QTemporaryDir folder;
    Preferences prefs;
    EditorView view;
};

EditBatch replaceAllBatch(const QByteArray &utf8, const SearchOptions &options)
{
    const Utf8ReplaceAllResult replaced
        = replaceAllUtf8(std::string_view(utf8.constData(), size_t(utf8.size())), false, options);
    EditBatch batch;
    batch.replacements.push_back(
        {replaced.span,
         QString::fromUtf8(replaced.replacement.data(), qsizetype(replaced.replacement.size()))});
    batch.selectionsAfter = Selection::caretAt(0);
    batch.undoLabel = QStringLiteral("Sostituisci tutto");
    return batch;
}

// Timed: the undo of a replace all of "INFO" (about 450,000 matches over the whole text).
void SearchReplaceAllUndoInEditor(benchmark::State &state)
{
    LogEditor editor;
    SearchOptions options;
    options.query = QStringLiteral("INFO");
    options.replacement = QStringLiteral("NOTA");
    options.matchCase = true;
    const EditBatch batch = replaceAllBatch(editor.view.utf8Text(), options);
    for (auto _ : state) {
        state.PauseTiming();
        if (!editor.view.applyBatch(batch))
            state.SkipWithError("the batch was refused");
        editor.view.flushPendingEdit();
        state.ResumeTiming();
        editor.view.primaryPane()->undo();
        editor.view.flushPendingEdit();
    }
}

BENCHMARK(SearchReplaceAllUndoInEditor)->Unit(benchmark::kMillisecond)->Iterations(3);

// Timed: computing the span over the editor's text and applying it as one step.
void SearchReplaceAllApplyInEditor(benchmark::State &state)
{
    LogEditor editor;
    SearchOptions options;
    options.query = QStringLiteral("INFO");
    options.replacement = QStringLiteral("NOTA");
    options.matchCase = true;
    for (auto _ : state) {
        const EditBatch batch = replaceAllBatch(editor.view.utf8Text(), options);
        if (!editor.view.applyBatch(batch))
            state.SkipWithError("the batch was refused");
        editor.view.flushPendingEdit();
        state.PauseTiming();
        editor.view.primaryPane()->undo();
        editor.view.flushPendingEdit();
        state.ResumeTiming();
    }
}

BENCHMARK(SearchReplaceAllApplyInEditor)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
