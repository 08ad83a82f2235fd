#include "ui/search/FileSearchCommands.h"

#include "core/search/FindModel.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/search/FileSearchRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("FileSearch", text);
}

// The folder an entry of the sidebar stands for: itself, or the folder holding a file.
QString folderOf(const QString &entry)
{
    const QFileInfo info(entry);
    return QDir::toNativeSeparators(info.isDir() ? info.absoluteFilePath() : info.absolutePath());
}

} // namespace

void FileSearchCommands::registerIn(CommandRegistry &registry,
                                    FileSearchRunner &runner,
                                    FindModel &model)
{
    FileSearchRunner *r = &runner;
    FindModel *m = &model;
    CommandRegistry *commands = &registry;
    registry.add({QStringLiteral("findInFiles:"), tr("Trova nei file"), {}, [r](const QVariant &) {
                      r->findInFiles();
                  }});
    registry.add(
        {QStringLiteral("replaceInFiles:"), tr("Sostituisci nei file"), {}, [r](const QVariant &) {
             r->replaceInFiles();
         }});
    registry.add({QStringLiteral("stopFileSearch:"),
                  tr("Ferma"),
                  {},
                  [r](const QVariant &) { r->stop(); },
                  [r](const QVariant &) { return r->isRunning(); }});
    registry.add({QStringLiteral("findInFolder:"),
                  tr("Trova nella cartella…"),
                  {},
                  [m, commands](const QVariant &argument) {
                      const QString entry = argument.toString();
                      if (entry.isEmpty())
                          return;
                      const QString folder = folderOf(entry);
                      m->update([&folder](FindFields &f) {
                          f.directory = folder;
                          f.tab = FindTab::files;
                      });
                      // The find panel shows itself on that tab, when there is one.
                      if (commands->find(QStringLiteral("showFindInFilesPanel:")))
                          commands->dispatch(QStringLiteral("showFindInFilesPanel:"));
                  },
                  [](const QVariant &argument) { return !argument.toString().isEmpty(); }});
    QObject::connect(
        r, &FileSearchRunner::runningChanged, commands, [commands](bool) { commands->refresh(); });
}

} // namespace mirtex
