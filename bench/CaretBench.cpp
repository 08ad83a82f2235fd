// Several carets in the real editor: a character typed at 10,000 carets, and a line command
// (toggling line comments) at 10,000 carets through the registry, one undo step each.
#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

constexpr int kCarets = 10000;

// A C document of 10,000 lines with a caret at the start of each.
struct ManyCarets
{
    ManyCarets()
    {
        QString text;
        std::vector<Selection> carets;
        for (int i = 0; i < kCarets; ++i) {
            carets.push_back(Selection::caretAt(text.size()));
            text += QStringLiteral("int valore_%1 = %1;\n").arg(i);
        }
        tab = app.window().newDocument(text);
        tab->setLanguage(Language::byId(QStringLiteral("c")));
        editor = tab->editor();
        editor->setSelections(Selections(std::move(carets)));
    }

    void key(int code, const QString &text)
    {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, text);
        QCoreApplication::sendEvent(editor->activePane(), &press);
    }

    QTemporaryDir folder;
    Preferences prefs{folder.filePath(QStringLiteral("Mirtex++.conf"))};
    ScriptedQuestions questions;
    AppAssembly app{prefs, questions};
    DocumentTab *tab = nullptr;
    EditorView *editor = nullptr;
};

// One key press typed at every caret (the backspace that takes it back is not timed).
void TypeAtTenThousandCarets(benchmark::State &state)
{
    ManyCarets m;
    for (auto _ : state) {
        m.key(Qt::Key_X, QStringLiteral("x"));
        state.PauseTiming();
        m.key(Qt::Key_Backspace, {});
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    if (m.editor->selections().size() != std::size_t(kCarets))
        state.SkipWithError("the carets did not survive typing");
}

BENCHMARK(TypeAtTenThousandCarets)->Unit(benchmark::kMillisecond);

// Commenting or uncommenting 10,000 lines at their carets, as the menu would.
void LineCommentAtTenThousandCarets(benchmark::State &state)
{
    ManyCarets m;
    for (auto _ : state)
        m.app.commands().dispatch(QStringLiteral("toggleLineComment:"));
    if (m.editor->selections().size() != std::size_t(kCarets))
        state.SkipWithError("the carets did not survive the command");
}

BENCHMARK(LineCommentAtTenThousandCarets)->Unit(benchmark::kMillisecond);

// Duplicating 10,000 lines at their carets (the text grows every time).
void DuplicateAtTenThousandCarets(benchmark::State &state)
{
    ManyCarets m;
    for (auto _ : state) {
        m.app.commands().dispatch(QStringLiteral("duplicateLine:"));
        state.PauseTiming();
        m.app.commands().dispatch(QStringLiteral("undo:"));
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

BENCHMARK(DuplicateAtTenThousandCarets)->Unit(benchmark::kMillisecond);

} // namespace
