#include "ui/document/PreviewCommands.h"

#include "core/app/Preferences.h"
#include "core/languages/Language.h"
#include "core/markdown/MarkdownExport.h"
#include "core/markdown/MarkdownRenderer.h"
#include "core/markdown/PreviewNavigation.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/MarkdownPreviewController.h"
#include "ui/document/MarkdownPreviewPane.h"
#include "ui/document/PreviewEngine.h"
#include "ui/editor/EditorPane.h"
#include "ui/editor/EditorView.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QSaveFile>
#include <QSet>
#include <QTimer>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

const QString kMarkdown = QStringLiteral("markdown");

PreviewCommands::PathChooser &pathChooser()
{
    static PreviewCommands::PathChooser chooser =
        [](QWidget *parent, const QString &title, const QString &proposed, const QString &filter) {
            QFileDialog dialog(parent, title, proposed, filter);
            dialog.setAcceptMode(QFileDialog::AcceptSave);
            dialog.setFileMode(QFileDialog::AnyFile);
            dialog.selectFile(proposed);
            if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
                return QString();
            return dialog.selectedFiles().constFirst();
        };
    return chooser;
}

QString withExtension(QString path, const QString &extension)
{
    if (!path.isEmpty() && !path.endsWith(extension, Qt::CaseInsensitive))
        path += extension;
    return path;
}

QString chooseExportPath(CommandContext &c,
                         DocumentTab *tab,
                         const QString &title,
                         const QString &extension,
                         const QString &filter)
{
    const Document &document = tab->document();
    const QString proposed = ExportNames::proposedPath(
        document.path().value_or(QString()), document.displayName(), extension);
    return withExtension(pathChooser()(&c.window(), title, proposed, filter), extension);
}

void exportPdf(CommandContext &c, DocumentTab *tab)
{
    PreviewEngine *engine = PreviewEngine::installed();
    if (!tab || !engine)
        return;
    const QString path = chooseExportPath(
        c, tab, tr("Esporta in PDF"), QStringLiteral(".pdf"), tr("Documenti PDF (*.pdf)"));
    if (path.isEmpty())
        return;
    MarkdownRenderer renderer;
    QUrl base(QStringLiteral("about:blank"));
    if (const auto &file = tab->document().path()) {
        base = QUrl::fromLocalFile(QFileInfo(*file).absolutePath() + u'/');
        renderer.baseURL = base;
    }
    // The text as it is now; later typing does not reach the file being written.
    const std::string body = renderer.renderBody(tab->editor()->utf8Text().toStdString());
    const QString page = QString::fromStdString(MarkdownRenderer::page(body, true));
    QPointer<MainWindow> window(&c.window());
    Questions *questions = &c.flows().questions();
    engine->printPdf(
        page, base, path, tab->document().displayName(), [window, questions](const QString &error) {
            if (!error.isEmpty() && window)
                questions->inform(window, tr("Impossibile esportare il PDF."), error);
        });
}

void exportHtml(CommandContext &c, DocumentTab *tab)
{
    if (!tab)
        return;
    const QString path = chooseExportPath(
        c, tab, tr("Esporta in HTML"), QStringLiteral(".html"), tr("Pagine HTML (*.html *.htm)"));
    if (path.isEmpty())
        return;
    const std::string page = MarkdownExport::selfContainedPage(
        tab->document().path().value_or(QString()), tab->editor()->utf8Text().toStdString());
    QString error;
    if (!PreviewCommands::writeWhole(path, QByteArray::fromStdString(page), error))
        c.flows().questions().inform(&c.window(), tr("Impossibile esportare l'HTML."), error);
}

} // namespace

void PreviewCommands::setPathChooser(PathChooser chooser)
{
    pathChooser() = std::move(chooser);
}

bool PreviewCommands::writeWhole(const QString &path, const QByteArray &data, QString &error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        error = tr("Non è possibile scrivere in %1: %2").arg(path, file.errorString());
        return false;
    }
    if (file.write(data) != data.size() || !file.commit()) {
        error
            = tr("Non è stato possibile scrivere %1 per intero: %2").arg(path, file.errorString());
        file.cancelWriting();
        return false;
    }
    return true;
}

MarkdownPreviewPane *PreviewCommands::previewOf(DocumentTab *tab)
{
    if (!tab || !tab->page())
        return nullptr;
    return qobject_cast<MarkdownPreviewPane *>(tab->page()->preview());
}

MarkdownPreviewPane *PreviewCommands::showPreview(CommandContext &context, DocumentTab *tab)
{
    PreviewEngine *engine = PreviewEngine::installed();
    if (!tab || !engine)
        return nullptr;
    if (auto *shown = previewOf(tab))
        return shown;
    if (tab->document().languageId() != kMarkdown)
        tab->setLanguage(Language::byId(kMarkdown));
    auto *pane = new MarkdownPreviewPane(*tab, *engine, context.preferences());
    CommandContext *c = &context;
    QPointer<DocumentTab> guarded(tab);
    // The buttons act after their click has been handled: closing deletes the pane.
    pane->onClose
        = [guarded]() { QTimer::singleShot(0, guarded, [guarded]() { hidePreview(guarded); }); };
    pane->onExportPdf = [c, guarded]() {
        QTimer::singleShot(0, guarded, [c, guarded]() { exportPdf(*c, guarded); });
    };
    pane->controller().onOpenFile = [c](const QString &path) { c->flows().openPath(path); };
    tab->page()->setPreview(pane);
    Q_EMIT context.changed();
    return pane;
}

void PreviewCommands::hidePreview(DocumentTab *tab)
{
    if (!previewOf(tab))
        return;
    tab->page()->setPreview(nullptr);
    tab->editor()->primaryPane()->setFocus();
}

void PreviewCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto canPreview = [c](const QVariant &) {
        return c->hasDocument() && PreviewEngine::installed() != nullptr;
    };
    auto hasPreview = [c](const QVariant &) { return previewOf(c->currentTab()) != nullptr; };
    registry.add({QStringLiteral("toggleMarkdownPreview:"),
                  tr("Anteprima Markdown"),
                  {QKeySequence(QStringLiteral("Ctrl+Shift+V"))},
                  [c](const QVariant &) {
                      DocumentTab *tab = c->currentTab();
                      if (previewOf(tab))
                          hidePreview(tab);
                      else
                          showPreview(*c, tab);
                      Q_EMIT c->changed();
                  },
                  canPreview,
                  hasPreview});
    registry.add({QStringLiteral("togglePreviewOnly:"),
                  tr("Solo anteprima"),
                  {},
                  [c](const QVariant &) {
                      if (auto *pane = previewOf(c->currentTab())) {
                          pane->setMode(pane->mode() == MarkdownPreviewPane::Mode::only
                                            ? MarkdownPreviewPane::Mode::split
                                            : MarkdownPreviewPane::Mode::only);
                          Q_EMIT c->changed();
                      }
                  },
                  hasPreview,
                  [c](const QVariant &) {
                      auto *pane = previewOf(c->currentTab());
                      return pane && pane->mode() == MarkdownPreviewPane::Mode::only;
                  }});
    registry.add({QStringLiteral("exportPDF:"),
                  tr("Esporta in PDF…"),
                  {},
                  [c](const QVariant &) { exportPdf(*c, c->currentTab()); },
                  canPreview});
    registry.add({QStringLiteral("exportHTML:"),
                  tr("Esporta in HTML…"),
                  {},
                  [c](const QVariant &) { exportHtml(*c, c->currentTab()); },
                  [c](const QVariant &) { return c->hasDocument(); }});

    // Opening a Markdown file shows its preview when the setting asks for it (not saving a
    // document under a new name: only tabs added in this turn of the event loop count).
    auto fresh = std::make_shared<QSet<DocumentTab *>>();
    auto known = std::make_shared<QSet<DocumentTab *>>();
    QObject::connect(
        &context.window(), &MainWindow::documentsChanged, &context, [c, fresh, known]() {
            QSet<DocumentTab *> now;
            for (DocumentTab *tab : c->window().documents()) {
                now.insert(tab);
                if (!known->contains(tab))
                    fresh->insert(tab);
            }
            *known = now;
            QTimer::singleShot(0, c, [fresh]() { fresh->clear(); });
        });
    QObject::connect(
        &context.flows(), &DocumentFlows::fileOpened, &context, [c, fresh](const QString &path) {
            DocumentTab *tab = c->window().findByPath(path);
            if (!tab || !fresh->contains(tab) || !c->preferences().markdownPreviewOnOpen()
                || tab->document().languageId() != kMarkdown)
                return;
            fresh->remove(tab);
            showPreview(*c, tab);
        });
}

void PreviewCommands::layOut(CommandRegistry &registry, QMenu *fileMenu, QMenu *viewMenu)
{
    if (fileMenu) {
        // After the print entries, before "Esci".
        QAction *before = nullptr;
        const QList<QAction *> actions = fileMenu->actions();
        for (qsizetype i = 0; i + 1 < actions.size(); ++i) {
            if (actions[i]->objectName() == QLatin1String("printPreview:")) {
                before = actions[i + 1];
                break;
            }
        }
        QAction *separator = new QAction(fileMenu);
        separator->setSeparator(true);
        fileMenu->insertActions(before,
                                {separator,
                                 registry.action(QStringLiteral("exportHTML:")),
                                 registry.action(QStringLiteral("exportPDF:"))});
    }
    if (viewMenu) {
        viewMenu->addSeparator();
        viewMenu->addAction(registry.action(QStringLiteral("toggleMarkdownPreview:")));
        viewMenu->addAction(registry.action(QStringLiteral("togglePreviewOnly:")));
    }
}

} // namespace mirtex
