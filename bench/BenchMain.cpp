// Benchmark entry: a GUI application object exists so that editor benchmarks can build panes;
// a first argument naming a command runs that command instead (see BenchCommands.h).
#include "BenchCommands.h"
#include "preview/WebEnginePreview.h"
#include "ui/document/PreviewEngine.h"

#include <QApplication>
#include <QCoreApplication>

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    // Commands need no display: a plain core application starts in a fraction of the time, which
    // matters when they are timed against command-line tools.
    if (argc > 1 && argv[1][0] != '-') {
        QCoreApplication app(argc, argv);
        if (const auto status = mirtex::runBenchCommand(QCoreApplication::arguments().mid(1)))
            return *status;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The Markdown preview's benchmarks use the real web engine.
    mirtex::WebEnginePreview::prepareProcess();
    QApplication app(argc, argv);
    mirtex::WebEnginePreview::install();
    ::benchmark::Initialize(&argc, argv);
    if (::benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    mirtex::PreviewEngine::install(nullptr);
    return 0;
}
