// Opening a 100 MB UTF-8 log: reading and decoding it, the whole open through a main window up to
// the first painted screen, and keystrokes at the start, middle and end of the loaded text. Peak
// memory is a process-wide high-water mark: run one case per process to read it for that case,
//   mirtex-bench --benchmark_filter=OpenToFirstPaint
// Keystroke times grow with the caret's offset: QScintilla's accessibility notice of every edit
// (and of every caret move, once an accessible interface exists) counts the characters before it.
// GLIBC_TUNABLES=glibc.malloc.hugetlb=1 shows how much of the open is page faults.
#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "ui/app/AppAssembly.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <memory>
#include <sys/resource.h>
#include <vector>

namespace {

using namespace mirtex;
using Sci = QsciScintillaBase;

constexpr qint64 kLogBytes = 100'000'000;

// A server log with Italian messages: accented letters on most lines, an emoji on some.
QByteArray logLine(quint32 &seed, qint64 lineNumber)
{
    static const char *const kLevels[] = {"INFO ", "DEBUG", "WARN ", "ERROR"};
    static const char *const kMessages[] = {
        "Richiesta completata: caffè servito in città",
        "Connessione rifiutata dal nodo più vicino, nuovo tentativo",
        "Utente «José Müller» ha caricato “relazione_perché.pdf” 🚀",
        "Elaborazione lotto terminata senza errori ✅",
        "Cache svuotata: 1024 voci rimosse, età media 3,5 s",
        "Avviso: quota disco quasi esaurita (93%) ⚠️ naïve retry",
        "GET /api/v2/ordini?stato=spedito 200 OK",
        "Lettura configurazione da /etc/mirtex/servizio.conf",
    };
    seed = seed * 1664525u + 1013904223u;
    const quint32 r = seed >> 8;
    const qint64 seconds = lineNumber / 40;
    QByteArray line;
    line.reserve(160);
    line += "2026-11-";
    line += QByteArray::number(10 + (seconds / 86400) % 18);
    line += ' ';
    line += QByteArray::number(10 + (seconds / 3600) % 14);
    line += ':';
    line += QByteArray::number(10 + (seconds / 60) % 50);
    line += ':';
    line += QByteArray::number(10 + seconds % 50);
    line += '.';
    line += QByteArray::number(100 + r % 900);
    line += ' ';
    line += kLevels[r % 4];
    line += " [worker-";
    line += QByteArray::number(r % 16);
    line += "] ";
    line += kMessages[(r >> 4) % std::size(kMessages)];
    line += " id=";
    line += QByteArray::number(quint64(r) * 2654435761u % 1000000007u, 16);
    line += '\n';
    return line;
}

// The log is written once per process, in chunks, so that generating it does not raise the
// memory high-water mark above what the measured cases use.
const QString &logPath()
{
    static QTemporaryDir folder;
    static const QString path = [] {
        const QString file = folder.filePath(QStringLiteral("server-100mb.log"));
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly))
            qFatal("cannot write the benchmark log");
        quint32 seed = 7;
        qint64 written = 0;
        qint64 lineNumber = 0;
        QByteArray chunk;
        while (written < kLogBytes) {
            chunk.clear();
            while (chunk.size() < (1 << 20))
                chunk += logLine(seed, lineNumber++);
            const qint64 take = std::min<qint64>(chunk.size(), kLogBytes - written);
            // Cut at a line end so the file stays valid UTF-8.
            const qint64 cut = take == chunk.size() ? take : chunk.lastIndexOf('\n', take - 1) + 1;
            out.write(chunk.constData(), cut);
            written += cut;
            if (cut < chunk.size())
                break;
        }
        return file;
    }();
    return path;
}

double megabytes(qint64 bytes)
{
    return double(bytes) / 1e6;
}

void reportMemory(benchmark::State &state, qint64 fileBytes)
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const qint64 peak = qint64(usage.ru_maxrss) * 1024; // kilobytes on Linux
    state.counters["peakRSS_MB"] = megabytes(peak);
    state.counters["peakRSS_xFile"] = double(peak) / double(fileBytes);
}

// The application over a throw-away settings file, its window shown offscreen.
struct Window
{
    Window()
        : prefs(folder.filePath(QStringLiteral("Mirtex++.conf")))
        , app(prefs, questions)
        , window(app.window())
    {
        window.show();
        QCoreApplication::processEvents();
    }

    DocumentTab *open(const QString &path)
    {
        QElapsedTimer clock;
        clock.start();
        DocumentTab *tab = app.flows().openPath(path);
        if (!tab)
            qFatal("the benchmark log did not open");
        openedMs += clock.restart();
        QCoreApplication::processEvents();
        tab->editor()->primaryPane()->repaint();
        paintedMs += clock.elapsed();
        return tab;
    }

    void close(DocumentTab *tab)
    {
        window.discardDocument(tab);
        QCoreApplication::processEvents();
    }

    QTemporaryDir folder;
    Preferences prefs;
    ScriptedQuestions questions;
    AppAssembly app;
    MainWindow &window;
    qint64 openedMs = 0;  // in openPath: reading, decoding, the editor taking the text
    qint64 paintedMs = 0; // laying out the new tab and painting its first screen
};

void DocumentRead(benchmark::State &state)
{
    const QString &path = logPath();
    for (auto _ : state) {
        auto loaded = Document::read(path, std::nullopt, LineEnding::lf);
        if (!loaded) {
            state.SkipWithError("read failed");
            break;
        }
        benchmark::DoNotOptimize(loaded->utf8.constData());
    }
    const qint64 size = QFileInfo(path).size();
    state.SetBytesProcessed(state.iterations() * size);
    reportMemory(state, size);
}

BENCHMARK(DocumentRead)->Unit(benchmark::kMillisecond)->Iterations(3);

// From the open command to the first screen of text painted.
void OpenToFirstPaint(benchmark::State &state)
{
    const QString &path = logPath();
    Window window;
    for (auto _ : state) {
        DocumentTab *tab = window.open(path);
        state.PauseTiming();
        window.close(tab);
        state.ResumeTiming();
    }
    state.counters["openPath_ms"] = double(window.openedMs) / double(state.iterations());
    state.counters["firstPaint_ms"] = double(window.paintedMs) / double(state.iterations());
    reportMemory(state, QFileInfo(path).size());
}

BENCHMARK(OpenToFirstPaint)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

// The log opened in a window, for the keystroke cases (opened before their timed loops).
struct LoadedLog
{
    LoadedLog() { tab = window.open(logPath()); }

    EditorPane *pane() const { return tab->editor()->primaryPane(); }

    // Moves the caret a little further on each call, around `percent` of the text, and keeps it
    // at a character boundary.
    void moveCaret(int step, int percent = 50)
    {
        const long length = pane()->SendScintilla(Sci::SCI_GETLENGTH);
        const long wanted = long(qint64(length) * percent / 100) + (step % 64) * 997;
        const long at = pane()->SendScintilla(Sci::SCI_POSITIONBEFORE, wanted + 1);
        pane()->SendScintilla(Sci::SCI_GOTOPOS, at);
    }

    Window window;
    DocumentTab *tab = nullptr;
};

// Typing one character at `percent` of the text (first argument): Scintilla's insertion, the
// edit signal in UTF-16 terms, the document's dirty check (lengths differ) and the tab and status
// refresh. With the second argument 1 the pane is repainted too, as the next frame would be.
void Keystroke(benchmark::State &state)
{
    LoadedLog log;
    const int percent = int(state.range(0));
    const bool paint = state.range(1) != 0;
    int step = 0;
    for (auto _ : state) {
        state.PauseTiming();
        log.moveCaret(step++, percent);
        if (paint)
            log.pane()->repaint();
        state.ResumeTiming();
        log.pane()->SendScintilla(Sci::SCI_REPLACESEL, "x");
        log.tab->editor()->flushPendingEdit(); // as at the end of the key event
        if (paint)
            log.pane()->repaint();
    }
    if (!log.tab->document().isDirty())
        state.SkipWithError("typing did not make the document dirty");
    reportMemory(state, QFileInfo(logPath()).size());
}

BENCHMARK(Keystroke)
    ->ArgsProduct({{0, 50, 100}, {0, 1}})
    ->ArgNames({"atPercent", "paint"})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(30);

// A key typed as the user types it: the key event through the pane's own key handling (auto-close,
// where typing's undo steps end, Scintilla's key map), then the same upkeep as above. The caret
// stays put between keys, so the steps are those of a word being typed.
void KeystrokeKeyEvent(benchmark::State &state)
{
    LoadedLog log;
    log.moveCaret(0, int(state.range(0)));
    int step = 0;
    for (auto _ : state) {
        const char letter = step++ % 6 == 5 ? ' ' : 'x';
        QKeyEvent press(QEvent::KeyPress,
                        letter == ' ' ? Qt::Key_Space : Qt::Key_X,
                        Qt::NoModifier,
                        QString(QLatin1Char(letter)));
        QCoreApplication::sendEvent(log.pane(), &press);
    }
    if (!log.tab->document().isDirty())
        state.SkipWithError("typing did not make the document dirty");
}

BENCHMARK(KeystrokeKeyEvent)
    ->Arg(50)
    ->ArgName("atPercent")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200);

// Deleting a character just typed: the length equals the saved one again, so the dirty check
// compares the text with the saved one (only the edited middle since the last save).
void KeystrokeBackToSavedLength(benchmark::State &state)
{
    LoadedLog log;
    int step = 0;
    for (auto _ : state) {
        state.PauseTiming();
        log.moveCaret(step++);
        log.pane()->SendScintilla(Sci::SCI_REPLACESEL, "é");
        log.tab->editor()->flushPendingEdit();
        state.ResumeTiming();
        log.pane()->SendScintilla(Sci::SCI_DELETEBACK);
        log.tab->editor()->flushPendingEdit(); // as at the end of the key event
    }
    if (log.tab->document().isDirty())
        state.SkipWithError("the document stayed dirty after type and delete");
    reportMemory(state, QFileInfo(logPath()).size());
}

BENCHMARK(KeystrokeBackToSavedLength)->Unit(benchmark::kMillisecond)->Iterations(30);

// The dirty check alone when the text has the saved length, after an edit near the middle.
void DirtyCheckSameLength(benchmark::State &state)
{
    LoadedLog log;
    log.moveCaret(0);
    log.pane()->SendScintilla(Sci::SCI_REPLACESEL, "y"); // the gap sits in the middle
    log.pane()->SendScintilla(Sci::SCI_DELETEBACK);
    log.tab->editor()->flushPendingEdit();
    for (auto _ : state)
        log.tab->document().updateDirty();
    if (log.tab->document().isDirty())
        state.SkipWithError("the text should equal the saved text");
}

BENCHMARK(DirtyCheckSameLength)->Unit(benchmark::kMillisecond)->Iterations(30);

// Keys typed one by one at the end of the loaded log as the user types them (the key event
// through the pane, then the repaint of the next frame): the spread of key-to-screen times, since
// a rare long stall matters more than the mean.
void KeyToScreen(benchmark::State &state)
{
    LoadedLog log;
    log.pane()->SendScintilla(Sci::SCI_DOCUMENTEND);
    log.pane()->repaint();
    std::vector<double> millis;
    int step = 0;
    for (auto _ : state) {
        const char letter = step++ % 6 == 5 ? ' ' : 'x';
        QElapsedTimer clock;
        clock.start();
        QKeyEvent press(QEvent::KeyPress,
                        letter == ' ' ? Qt::Key_Space : Qt::Key_X,
                        Qt::NoModifier,
                        QString(QLatin1Char(letter)));
        QCoreApplication::sendEvent(log.pane(), &press);
        QCoreApplication::processEvents();
        log.pane()->repaint();
        const double elapsed = double(clock.nsecsElapsed()) / 1e6;
        state.SetIterationTime(elapsed / 1e3);
        millis.push_back(elapsed);
    }
    std::sort(millis.begin(), millis.end());
    const auto percentile = [&](double p) {
        return millis.empty() ? 0.0 : millis[std::size_t(p * double(millis.size() - 1))];
    };
    state.counters["p50_ms"] = percentile(0.50);
    state.counters["p99_ms"] = percentile(0.99);
    state.counters["max_ms"] = millis.empty() ? 0.0 : millis.back();
    if (!log.tab->document().isDirty())
        state.SkipWithError("typing did not make the document dirty");
    reportMemory(state, QFileInfo(logPath()).size());
}

BENCHMARK(KeyToScreen)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(250);

// 50 MB of prose in Windows-1252 with CR LF breaks (accented letters, the euro sign, curly quotes
// and dashes from the 0x80-0x9F row), written once per process like the log.
const QString &windows1252Path()
{
    static QTemporaryDir folder;
    static const QString path = [] {
        static const char *const kWords[] = {"perch\xE9",
                                             "citt\xE0",
                                             "caff\xE8",
                                             "\x93"
                                             "cos\xEC\x94",
                                             "\x80",
                                             "fa\xE7"
                                             "ade",
                                             "\x96",
                                             "Stra\xDF"
                                             "e",
                                             "la",
                                             "casa",
                                             "del",
                                             "quaderno",
                                             "scrive",
                                             "molto",
                                             "bene",
                                             "oggi\x85"};
        const QString file = folder.filePath(QStringLiteral("prosa-1252.txt"));
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly))
            qFatal("cannot write the benchmark text");
        quint32 seed = 11;
        QByteArray chunk;
        for (qint64 written = 0; written < 50'000'000; written += chunk.size()) {
            chunk.clear();
            while (chunk.size() < (1 << 20)) {
                seed = seed * 1664525u + 1013904223u;
                const int words = 6 + int(seed >> 28);
                for (int i = 0; i < words; ++i) {
                    seed = seed * 1664525u + 1013904223u;
                    chunk += kWords[(seed >> 20) % std::size(kWords)];
                    chunk += i + 1 < words ? ' ' : '.';
                }
                chunk += "\r\n";
            }
            out.write(chunk);
        }
        return file;
    }();
    return path;
}

// Opening the Windows-1252 text up to its first painted screen: decoding straight to the editor's
// UTF-8 with the CR LF breaks turned into LF in the same pass.
void OpenWindows1252ToFirstPaint(benchmark::State &state)
{
    const QString &path = windows1252Path();
    Window window;
    for (auto _ : state) {
        DocumentTab *tab = window.open(path);
        state.PauseTiming();
        if (tab->document().encoding() != TextEncoding::windows1252())
            state.SkipWithError("not opened as Windows-1252");
        window.close(tab);
        state.ResumeTiming();
    }
    state.counters["openPath_ms"] = double(window.openedMs) / double(state.iterations());
    state.counters["firstPaint_ms"] = double(window.paintedMs) / double(state.iterations());
    reportMemory(state, QFileInfo(path).size());
}

BENCHMARK(OpenWindows1252ToFirstPaint)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

} // namespace
