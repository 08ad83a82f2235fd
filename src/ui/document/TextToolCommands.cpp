#include "ui/document/TextToolCommands.h"

#include "core/app/Preferences.h"
#include "core/tools/DateTimeText.h"
#include "core/tools/TextDigest.h"
#include "core/tools/TransformBatch.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/BatchCommand.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/MainWindow.h"
#include "ui/editor/EditorView.h"
#include "ui/editor/TextPositions.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QtConcurrent>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

QString indentUnit(const Preferences &prefs)
{
    return prefs.useSpaces() ? QString(std::max(1, prefs.tabWidth()), u' ') : QStringLiteral("\t");
}

// The digest of the main selection, or of the whole text when it is empty, computed on the pool:
// the bytes are Scintilla's own UTF-8 (one copy, no conversion), and the alert comes once done.
void computeHash(CommandContext &context, DigestAlgorithm algorithm)
{
    EditorView *editor = context.currentEditor();
    if (!editor)
        return;
    const TextRange selected = editor->selection();
    const bool ofSelection = selected.length > 0;
    const QByteArray bytes = editor->utf8Text();
    const qsizetype from = ofSelection ? editor->positions().toByte(selected.location) : 0;
    const qsizetype to = ofSelection ? editor->positions().toByte(selected.end()) : bytes.size();
    auto *watcher = new QFutureWatcher<QString>(&context);
    QPointer<QWidget> window = &context.window();
    Questions *questions = &context.flows().questions();
    QObject::connect(watcher, &QFutureWatcher<QString>::finished, watcher, [=]() {
        const QString digest = watcher->result();
        watcher->deleteLater();
        if (!window)
            return;
        if (questions->showDigest(window, displayName(algorithm), ofSelection, digest)
            == DigestAnswer::copy)
            QGuiApplication::clipboard()->setText(digest);
    });
    watcher->setFuture(QtConcurrent::run([bytes, from, to, algorithm]() {
        return TextDigest::of(algorithm, QByteArrayView(bytes).sliced(from, to - from));
    }));
}

} // namespace

void TextToolCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasDocument = [c](const QVariant &) { return c->hasDocument(); };

    registry.add({QStringLiteral("applyTextTool:"),
                  tr("Strumenti di testo"),
                  {},
                  [c](const QVariant &argument) {
                      const auto tool = textToolFromString(argument.toString());
                      if (!tool)
                          return;
                      const QString indent = indentUnit(c->preferences());
                      runBatchCommand(*c, [&](QStringView text, const Selections &selections) {
                          return textToolBatch(text, selections, *tool, indent);
                      });
                  },
                  hasDocument});
    registry.add({QStringLiteral("computeHash:"),
                  tr("Hash"),
                  {},
                  [c](const QVariant &argument) {
                      if (const auto algorithm = digestAlgorithmFromString(argument.toString()))
                          computeHash(*c, *algorithm);
                  },
                  hasDocument});
    registry.add({QStringLiteral("insertDateTime:"),
                  tr("Data e ora"),
                  {},
                  [c](const QVariant &argument) {
                      const bool isLong = argument.toString() == QLatin1String("long");
                      const QString inserted = formatDateTime(QDateTime::currentDateTime(),
                                                              isLong ? DateTimeStyle::longForm
                                                                     : DateTimeStyle::shortForm,
                                                              QLocale());
                      const QString label
                          = isLong ? tr("Data e ora (estesa)") : tr("Data e ora (breve)");
                      runBatchCommand(*c, [&](QStringView, const Selections &selections) {
                          return insertionBatch(selections, inserted, label);
                      });
                  },
                  hasDocument});
}

void TextToolCommands::layOut(CommandRegistry &registry, QMenu *toolsMenu)
{
    if (!toolsMenu->isEmpty())
        toolsMenu->addSeparator();
    for (int i = 0; i < kTextToolCount; ++i) {
        if (i > 0 && i % 2 == 0)
            toolsMenu->addSeparator();
        const auto tool = TextTool(i);
        toolsMenu->addAction(
            registry.action(QStringLiteral("applyTextTool:"), toString(tool), label(tool)));
    }
    toolsMenu->addSeparator();
    QMenu *hash = toolsMenu->addMenu(tr("Hash"));
    hash->setObjectName(QStringLiteral("mirtex.menu.hash"));
    for (const DigestAlgorithm algorithm : {DigestAlgorithm::md5,
                                            DigestAlgorithm::sha1,
                                            DigestAlgorithm::sha256,
                                            DigestAlgorithm::sha512})
        hash->addAction(registry.action(
            QStringLiteral("computeHash:"), toString(algorithm), displayName(algorithm)));
    toolsMenu->addSeparator();
    QAction *longForm = registry.action(
        QStringLiteral("insertDateTime:"), QStringLiteral("long"), tr("Data e ora (estesa)"));
    longForm->setShortcut(QKeySequence(QStringLiteral("Ctrl+K, Ctrl+Shift+D")));
    toolsMenu->addAction(longForm);
    QAction *shortForm = registry.action(
        QStringLiteral("insertDateTime:"), QStringLiteral("short"), tr("Data e ora (breve)"));
    shortForm->setShortcut(QKeySequence(QStringLiteral("Ctrl+K, Ctrl+Alt+D")));
    toolsMenu->addAction(shortForm);
}

} // namespace mirtex
