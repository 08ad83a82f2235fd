// Macro playback through the whole editor: a 10-step macro played to the end of a 100,000-line C
// file (commenting every line), the window repainted at the end, then the one undo step taken
// back and brought back.
#include "core/app/Preferences.h"
#include "core/editor/MacroStep.h"
#include "core/languages/Language.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/MacroCommands.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

Macro commentingMacro()
{
    return {MacroStep::command(QStringLiteral("moveToBeginningOfLine:")),
            MacroStep::insert(QStringLiteral("// ")),
            MacroStep::command(QStringLiteral("moveToEndOfLine:")),
            MacroStep::insert(QStringLiteral(" ")),
            MacroStep::insert(QStringLiteral("x")),
            MacroStep::command(QStringLiteral("deleteBackward:")),
            MacroStep::command(QStringLiteral("deleteBackward:")),
            MacroStep::command(QStringLiteral("moveToBeginningOfLine:")),
            MacroStep::command(QStringLiteral("moveToEndOfLine:")),
            MacroStep::command(QStringLiteral("moveDown:"))};
}

double msSince(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

void MacroToTheEndOfAFile(benchmark::State &state)
{
    const int lines = int(state.range(0));
    QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    Preferences prefs{folder.filePath(QStringLiteral("Mirtex++.conf"))};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
    app.window().resize(1000, 700);
    app.window().show();
    QString text;
    for (int i = 0; i < lines; ++i)
        text += QStringLiteral("int valore%1 = %1;\n").arg(i);
    app.macros().recorder().setMacro(commentingMacro());
    app.macros().askCount = [] { return 0; };
    double undoMs = 0;
    double redoMs = 0;
    for (auto _ : state) {
        state.PauseTiming();
        DocumentTab *tab = app.window().newDocument(text);
        tab->setLanguage(Language::byId(QStringLiteral("c")));
        QCoreApplication::processEvents();
        EditorView *editor = tab->editor();
        state.ResumeTiming();
        app.commands().dispatch(QStringLiteral("runMacroMultipleTimes:"));
        editor->activePane()->viewport()->repaint();
        state.PauseTiming();
        if (!editor->text().startsWith(QStringLiteral("// int valore0 = 0;\n// int valore1")))
            state.SkipWithError("the macro did not comment the lines");
        QElapsedTimer timer;
        timer.start();
        app.commands().dispatch(QStringLiteral("undo:"));
        editor->activePane()->viewport()->repaint();
        undoMs += msSince(timer);
        if (editor->textLength() != text.size())
            state.SkipWithError("one undo did not take the whole playback back");
        timer.restart();
        app.commands().dispatch(QStringLiteral("redo:"));
        editor->activePane()->viewport()->repaint();
        redoMs += msSince(timer);
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["undo_ms"] = undoMs / double(state.iterations());
    state.counters["redo_ms"] = redoMs / double(state.iterations());
}

BENCHMARK(MacroToTheEndOfAFile)
    ->Arg(2'000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

} // namespace
