#include "ui/app/CompareSnapshot.h"

#include "core/app/Preferences.h"
#include "ui/app/AppAssembly.h"
#include "ui/compare/CompareCommands.h"
#include "ui/compare/CompareWindow.h"
#include "ui/dialogs/DialogQuestions.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPixmap>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>

namespace mirtex {

int CompareSnapshot::run(const QStringList &arguments, const QString &workingDir)
{
    QStringList files;
    QString out;
    int hunk = 0;
    QSize size(1200, 760);
    bool dark = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &arg = arguments[i];
        const QString value = i + 1 < arguments.size() ? arguments[i + 1] : QString();
        if (arg == QLatin1String("--compare-snapshot")) {
            continue;
        } else if (arg == QLatin1String("--dark")) {
            dark = true;
        } else if (arg == QLatin1String("--out")) {
            out = QDir(workingDir).absoluteFilePath(value);
            ++i;
        } else if (arg == QLatin1String("--hunk")) {
            hunk = value.toInt();
            ++i;
        } else if (arg == QLatin1String("--size")) {
            const QStringList parts = value.toLower().split(u'x');
            if (parts.size() == 2 && parts[0].toInt() >= 100 && parts[1].toInt() >= 100)
                size = QSize(parts[0].toInt(), parts[1].toInt());
            ++i;
        } else if (arg.startsWith(QLatin1String("--"))) {
            std::fprintf(stderr, "mirtex: unknown option %s\n", qPrintable(arg));
            return 2;
        } else {
            files.append(QDir(workingDir).absoluteFilePath(arg));
        }
    }
    if (files.size() != 2 || out.isEmpty()) {
        std::fprintf(stderr, "mirtex: --compare-snapshot LEFT RIGHT --out FILE.png\n");
        return 2;
    }

    // Pictures show the defaults, never the user's own settings.
    QTemporaryDir settingsDir;
    Preferences prefs(settingsDir.filePath(QStringLiteral("Mirtex++.conf")));
    prefs.setRememberSession(false);
    if (dark)
        prefs.setThemeID(QStringLiteral("dark"));
    DialogQuestions questions;
    AppAssembly assembly(prefs, questions);
    MainWindow &window = assembly.window();
    for (const QString &file : files) {
        if (!assembly.flows().openPath(file)) {
            std::fprintf(stderr, "files not opened\n");
            return 1;
        }
    }
    const QList<DocumentTab *> tabs = window.documents();
    if (tabs.size() != 2) {
        std::fprintf(stderr, "files not opened\n");
        return 1;
    }
    CompareWindow *compare = CompareCommands::open(
        assembly.context(), CompareCommands::sideOf(*tabs[0]), CompareCommands::sideOf(*tabs[1]));
    compare->resize(size);
    QElapsedTimer waited;
    waited.start();
    while (!compare->isUpToDate() && waited.elapsed() < 60000)
        QApplication::processEvents(QEventLoop::AllEvents, 25);
    if (hunk > 0)
        compare->goToHunk(hunk - 1);
    for (int i = 0; i < 30; ++i) {
        QApplication::processEvents(QEventLoop::AllEvents, 25);
        QThread::msleep(10);
    }
    const QPixmap picture = compare->grab();
    if (picture.isNull() || !picture.save(out)) {
        std::fprintf(stderr, "render failed\n");
        return 1;
    }
    std::printf("wrote %s\n", qPrintable(out));
    return 0;
}

} // namespace mirtex
