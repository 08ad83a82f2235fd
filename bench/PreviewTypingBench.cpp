// Typing into a Markdown document with its live preview open (the real Chromium engine), in the
// program as assembled at launch. Keys come at a steady pace; each key's time runs from when it
// was due to when its frame has been painted, so a render or a page update that holds the main
// thread shows. After the typing, the time from the last key until the page shows the new text
// (the render 0.15 s later, on the pool, and the in-place update in Chromium). The document is the
// first `size` bytes of $MIRTEX_BENCH_MARKDOWN (default /tmp/mirtex-bench-data/md-10mb.md,
// written by ../shared/bench/gen/all.py md):
//   mirtex-bench --benchmark_filter=PreviewKeyToScreen
#include "core/app/Preferences.h"
#include "core/markdown/PreviewScripts.h"
#include "ui/app/AppAssembly.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/MarkdownPreviewController.h"
#include "ui/document/MarkdownPreviewPane.h"
#include "ui/document/PreviewCommands.h"
#include "ui/document/PreviewEngine.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <optional>
#include <vector>

namespace {

using namespace mirtex;
using Sci = QsciScintillaBase;

QString sourcePath()
{
    const QString given = qEnvironmentVariable("MIRTEX_BENCH_MARKDOWN");
    return given.isEmpty() ? QStringLiteral("/tmp/mirtex-bench-data/md-10mb.md") : given;
}

// The first `bytes` of the source, cut after a line break.
QString writeSlice(const QString &folder, qint64 bytes)
{
    QFile in(sourcePath());
    if (!in.open(QIODevice::ReadOnly))
        return {};
    QByteArray text = in.read(bytes);
    if (const qsizetype end = text.lastIndexOf('\n'); end > 0 && text.size() == bytes)
        text.truncate(end + 1);
    const QString path = folder + QStringLiteral("/documento.md");
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(text) != text.size())
        return {};
    return path;
}

bool waitFor(const std::function<bool()> &done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

void PreviewKeyToScreen(benchmark::State &state)
{
    if (!PreviewEngine::installed()) {
        state.SkipWithError("no web engine");
        return;
    }
    const qint64 bytes = state.range(0);
    const bool withPreview = state.range(1) != 0;
    const int intervalMs = 80;
    QTemporaryDir home;
    const QString path = writeSlice(home.path(), bytes);
    if (path.isEmpty()) {
        state.SkipWithError("no Markdown source (python3 ../shared/bench/gen/all.py md)");
        return;
    }
    Preferences prefs(home.filePath(QStringLiteral("Mirtex++.conf")));
    prefs.setRememberSession(false);
    prefs.setMarkdownPreviewOnOpen(withPreview);
    ScriptedQuestions questions;
    AppAssembly app(prefs, questions);
    app.window().resize(1400, 900);
    app.window().show();
    DocumentTab *tab = app.flows().openPath(path);
    MarkdownPreviewPane *preview = PreviewCommands::previewOf(tab);
    if (!withPreview) {
        // The same typing without the preview, for comparison.
        preview = nullptr;
    } else if (!preview) {
        state.SkipWithError("the preview did not open");
        return;
    }
    MarkdownPreviewController *controller = preview ? &preview->controller() : nullptr;
    if (controller && !waitFor([&]() { return controller->isPageLoaded(); }, 120'000)) {
        state.SkipWithError("the page did not load");
        return;
    }
    EditorPane *pane = tab->editor()->primaryPane();
    // In the middle of the document, where a change moves everything after it.
    pane->SendScintilla(Sci::SCI_GOTOLINE, pane->SendScintilla(Sci::SCI_GETLINECOUNT) / 2);
    pane->setFocus();
    pane->repaint();

    std::vector<double> millis;
    QElapsedTimer typing;
    typing.start();
    int step = 0;
    int renders = 0;
    if (controller)
        QObject::connect(
            controller, &MarkdownPreviewController::rendered, [&renders]() { ++renders; });
    for (auto _ : state) {
        const qint64 due = qint64(step) * intervalMs * 1'000'000;
        if (const qint64 wait = due - typing.nsecsElapsed(); wait > 0) {
            QEventLoop idle;
            QTimer::singleShot(
                int((wait + 999'999) / 1'000'000), Qt::PreciseTimer, &idle, &QEventLoop::quit);
            idle.exec();
        }
        // Bursts of five letters, then a pause long enough for a render.
        const bool pause = step % 6 == 5;
        const char letter = step++ % 6 == 4 ? ' ' : 'x';
        QKeyEvent press(QEvent::KeyPress,
                        letter == ' ' ? Qt::Key_Space : Qt::Key_X,
                        Qt::NoModifier,
                        QString(QLatin1Char(letter)));
        QCoreApplication::sendEvent(pane, &press);
        QCoreApplication::processEvents();
        pane->repaint();
        const double elapsed = double(typing.nsecsElapsed() - due) / 1e6;
        state.SetIterationTime(elapsed / 1e3);
        millis.push_back(elapsed);
        if (pause)
            step += 3; // a longer gap: ~320 ms without keys
    }

    // The last change to the page: from the last key to the page holding it.
    QElapsedTimer update;
    update.start();
    const QString marker = QStringLiteral("ultimaparola");
    pane->SendScintilla(Sci::SCI_INSERTTEXT, -1, "ultimaparola ");
    std::optional<bool> shown;
    const bool updated = controller
                         && waitFor(
                             [&]() {
                                 if (shown.value_or(false))
                                     return true;
                                 if (controller->isRendering() || controller->isRenderScheduled()
                                     || !controller->isPageLoaded())
                                     return false;
                                 if (!shown.has_value()) {
                                     shown = false;
                                     preview->view().evaluate(
                                         QStringLiteral("document.getElementById('page')."
                                                        "textContent.indexOf('ultimaparola') >= 0"),
                                         [&shown](const QVariant &value) {
                                             if (value.toBool())
                                                 shown = true;
                                             else
                                                 shown.reset();
                                         });
                                 }
                                 return false;
                             },
                             120'000);
    state.counters["update_ms"] = updated ? double(update.elapsed()) : -1;

    std::sort(millis.begin(), millis.end());
    const auto percentile = [&](double p) {
        return millis.empty() ? 0.0 : millis[std::size_t(p * double(millis.size() - 1))];
    };
    state.counters["p50_ms"] = percentile(0.50);
    state.counters["p99_ms"] = percentile(0.99);
    state.counters["max_ms"] = millis.empty() ? 0.0 : millis.back();
    state.counters["renders"] = renders;
    state.counters["MB"] = double(bytes) / 1e6;
}

BENCHMARK(PreviewKeyToScreen)
    ->Args({200'000, 1})
    ->Args({200'000, 0})
    ->Args({10'000'000, 1})
    ->Args({10'000'000, 0})
    ->ArgNames({"bytes", "preview"})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(120);

} // namespace
