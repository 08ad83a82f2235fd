// Painting one screen of colours into a real pane: it must not grow with the size of the file.
#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "core/languages/SyntaxHighlighter.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

void BM_PaintOneScreen(benchmark::State &state)
{
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));
    EditorView view(prefs);
    view.resize(1000, 800);
    view.show();
    const QByteArray line
        = "static int value_%d = compute(\"text\", 0x1F, 3.5e-2); /* note */ // end\n";
    QByteArray text;
    text.reserve(state.range(0) + line.size());
    while (text.size() < state.range(0))
        text += line;
    view.loadText(text);
    view.setLanguage(Language::byId(u"c"));
    QElapsedTimer waited;
    waited.start();
    while (view.highlighter().isPassPending() && waited.elapsed() < 60000)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    view.setFirstVisibleLine(int(text.count('\n') / 2));
    QApplication::processEvents();
    for (auto _ : state)
        view.highlighter().repaint();
    state.counters["tokens"] = double(view.highlighter().tokens().size());
}

BENCHMARK(BM_PaintOneScreen)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Arg(7'900'000)
    ->Unit(benchmark::kMicrosecond);

} // namespace
