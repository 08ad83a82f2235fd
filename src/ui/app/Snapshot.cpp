#include "ui/app/Snapshot.h"

#include "core/app/CommandLine.h"
#include "core/app/Preferences.h"
#include "core/search/FindModel.h"
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
// The find panel over the window.
#include "core/search/FindModel.h"
#include "ui/search/FindPanel.h"
#include "ui/search/SearchCommands.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
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
    if (!request.findAll.isEmpty()) {
        assembly.findModel().update([&](FindFields &fields) { fields.query = request.findAll; });
        assembly.commands().dispatch(QStringLiteral("findAllInOpenDocuments:"));
    }

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
    QPixmap picture = window.grab();
    // The find panel is a window of its own: show it, let its matches be outlined, and draw it
    // over the main window where it floats.
    if (!request.findQuery.isEmpty()) {
        auto *search = window.findChild<SearchCommands *>();
        if (search) {
            assembly.findModel().update([&](FindFields &f) { f.query = request.findQuery; });
            assembly.commands().dispatch(QStringLiteral("showFindPanel:"));
            assembly.commands().dispatch(QStringLiteral("findNext:"));
            for (int i = 0; i < 40; ++i) {
                QApplication::processEvents(QEventLoop::AllEvents, 25);
                QThread::msleep(10);
            }
            FindPanel &panel = search->panel();
            // In the picture the panel sits in the bottom right corner, clear of the first lines.
            panel.move(window.pos()
                       + QPoint(window.width() - panel.width() - 24,
                                window.height() - panel.height() - 40));
            picture = window.grab();
            const QPoint at = panel.pos() - window.pos();
            QPainter painter(&picture);
            const QPoint offset(
                std::clamp(at.x(), 0, std::max(0, picture.width() - panel.width())),
                std::clamp(at.y(), 0, std::max(0, picture.height() - panel.height())));
            painter.fillRect(QRect(offset, panel.size()).adjusted(-1, -1, 1, 1), Qt::darkGray);
            panel.render(&painter, offset);
        }
    }
    if (picture.isNull() || !picture.save(request.outputPath)) {
        std::fprintf(stderr, "render failed\n");
        return 1;
    }
    std::printf("wrote %s\n", qPrintable(request.outputPath));
    return 0;
}

} // namespace mirtex
