// Process entry: the self-test, a snapshot mode, or the application (handing its files to an
// instance that is already running, unless --new-instance).
#include "core/app/CommandLine.h"
#include "core/app/Preferences.h"
#include "core/app/TerminationSignals.h"
#include "core/markdown/MarkdownExport.h"
#include "preview/WebEnginePreview.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/ApplicationIdentity.h"
#include "ui/app/CompareSnapshot.h"
#include "ui/app/FirstPaintProbe.h"
#include "ui/app/SelfTest.h"
#include "ui/app/SessionStress.h"
#include "ui/app/SingleInstance.h"
#include "ui/app/Snapshot.h"
#include "ui/app/WindowSession.h"
#include "ui/dialogs/DialogQuestions.h"

#include <QApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>

using namespace mirtex;

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    const CommandLine command = CommandLine::parse(arguments, QDir::currentPath());
    // Answered before any window system is needed.
    if (command.mode == CommandLine::Mode::help || command.mode == CommandLine::Mode::version) {
        const QString text = command.mode == CommandLine::Mode::help ? CommandLine::helpText()
                                                                     : CommandLine::versionText();
        std::fputs(text.toUtf8().constData(), stdout);
        return 0;
    }

    // The web engine's process settings come before the application object.
    WebEnginePreview::prepareProcess();

    // A PDF export prints through the web engine, off screen.
    if (command.mode == CommandLine::Mode::exportDocument
        && command.exportOutput.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        QApplication app(argc, argv);
        QString error;
        if (WebEnginePreview::exportPdf(command.exportSource, command.exportOutput, error))
            return 0;
        std::fprintf(stderr, "mirtex: %s\n", qPrintable(error));
        return 1;
    }

    // A Markdown export to HTML needs no window system.
    if (command.mode == CommandLine::Mode::exportDocument) {
        QCoreApplication core(argc, argv);
        QString error;
        if (MarkdownExport::exportFile(command.exportSource, command.exportOutput, error))
            return 0;
        std::fprintf(stderr, "mirtex: %s\n", qPrintable(error));
        return 1;
    }

    QApplication app(argc, argv);
    ApplicationIdentity::apply();

    // The compare window's picture: its own switches, read by its own parser.
    if (arguments.contains(QLatin1String("--compare-snapshot")))
        return CompareSnapshot::run(arguments, QDir::currentPath());
    // The Markdown preview: installed for the window, its picture on its own switches.
    WebEnginePreview::install();
    if (arguments.contains(QLatin1String("--markdown-snapshot")))
        return WebEnginePreview::runSnapshot(arguments, QDir::currentPath());

    switch (command.mode) {
    case CommandLine::Mode::selfTest:
        return SelfTest::run();
    case CommandLine::Mode::snapshot:
        return Snapshot::run(command.snapshot);
    case CommandLine::Mode::help:
    case CommandLine::Mode::version:
    case CommandLine::Mode::exportDocument:
    case CommandLine::Mode::invalid:
        std::fprintf(stderr, "mirtex: %s\n", qPrintable(command.error));
        return 2;
    case CommandLine::Mode::run:
        break;
    }

    if (!command.newInstance && SingleInstance::handOver(command.files, command.urls))
        return 0;

    // Launch timing for bench/outside (off unless MIRTEX_FIRST_PAINT_PROBE is set).
    FirstPaintProbe::installFromEnvironment();

    Preferences prefs;
    DialogQuestions questions;
    AppAssembly assembly(prefs, questions, std::make_unique<WindowSession>(prefs));
    AppDelegate &delegate = assembly.delegate();

    // Logout, shutdown, kill, Ctrl+C: keep every tab as a quit with the session on would.
    TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::received, &delegate, [&delegate]() {
        delegate.writeSessionIfRemembered();
        delegate.willTerminate();
        QCoreApplication::quit();
    });
    SingleInstance instance;
    if (!command.newInstance)
        instance.listen();
    QObject::connect(&instance,
                     &SingleInstance::received,
                     &delegate,
                     [&delegate](const QStringList &files, const QStringList &urls) {
                         if (files.isEmpty() && urls.isEmpty())
                             delegate.reopen();
                         delegate.openPaths(files);
                         for (const QString &url : urls)
                             delegate.handleUrlEvent(url);
                     });

    // Handed over before launch: queued, opened after the session is restored.
    delegate.openPaths(command.files);
    for (const QString &url : command.urls)
        delegate.handleUrlEvent(url);

    QTimer::singleShot(0, &delegate, [&delegate, &assembly]() {
        delegate.launch();
        // The kill -9 test's workload (never set in a normal run).
        if (const QString file = SessionStress::fileFromEnvironment(); !file.isEmpty())
            SessionStress::start(delegate, assembly.flows(), file);
    });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, [&delegate]() {
        delegate.willTerminate();
    });
    QApplication::setQuitOnLastWindowClosed(false); // the quit sequence decides
    return app.exec();
}
