// Code folding: detection over large C texts (with the block count checked against the count the
// generator made), folding and unfolding every block of a million-line text in a real pane, and a
// keystroke in a text with 10,000 folds.
#include "core/app/Preferences.h"
#include "core/editor/FoldDetection.h"
#include "core/languages/Language.h"
#include "core/languages/SyntaxHighlighter.h"
#include "core/languages/Tokenizer.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

// Functions of 14 lines, each with four blocks spanning lines (the body, a loop, and an
// "if … } else {" pair); strings and comments hold no brackets, so no skip ranges are needed.
struct GeneratedC
{
    QString text;
    qint64 blocks = 0;
};

GeneratedC generateC(qint64 lines)
{
    static const char *const kFunction[] = {
        "/* helper number %1: adds and subtracts */",
        "static int helper_number_%1(int count, int scale)",
        "{",
        "    int total_value = 0;",
        "    for (int index = 0; index < count; ++index) {",
        "        if (index % 3 == 0) {",
        "            total_value += index * %1 * scale;",
        "        } else {",
        "            total_value -= scale;",
        "        }",
        "    }",
        "    const char *name = \"helper number %1\";",
        "    return total_value + (int)strlen(name);",
        "}",
    };
    GeneratedC c;
    c.text.reserve(lines * 30);
    for (qint64 n = 0; n + 14 <= lines; n += 14) {
        for (const char *line : kFunction) {
            const QString text = QString::fromLatin1(line);
            c.text += text.contains(u"%1") ? text.arg(n) : text;
            c.text += u'\n';
        }
        c.blocks += 4;
    }
    return c;
}

const GeneratedC &millionLines()
{
    static const GeneratedC c = generateC(1'000'000);
    return c;
}

void BM_FoldDetectC(benchmark::State &state)
{
    const GeneratedC c = state.range(0) == 1'000'000 ? millionLines() : generateC(state.range(0));
    // The editor colours texts below 8,000,000 units: those are scanned with their tokens.
    QList<Token> tokens;
    if (c.text.size() < SyntaxHighlighter::kNoHighlightLimit)
        tokens = tokenize(*Language::byId(u"c"), c.text);
    std::size_t found = 0;
    for (auto _ : state) {
        const auto regions = detectFoldRegions({c.text, FoldStyle::braces, false, &tokens, 4});
        found = regions.size();
        benchmark::DoNotOptimize(regions.data());
    }
    // Comments here are single lines, so every region is one of the generator's blocks.
    if (qint64(found) != c.blocks)
        state.SkipWithError("block count differs from the generator's");
    state.counters["blocks"] = double(found);
    state.counters["expected"] = double(c.blocks);
    state.counters["MB"] = double(c.text.toUtf8().size()) / 1e6;
}

BENCHMARK(BM_FoldDetectC)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

struct FoldedEditor
{
    explicit FoldedEditor(const QString &text)
    {
        view.resize(1000, 800);
        view.show();
        view.loadText(text.toUtf8());
        view.setLanguage(Language::byId(u"c"));
        view.folding().detectNow();
    }

    QTemporaryDir dir;
    Preferences prefs{dir.filePath(QStringLiteral("p.conf"))};
    EditorView view{prefs};
};

FoldedEditor &millionLineEditor()
{
    // Kept to the end of the process: panes cannot outlive the application object.
    static FoldedEditor *editor = new FoldedEditor(millionLines().text);
    return *editor;
}

void BM_FoldAllMillionLines(benchmark::State &state)
{
    EditorFolding &folding = millionLineEditor().view.folding();
    for (auto _ : state) {
        state.PauseTiming();
        folding.unfoldAll();
        state.ResumeTiming();
        folding.foldAll();
    }
    state.counters["folds"] = double(folding.state().folds().size());
}

void BM_UnfoldAllMillionLines(benchmark::State &state)
{
    EditorFolding &folding = millionLineEditor().view.folding();
    for (auto _ : state) {
        state.PauseTiming();
        folding.foldAll();
        state.ResumeTiming();
        folding.unfoldAll();
    }
}

BENCHMARK(BM_FoldAllMillionLines)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_UnfoldAllMillionLines)->Unit(benchmark::kMillisecond)->Iterations(5);

// The same on the benchmark kit's generated C file (code-1m.c in MIRTEX_BENCH_DATA, by default
// /tmp/mirtex-bench-data), its braces in strings and comments included; the events that follow
// (the repaint) are part of the time. Skipped when the file is missing.
FoldedEditor *kitEditor()
{
    static FoldedEditor *editor = []() -> FoldedEditor * {
        const QString folder
            = qEnvironmentVariable("MIRTEX_BENCH_DATA", QStringLiteral("/tmp/mirtex-bench-data"));
        QFile file(folder + QStringLiteral("/code-1m.c"));
        if (!file.open(QIODevice::ReadOnly))
            return nullptr;
        return new FoldedEditor(QString::fromUtf8(file.readAll()));
    }();
    return editor;
}

void BM_FoldAllKitFile(benchmark::State &state)
{
    FoldedEditor *editor = kitEditor();
    if (!editor) {
        state.SkipWithError("code-1m.c not found");
        return;
    }
    EditorFolding &folding = editor->view.folding();
    const bool fold = state.range(0) == 1;
    for (auto _ : state) {
        state.PauseTiming();
        fold ? folding.unfoldAll() : folding.foldAll();
        QCoreApplication::processEvents();
        state.ResumeTiming();
        fold ? folding.foldAll() : folding.unfoldAll();
        QCoreApplication::processEvents();
    }
    state.counters["regions"] = double(folding.state().regions().size());
}

BENCHMARK(BM_FoldAllKitFile)
    ->ArgName("fold")
    ->Arg(1)
    ->Arg(0)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// One character typed and deleted again, on a visible line between folded blocks, in a text with
// 10,000 folds (each edit carries every fold and brings the panes' hidden lines up to date).
void BM_KeystrokeWithTenThousandFolds(benchmark::State &state)
{
    const GeneratedC c = generateC(14 * 2'500);
    FoldedEditor editor(c.text);
    EditorFolding &folding = editor.view.folding();
    folding.foldAll();
    EditorPane *pane = editor.view.primaryPane();
    const long where = pane->SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE,
                                           long(folding.state().regions()[5'000].start));
    for (auto _ : state) {
        pane->SendScintilla(QsciScintillaBase::SCI_INSERTTEXT, where, "x");
        editor.view.flushPendingEdit();
        pane->SendScintilla(QsciScintillaBase::SCI_DELETERANGE, where, 1L);
        editor.view.flushPendingEdit();
    }
    state.counters["folds"] = double(folding.state().folds().size());
    state.counters["edits"]
        = benchmark::Counter(double(state.iterations()) * 2, benchmark::Counter::kIsRate);
}

BENCHMARK(BM_KeystrokeWithTenThousandFolds)->Unit(benchmark::kMicrosecond);

} // namespace
