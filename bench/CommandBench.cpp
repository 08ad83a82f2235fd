// What the command registry adds to a keystroke: every edit changes the tab's state, which
// brings all the actions' enabled and checked states up to date.
#include "core/app/Preferences.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

// The application with 50 tabs, the last one current.
struct Assembled
{
    Assembled()
    {
        for (int i = 0; i < 50; ++i)
            app.window().newDocument(QStringLiteral("int valore = %1;\n").arg(i).repeated(100));
    }

    QTemporaryDir folder;
    Preferences prefs{folder.filePath(QStringLiteral("Mirtex++.conf"))};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
};

void CommandRefresh(benchmark::State &state)
{
    Assembled a;
    for (auto _ : state)
        a.app.commands().refresh();
}

BENCHMARK(CommandRefresh)->Unit(benchmark::kMicrosecond);

// One character typed and taken back, with the registry following the tab's state.
void KeystrokeWithCommands(benchmark::State &state)
{
    Assembled a;
    EditorPane *pane = a.app.window().currentDocument()->editor()->primaryPane();
    for (auto _ : state) {
        pane->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, "x");
        pane->SendScintilla(QsciScintillaBase::SCI_DELETEBACK);
    }
}

BENCHMARK(KeystrokeWithCommands)->Unit(benchmark::kMicrosecond);

} // namespace
