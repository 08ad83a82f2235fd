#include "ui/app/Snapshot.h"

#include "core/app/CommandLine.h"
#include "core/app/Preferences.h"
#include "ui/app/AppAssembly.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/DialogQuestions.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/MarkdownPreviewController.h"
#include "ui/document/MarkdownPreviewPane.h"
#include "ui/document/PreviewCommands.h"
#include "ui/editor/EditorFolding.h"
#include "ui/editor/EditorView.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>

namespace mirtex {

int Snapshot::run(const SnapshotRequest &request)
{
    // Pictures show the defaults, never the user's own settings.
    QTemporaryDir settingsDir;
    Preferences prefs(settingsDir.filePath(QStringLiteral("Mirtex++.conf")));
    prefs.setRememberSession(false);
    if (request.dark)
        prefs.setThemeID(QStringLiteral("dark"));

    DialogQuestions questions;
    AppAssembly assembly(prefs, questions);
    MainWindow &window = assembly.window();
    DocumentFlows &flows = assembly.flows();
    window.resize(request.size);

    bool allOpened = true;
    for (const QString &file : request.files) {
        if (QFileInfo(file).isDir())
            window.openWorkspace(file);
        else if (!flows.openPath(file))
            allOpened = false;
    }
    if (window.documents().isEmpty())
        window.newDocument();
    if (!allOpened) {
        std::fprintf(stderr, "files not opened\n");
        return 1;
    }
    if (request.tab)
        window.selectIndex(*request.tab);
    if (request.split == QLatin1String("side"))
        assembly.commands().dispatch(QStringLiteral("splitSideBySide:"));
    else if (request.split == QLatin1String("stacked"))
        assembly.commands().dispatch(QStringLiteral("splitStacked:"));
    if (!request.selectWord.isEmpty()) {
        if (auto *tab = window.currentDocument()) {
            const qsizetype at = tab->editor()->text().indexOf(request.selectWord);
            if (at >= 0)
                tab->editor()->setSelection({at, request.selectWord.size()});
        }
    }
    if (!request.foldLines.isEmpty()) {
        if (auto *tab = window.currentDocument()) {
            EditorFolding &folding = tab->editor()->folding();
            folding.detectNow();
            for (qint64 line : request.foldLines)
                folding.fold(line - 1);
        }
    }
    if (!request.sidebarFolder.isEmpty())
        window.openWorkspace(request.sidebarFolder);

    // The Markdown preview alone (shown first if opening the file did not show it).
    if (request.previewOnly) {
        if (!PreviewCommands::previewOf(window.currentDocument()))
            assembly.commands().dispatch(QStringLiteral("toggleMarkdownPreview:"));
        assembly.commands().dispatch(QStringLiteral("togglePreviewOnly:"));
    }

    window.show();
    // A preview's page loads in another process: wait for it (at most 20 s).
    for (int i = 0; i < 2000; ++i) {
        auto *preview = PreviewCommands::previewOf(window.currentDocument());
        if (!preview || preview->controller().isPageLoaded())
            break;
        QApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(10);
    }
    // Let layouts settle and the file tree list its folder before the picture is taken.
    for (int i = 0; i < 40; ++i) {
        QApplication::processEvents(QEventLoop::AllEvents, 25);
        QThread::msleep(10);
    }
    const QPixmap picture = window.grab();
    if (picture.isNull() || !picture.save(request.outputPath)) {
        std::fprintf(stderr, "render failed\n");
        return 1;
    }
    std::printf("wrote %s\n", qPrintable(request.outputPath));
    return 0;
}

} // namespace mirtex
