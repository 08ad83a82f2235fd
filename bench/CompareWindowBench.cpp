// Opening the compare window on two large texts until both panes are filled, coloured on screen
// and scrollable. MIRTEX_BENCH_DIFF_PAIR=OLD,NEW compares those files instead of generated ones.
#include "core/app/Preferences.h"
#include "ui/compare/CompareWindow.h"
#include "ui/dialogs/ScriptedQuestions.h"
#include "ui/editor/EditorColors.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace mirtex;

namespace {

QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::pair<QString, QString> pair200k()
{
    const QStringList paths = qEnvironmentVariable("MIRTEX_BENCH_DIFF_PAIR").split(u',');
    if (paths.size() == 2)
        return {readText(paths[0]), readText(paths[1])};
    QString left;
    for (int i = 0; i < 200000; ++i)
        left += QStringLiteral("    value_%1 = compute(%2, node->next); /* step */\n")
                    .arg(i)
                    .arg(i % 97);
    QStringList lines = left.split(u'\n');
    for (int i = 50; i + 4 < lines.size(); i += 250) {
        for (int k = 0; k < 4; ++k)
            lines[i + k] += QStringLiteral(" // changed");
    }
    return {left, lines.join(u'\n')};
}

void BM_CompareWindowOpen200k(benchmark::State &state)
{
    const auto [left, right] = pair200k();
    QTemporaryDir dir;
    Preferences prefs(dir.filePath(QStringLiteral("p.conf")));
    ScriptedQuestions questions;
    const LanguagePtr c = Language::byId(u"c");
    for (auto _ : state) {
        CompareWindow window(prefs,
                             questions,
                             {QStringLiteral("a"), QStringLiteral("a"), {}, left, c},
                             {QStringLiteral("b"), QStringLiteral("b"), {}, right, c},
                             EditorColors{});
        window.resize(1200, 800);
        window.show();
        while (!window.isUpToDate())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        window.goToNext();
        QApplication::processEvents();
        benchmark::DoNotOptimize(window.diff().hunks.size());
    }
}

} // namespace

BENCHMARK(BM_CompareWindowOpen200k)->Unit(benchmark::kMillisecond)->Iterations(3);
