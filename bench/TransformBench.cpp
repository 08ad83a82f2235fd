// Line operations and digests: the pure sorts, de-duplication and digests over a 1,000,000-line
// text (mixed case, accents, emoji, ~48% repeated lines), and a sort applied to a real editor
// holding it as one undo step, with its undo and redo. Peak memory: run one benchmark under
// /usr/bin/time -v and compare with EditorLoadMillionLines.
#include "core/app/Preferences.h"
#include "core/tools/TextDigest.h"
#include "core/tools/TransformBatch.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <random>

namespace {

using namespace mirtex;

// Deterministic lines of one to six words; about 28 bytes a line in UTF-8.
const QString &millionLines()
{
    static const QString text = [] {
        const QStringList words
            = {u"alpha"_qs, u"Beta"_qs,  u"città"_qs, u"Città"_qs,  u"perché"_qs,
               u"ZEBRA"_qs, u"émile"_qs, u"Emile"_qs, u"😀"_qs,      u"👍🏽"_qs,
               u"über"_qs,  u"ábaco"_qs, u"42"_qs,    u"1,5"_qs,    u"naïve"_qs,
               u"Ωmega"_qs, u"delta"_qs, u"Echo"_qs,  u"straße"_qs, u"x"_qs};
        std::mt19937 random(20240229);
        QStringList pool; // half the lines repeat one of these
        QString result;
        result.reserve(30'000'000);
        for (int line = 0; line < 1'000'000; ++line) {
            QString made;
            if (!pool.isEmpty() && random() % 2 == 0) {
                made = pool[random() % pool.size()];
            } else {
                const int count = 1 + int(random() % 6);
                for (int w = 0; w < count; ++w) {
                    if (w > 0)
                        made += u' ';
                    made += words[random() % words.size()];
                }
                made += QString::number(random() % 1000);
                if (pool.size() < 50'000)
                    pool.append(made);
            }
            result += made;
            result += u'\n';
        }
        return result;
    }();
    return text;
}

void runOperation(benchmark::State &state, LineOperation operation)
{
    const QString &text = millionLines();
    LineOperationOptions options;
    options.locale = QLocale(QLocale::Italian, QLocale::Italy);
    for (auto _ : state) {
        const EditBatch batch = lineOperationBatch(text, Selections(), operation, options);
        benchmark::DoNotOptimize(batch.replacements.data());
    }
    state.SetBytesProcessed(state.iterations() * text.size() * 2);
}

void SortMillionLinesLiterally(benchmark::State &state)
{
    runOperation(state, LineOperation::sortAscending);
}

void SortMillionLinesIgnoringCase(benchmark::State &state)
{
    runOperation(state, LineOperation::sortAscendingIgnoringCase);
}

void RemoveDuplicatesOfMillionLines(benchmark::State &state)
{
    runOperation(state, LineOperation::removeDuplicates);
}

void SortMillionLinesByLength(benchmark::State &state)
{
    runOperation(state, LineOperation::sortByLength);
}

BENCHMARK(SortMillionLinesLiterally)->Unit(benchmark::kMillisecond);
BENCHMARK(SortMillionLinesIgnoringCase)->Unit(benchmark::kMillisecond);
BENCHMARK(RemoveDuplicatesOfMillionLines)->Unit(benchmark::kMillisecond);
BENCHMARK(SortMillionLinesByLength)->Unit(benchmark::kMillisecond);

void DigestHundredMegabytes(benchmark::State &state)
{
    const QByteArray bytes = millionLines().toUtf8().repeated(4).left(100'000'000);
    const auto algorithm = DigestAlgorithm(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(TextDigest::of(algorithm, bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

BENCHMARK(DigestHundredMegabytes)
    ->Arg(int(DigestAlgorithm::md5))
    ->Arg(int(DigestAlgorithm::sha256))
    ->Unit(benchmark::kMillisecond);

struct LoadedEditor
{
    LoadedEditor()
        : prefs(folder.filePath(QStringLiteral("Mirtex++.conf")))
        , view(prefs)
    {
        view.loadText(millionLines().toUtf8());
    }

    QTemporaryDir folder;
    Preferences prefs;
    EditorView view;
};

void EditorLoadMillionLines(benchmark::State &state)
{
    for (auto _ : state) {
        LoadedEditor editor;
        benchmark::DoNotOptimize(editor.view.textLength());
    }
}

BENCHMARK(EditorLoadMillionLines)->Unit(benchmark::kMillisecond)->Iterations(1);

// The command's whole path: the text from the editor, the batch, one undo step; then undo and redo.
void EditorSortMillionLinesUndoRedo(benchmark::State &state)
{
    LoadedEditor editor;
    for (auto _ : state) {
        const EditBatch batch = lineOperationBatch(
            editor.view.text(), editor.view.selections(), LineOperation::sortAscending, {});
        if (!editor.view.applyBatch(batch))
            state.SkipWithError("the batch was refused");
        editor.view.primaryPane()->undo();
        editor.view.flushPendingEdit();
        editor.view.primaryPane()->redo();
        editor.view.flushPendingEdit();
        state.PauseTiming();
        editor.view.primaryPane()->undo();
        editor.view.flushPendingEdit();
        state.ResumeTiming();
    }
}

BENCHMARK(EditorSortMillionLinesUndoRedo)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace
