#include "ui/document/SidebarCommands.h"

#include "core/document/FileOperations.h"
#include "ui/commands/CommandMenu.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"
#include "ui/document/PendingTab.h"
#include "ui/document/WorkspaceSidebar.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("WorkspaceSidebar", text);
}

// The entry a command acts on: its argument, else the sidebar's selection, else its folder.
QString entryFor(const CommandContext &context, const QVariant &argument)
{
    if (const QString path = argument.toString(); !path.isEmpty())
        return path;
    const WorkspaceSidebar *sidebar = context.window().sidebar();
    const QString selected = sidebar->selectedPath();
    return selected.isEmpty() ? sidebar->shownFolder() : selected;
}

// Where a new entry goes: the folder itself, or the folder holding the file.
QString folderFor(const QString &entry)
{
    const QFileInfo info(entry);
    return info.isDir() ? info.absoluteFilePath() : info.absolutePath();
}

// The root folders of the workspace are not renamed or trashed from inside themselves.
bool isChangeable(const CommandContext &context, const QString &entry)
{
    return !entry.isEmpty() && QFileInfo(entry).exists()
           && !context.window().workspaceFolders().contains(QFileInfo(entry).absoluteFilePath());
}

// The alert's informative text, written as the other file alerts write theirs.
QString because(FileProblem problem)
{
    QString why = describe(problem);
    if (!why.isEmpty())
        why[0] = why[0].toUpper();
    return why + u'.';
}

bool holds(const QString &entry, const QString &path)
{
    return path == entry || path.startsWith(entry + u'/');
}

// Tabs whose file is `entry` or lies inside it. Tabs of a restored session not loaded yet are
// loaded first, while their files are still where their entries say, so that they follow too.
QList<DocumentTab *> tabsUnder(const MainWindow &window, const QString &entry)
{
    for (QWidget *page : window.pagesInOrder()) {
        auto *pending = qobject_cast<PendingTab *>(page);
        if (pending && pending->entry().path && holds(entry, *pending->entry().path))
            pending->load();
    }
    QList<DocumentTab *> found;
    for (DocumentTab *tab : window.documents()) {
        const auto &path = tab->document().path();
        if (path && holds(entry, *path))
            found.append(tab);
    }
    return found;
}

void createEntry(CommandContext &c, const QVariant &argument, bool folder)
{
    MainWindow &window = c.window();
    const QString where = folderFor(entryFor(c, argument));
    const auto name = c.flows().questions().askForName(
        &window,
        folder ? tr("Nuova cartella") : tr("Nuovo file"),
        (folder ? tr("Nome della nuova cartella in «%1»:") : tr("Nome del nuovo file in «%1»:"))
            .arg(QFileInfo(where).fileName()),
        QString());
    if (!name)
        return;
    const auto made = folder ? FileOperations::createFolder(where, *name)
                             : FileOperations::createFile(where, *name);
    if (!made) {
        c.flows().questions().inform(&window,
                                     (folder ? tr("Impossibile creare la cartella «%1».")
                                             : tr("Impossibile creare il file «%1»."))
                                         .arg(*name),
                                     because(made.error()));
        return;
    }
    if (!folder)
        c.flows().openPath(*made);
    window.revealInSidebar(*made);
}

void renameEntry(CommandContext &c, const QVariant &argument)
{
    MainWindow &window = c.window();
    const QString entry = QFileInfo(entryFor(c, argument)).absoluteFilePath();
    const QString oldName = QFileInfo(entry).fileName();
    const auto name = c.flows().questions().askForName(
        &window, tr("Rinomina"), tr("Nuovo nome per «%1»:").arg(oldName), oldName);
    if (!name || *name == oldName)
        return;
    const QList<DocumentTab *> tabs = tabsUnder(window, entry);
    const auto moved = FileOperations::rename(entry, *name);
    if (!moved) {
        c.flows().questions().inform(
            &window, tr("Impossibile rinominare «%1».").arg(oldName), because(moved.error()));
        return;
    }
    for (DocumentTab *tab : tabs)
        tab->document().followMovedFile(*moved + tab->document().path()->mid(entry.size()));
    window.revealInSidebar(*moved);
}

void trashEntry(CommandContext &c, const QVariant &argument)
{
    MainWindow &window = c.window();
    const QString entry = QFileInfo(entryFor(c, argument)).absoluteFilePath();
    const QList<DocumentTab *> tabs = tabsUnder(window, entry);
    const auto trashed = FileOperations::moveToTrash(entry);
    if (!trashed) {
        c.flows().questions().inform(
            &window,
            tr("Impossibile spostare «%1» nel cestino.").arg(QFileInfo(entry).fileName()),
            because(trashed.error()));
        return;
    }
    for (DocumentTab *tab : tabs)
        c.flows().fileRemovedByUser(tab);
}

} // namespace

void SidebarCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto hasEntry = [c](const QVariant &argument) { return !entryFor(*c, argument).isEmpty(); };
    auto changeable
        = [c](const QVariant &argument) { return isChangeable(*c, entryFor(*c, argument)); };

    registry.add({QStringLiteral("newFileInFolder:"),
                  tr("Nuovo file…"),
                  {},
                  [c](const QVariant &argument) { createEntry(*c, argument, false); },
                  hasEntry});
    registry.add({QStringLiteral("newFolderInFolder:"),
                  tr("Nuova cartella…"),
                  {},
                  [c](const QVariant &argument) { createEntry(*c, argument, true); },
                  hasEntry});
    registry.add({QStringLiteral("renameEntry:"),
                  tr("Rinomina…"),
                  {},
                  [c](const QVariant &argument) { renameEntry(*c, argument); },
                  changeable});
    registry.add({QStringLiteral("moveEntryToTrash:"),
                  tr("Sposta nel cestino"),
                  {},
                  [c](const QVariant &argument) { trashEntry(*c, argument); },
                  changeable});
    registry.add({QStringLiteral("copyEntryPath:"),
                  tr("Copia percorso"),
                  {},
                  [c](const QVariant &argument) {
                      QGuiApplication::clipboard()->setText(
                          QDir::toNativeSeparators(entryFor(*c, argument)));
                  },
                  hasEntry});

    WorkspaceSidebar *sidebar = context.window().sidebar();
    QObject::connect(sidebar,
                     &WorkspaceSidebar::menuRequested,
                     &registry,
                     [&registry, sidebar](const QString &path, const QPoint &at) {
                         const QString entry = path.isEmpty() ? sidebar->shownFolder() : path;
                         if (entry.isEmpty())
                             return;
                         QMenu *menu = entryMenu(registry, entry, sidebar);
                         menu->setAttribute(Qt::WA_DeleteOnClose);
                         menu->popup(at);
                     });
}

QMenu *SidebarCommands::entryMenu(CommandRegistry &registry, const QString &path, QWidget *parent)
{
    return commandMenu(registry,
                       QStringLiteral("mirtex.menu.sidebar"),
                       {"newFileInFolder:",
                        "newFolderInFolder:",
                        "",
                        "renameEntry:",
                        "moveEntryToTrash:",
                        "",
                        "copyEntryPath:",
                        // Find in files, registered with its commands.
                        "",
                        "findInFolder:"},
                       QVariant(path),
                       parent);
}

} // namespace mirtex
