// The edit path: a batch applied to a string (pure), and to a real editor as one undo step, from
// the empty batch through one character to a million replacements in an 8,000,000-unit text.
#include "core/app/Preferences.h"
#include "core/text/EditBatch.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace mirtex;

constexpr qsizetype kTextUnits = 8'000'000;
constexpr qsizetype kReplacements = 1'000'000;

// Lines of 63 letters with an accented one; a little more than one byte per unit in UTF-8.
const QString &eightMillionUnits()
{
    static const QString text = [] {
        QString line = QStringLiteral("cittadella");
        while (line.size() < 62)
            line += QStringLiteral(" perché");
        line.truncate(62);
        line += u'\n';
        QString result;
        result.reserve(kTextUnits + line.size());
        while (result.size() < kTextUnits)
            result += line;
        result.truncate(kTextUnits);
        return result;
    }();
    return text;
}

// Every eighth unit replaced, alternately by two units and by nothing.
EditBatch millionReplacements()
{
    EditBatch batch;
    batch.replacements.reserve(kReplacements);
    for (qsizetype i = 0; i < kReplacements; ++i)
        batch.replacements.push_back({{i * 8, 1}, i % 2 ? QString() : QStringLiteral("«»")});
    batch.selectionsAfter = Selection::caretAt(0);
    batch.undoLabel = QStringLiteral("Sostituisci tutto");
    return batch;
}

void PureApplyMillionReplacements(benchmark::State &state)
{
    const QString &text = eightMillionUnits();
    const EditBatch batch = millionReplacements();
    for (auto _ : state) {
        const QString result = applyEditBatch(text, batch);
        benchmark::DoNotOptimize(result.constData());
    }
}

BENCHMARK(PureApplyMillionReplacements)->Unit(benchmark::kMillisecond);

void MapSelectionsThroughMillionReplacements(benchmark::State &state)
{
    const EditBatch batch = millionReplacements();
    std::vector<Selection> carets;
    for (qsizetype at = 3; at < kTextUnits; at += 8000)
        carets.push_back(Selection::caretAt(at));
    const Selections selections(carets);
    for (auto _ : state)
        benchmark::DoNotOptimize(mapSelections(selections, batch.replacements).size());
}

BENCHMARK(MapSelectionsThroughMillionReplacements)->Unit(benchmark::kMillisecond);

// An editor over the 8,000,000-unit text (deferred edit notices), caret in the middle.
struct LoadedEditor
{
    LoadedEditor()
        : prefs(folder.filePath(QStringLiteral("Mirtex++.conf")))
        , view(prefs)
    {
        view.loadText(eightMillionUnits().toUtf8());
        view.setSelection({kTextUnits / 2, 0});
    }

    QTemporaryDir folder;
    Preferences prefs;
    EditorView view;
};

void EditorApplyEmptyBatch(benchmark::State &state)
{
    LoadedEditor editor;
    const EditBatch empty{{}, Selection::caretAt(3), QStringLiteral("Niente")};
    for (auto _ : state)
        benchmark::DoNotOptimize(editor.view.applyBatch(empty));
}

BENCHMARK(EditorApplyEmptyBatch)->Unit(benchmark::kMicrosecond);

// Typing one character in the middle and deleting it again, each as one undo step.
void EditorApplyOneCharacterBatch(benchmark::State &state)
{
    LoadedEditor editor;
    const qsizetype at = kTextUnits / 2;
    const EditBatch insert{{{{at, 0}, QStringLiteral("x")}}, Selection::caretAt(at + 1), {}};
    const EditBatch remove{{{{at, 1}, QString()}}, Selection::caretAt(at), {}};
    bool inserting = true;
    for (auto _ : state) {
        editor.view.applyBatch(inserting ? insert : remove);
        inserting = !inserting;
    }
}

BENCHMARK(EditorApplyOneCharacterBatch)->Unit(benchmark::kMicrosecond);

// A million replacements as one undo step, then undone (not timed) for the next round.
void EditorApplyMillionReplacements(benchmark::State &state)
{
    LoadedEditor editor;
    const EditBatch batch = millionReplacements();
    for (auto _ : state) {
        if (!editor.view.applyBatch(batch))
            state.SkipWithError("the batch was refused");
        state.PauseTiming();
        editor.view.primaryPane()->undo();
        editor.view.flushPendingEdit();
        state.ResumeTiming();
    }
}

BENCHMARK(EditorApplyMillionReplacements)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
