// The in-editor search commands on a large log held by a real editor: the UTF-16 snapshot they
// search, count, mark all, and replace all applied as one undo step with its undo. The file is
// MIRTEX_BENCH_SEARCH_FILE (default /tmp/mirtex-bench-data/big.log); without it the family skips.
#include "core/app/Preferences.h"
#include "core/document/Utf8Codec.h"
#include "core/editor/LineIndex.h"
#include "core/search/MarkAll.h"
#include "core/search/SearchEngine.h"
#include "ui/editor/EditorAnnotations.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace mirtex;

const QByteArray &logBytes()
{
    static const QByteArray bytes = [] {
        QString path = qEnvironmentVariable("MIRTEX_BENCH_SEARCH_FILE");
        if (path.isEmpty())
            path = QStringLiteral("/tmp/mirtex-bench-data/big.log");
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    return bytes;
}

struct LoadedLog
{
    LoadedLog()
        : prefs(folder.filePath(QStringLiteral("Mirtex++.conf")))
        , view(prefs)
    {
        view.loadText(logBytes());
    }

    QTemporaryDir folder;
    Preferences prefs;
    EditorView view;
};

SearchOptions literal(const QString &query, const QString &replacement = {})
{
    SearchOptions options;
    options.query = query;
    options.replacement = replacement;
    options.matchCase = true;
    return options;
}

bool skipWithoutFile(benchmark::State &state)
{
    if (!logBytes().isEmpty())
        return false;
    state.SkipWithError("no log file (MIRTEX_BENCH_SEARCH_FILE)");
    return true;
}

// What a command pays first on a text it has not searched since the last edit.
void SearchSnapshotOfLog(benchmark::State &state)
{
    if (skipWithoutFile(state))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(Utf8Codec::toUtf16(logBytes()).size());
    state.SetBytesProcessed(state.iterations() * logBytes().size());
}

BENCHMARK(SearchSnapshotOfLog)->Unit(benchmark::kMillisecond)->Iterations(2);

void CountInEditorLog(benchmark::State &state)
{
    if (skipWithoutFile(state))
        return;
    LoadedLog log;
    const QString text = log.view.text();
    qsizetype count = 0;
    for (auto _ : state)
        count = countMatches(text, {}, false, literal(QStringLiteral("ERROR"))).count;
    state.counters["matches"] = double(count);
    state.SetBytesProcessed(state.iterations() * logBytes().size());
}

BENCHMARK(CountInEditorLog)->Unit(benchmark::kMillisecond)->Iterations(2);

void MarkAllInEditorLog(benchmark::State &state)
{
    if (skipWithoutFile(state))
        return;
    LoadedLog log;
    const QString text = log.view.text();
    for (auto _ : state) {
        LineIndex lines;
        lines.rebuild(text);
        const MarkAllResult result
            = markAll(text, {}, false, literal(QStringLiteral("ERROR")), true, lines.starts());
        log.view.annotations().setMarkRanges(result.ranges);
    }
}

BENCHMARK(MarkAllInEditorLog)->Unit(benchmark::kMillisecond)->Iterations(2);

// Replace all as the command runs it: the batch from the text, one undo step in the editor; then
// its undo, timed apart.
void ReplaceAllInEditorLog(benchmark::State &state)
{
    if (skipWithoutFile(state))
        return;
    LoadedLog log;
    qsizetype count = 0;
    double undoSeconds = 0;
    for (auto _ : state) {
        const ReplaceAllResult result
            = replaceAll(log.view.text(),
                         {},
                         false,
                         false,
                         literal(QStringLiteral("ERROR"), QStringLiteral("FAULT")));
        count = result.count;
        if (!log.view.applyBatch(result.batch))
            state.SkipWithError("the batch was refused");
        log.view.flushPendingEdit();
        state.PauseTiming();
        const auto start = std::chrono::steady_clock::now();
        log.view.primaryPane()->undo();
        log.view.flushPendingEdit();
        undoSeconds
            += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.ResumeTiming();
    }
    state.counters["matches"] = double(count);
    state.counters["undo_ms"] = 1000 * undoSeconds / double(state.iterations());
}

BENCHMARK(ReplaceAllInEditorLog)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace
