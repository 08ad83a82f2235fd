// Restoring a session of 50 tabs (10 of them with 1 MB of unsaved text) into a real main window,
// up to the first painted tab; and the timer's write of that window with nothing changed.
#include "core/app/Preferences.h"
#include "ui/app/AppAssembly.h"
#include "ui/app/WindowSession.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

struct SessionFixture
{
    QTemporaryDir dir;
    QString state = dir.filePath(QStringLiteral("state"));
    Preferences prefs{dir.filePath(QStringLiteral("prefs.conf"))};

    SessionFixture()
    {
        QByteArray line = "int valore = 42; // una riga di codice con qualche parola in più\n";
        QByteArray megabyte;
        while (megabyte.size() < 1'000'000)
            megabyte += line;
        ScriptedQuestions questions;
        AppAssembly app(prefs, questions);
        MainWindow &window = app.window();
        WindowSession session(prefs, state);
        for (int i = 0; i < 50; ++i) {
            const QString path = dir.filePath(QStringLiteral("file%1.c").arg(i));
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(i < 10 ? megabyte : line.repeated(200));
            file.close();
            DocumentTab *tab = app.flows().openPath(path);
            if (i < 10)
                tab->editor()->primaryPane()->SendScintilla(QsciScintillaBase::SCI_REPLACESEL, "x");
        }
        session.write(window);
    }
};

SessionFixture &fixture()
{
    static SessionFixture instance;
    return instance;
}

void BM_RestoreFiftyTabsToFirstPaint(benchmark::State &state)
{
    SessionFixture &f = fixture();
    for (auto _ : state) {
        ScriptedQuestions questions;
        AppAssembly app(f.prefs, questions);
        MainWindow &window = app.window();
        WindowSession session(f.prefs, f.state);
        session.restore(app.flows());
        window.show();
        QApplication::processEvents();
        benchmark::DoNotOptimize(window.currentDocument()->editor()->grab());
        state.PauseTiming();
        window.hide();
        state.ResumeTiming();
    }
}

BENCHMARK(BM_RestoreFiftyTabsToFirstPaint)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_IdleSessionTickOfFiftyTabs(benchmark::State &state)
{
    SessionFixture &f = fixture();
    ScriptedQuestions questions;
    AppAssembly app(f.prefs, questions);
    MainWindow &window = app.window();
    WindowSession session(f.prefs, f.state);
    session.restore(app.flows());
    session.write(window); // backups settle
    for (auto _ : state)
        session.write(window);
}

BENCHMARK(BM_IdleSessionTickOfFiftyTabs)->Unit(benchmark::kMillisecond);

} // namespace
