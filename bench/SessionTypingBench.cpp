// Typing at the end of a dirty 100 MB log in the program as assembled at launch: the real session
// (WindowSession, its 8 s tick writing the backup), the window shown. Keys come at a steady pace,
// as a typist's would, and each key's time runs from when it was due to when its frame has been
// painted, so a key that arrives while the main thread is busy with a session tick counts the
// wait. Run one case per process for its memory figure; under Xvfb with QT_QPA_PLATFORM=xcb for
// a real window:
//   mirtex-bench --benchmark_filter=KeyToScreenSessionOn
#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/WindowSession.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <vector>

namespace {

using namespace mirtex;
using Sci = QsciScintillaBase;

constexpr qint64 kTypedLogBytes = 100'000'000;

// A 100 MB UTF-8 log (accented letters on every line), written in chunks.
QString writeLog(const QString &folder)
{
    const QString path = folder + QStringLiteral("/servizio-100mb.log");
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly))
        qFatal("cannot write the benchmark log");
    quint32 seed = 5;
    QByteArray chunk;
    qint64 written = 0;
    for (qint64 line = 0; written < kTypedLogBytes;) {
        chunk.clear();
        while (chunk.size() < (1 << 20)) {
            seed = seed * 1664525u + 1013904223u;
            chunk += "2026-11-22 14:";
            chunk += QByteArray::number(10 + (line / 60) % 50) + ':'
                     + QByteArray::number(10 + line % 50);
            chunk += " [worker-" + QByteArray::number(seed >> 28) + "] ";
            chunk += (seed >> 8) % 3 == 0 ? "richiesta completata: caffè servito in città"
                                          : "connessione rifiutata dal nodo più vicino";
            chunk += " id=" + QByteArray::number(seed, 16) + '\n';
            ++line;
        }
        out.write(chunk);
        written += chunk.size();
    }
    return path;
}

void KeyToScreenSessionOn(benchmark::State &state)
{
    const int intervalMs = int(state.range(0));
    QTemporaryDir home;
    const QByteArray previousState = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", home.filePath(QStringLiteral("state")).toUtf8());
    const QString log = writeLog(home.path());
    const qint64 fileBytes = QFileInfo(log).size();
    {
        Preferences prefs(home.filePath(QStringLiteral("Mirtex++.conf")));
        prefs.setRememberSession(true);
        ScriptedQuestions questions;
        auto ownedSession = std::make_unique<WindowSession>(prefs);
        WindowSession *session = ownedSession.get();
        AppAssembly app(prefs, questions, std::move(ownedSession));
        app.delegate().openPaths({log});
        app.delegate().launch(); // the session timer starts here, as in the program
        QCoreApplication::processEvents();
        DocumentTab *tab = app.window().documents().value(0);
        for (DocumentTab *candidate : app.window().documents())
            if (candidate->document().path() == log)
                tab = candidate;
        EditorPane *pane = tab->editor()->primaryPane();
        pane->SendScintilla(Sci::SCI_DOCUMENTEND);
        pane->setFocus();
        pane->repaint();

        std::vector<double> millis;
        QElapsedTimer typing;
        typing.start();
        int step = 0;
        for (auto _ : state) {
            const qint64 due = qint64(step) * intervalMs * 1'000'000;
            // Between keys the event loop waits for events as the program's does, session ticks
            // included (a busy wait would take a core from the background writer).
            if (const qint64 wait = due - typing.nsecsElapsed(); wait > 0) {
                QEventLoop idle;
                QTimer::singleShot(
                    int((wait + 999'999) / 1'000'000), Qt::PreciseTimer, &idle, &QEventLoop::quit);
                idle.exec();
            }
            const char letter = step++ % 6 == 5 ? ' ' : 'x';
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
        }
        session->finishWriting();
        std::sort(millis.begin(), millis.end());
        const auto percentile = [&](double p) {
            return millis.empty() ? 0.0 : millis[std::size_t(p * double(millis.size() - 1))];
        };
        state.counters["p50_ms"] = percentile(0.50);
        state.counters["p99_ms"] = percentile(0.99);
        state.counters["max_ms"] = millis.empty() ? 0.0 : millis.back();
        state.counters["typing_s"] = double(typing.elapsed()) / 1e3;
        // The ticks did write the large backup.
        qint64 largestBackup = 0;
        QDirIterator files(session->folderPath(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            largestBackup = std::max(largestBackup, QFileInfo(files.next()).size());
        state.counters["backup_MB"] = double(largestBackup) / 1e6;
        if (!tab->document().isDirty())
            state.SkipWithError("typing did not make the document dirty");
        else if (largestBackup < fileBytes)
            state.SkipWithError("no session tick wrote the backup while typing");
        app.delegate().willTerminate();
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const qint64 peak = qint64(usage.ru_maxrss) * 1024;
    state.counters["peakRSS_MB"] = double(peak) / 1e6;
    state.counters["peakRSS_xFile"] = double(peak) / double(fileBytes);
    qputenv("XDG_STATE_HOME", previousState);
}

// 250 keys, one every 80 ms: 20 s of typing, so at least two session ticks fall inside.
BENCHMARK(KeyToScreenSessionOn)
    ->Arg(80)
    ->ArgName("keyEveryMs")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(250);

} // namespace
