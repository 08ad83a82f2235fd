#include "ui/document/RecentFileCommands.h"

#include "core/app/DisplayPath.h"
#include "core/app/RecentFiles.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMenu>

namespace mirtex {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MainMenu", text);
}

} // namespace

void RecentFileCommands::registerIn(CommandRegistry &registry,
                                    CommandContext &context,
                                    RecentFiles &recent)
{
    CommandContext *c = &context;
    RecentFiles *r = &recent;
    registry.add(
        {QStringLiteral("openRecentFile:"), tr("Apri recenti"), {}, [c](const QVariant &path) {
             c->flows().openPath(path.toString());
         }});
    registry.add({QStringLiteral("clearRecentFiles:"),
                  tr("Svuota l'elenco"),
                  {},
                  [r](const QVariant &) { r->clear(); },
                  [r](const QVariant &) { return !r->paths().isEmpty(); }});
}

QMenu *
RecentFileCommands::addRecentMenu(CommandRegistry &registry, RecentFiles &recent, QMenu *menu)
{
    QMenu *sub = menu->addMenu(tr("Apri &recenti"));
    sub->setObjectName(QStringLiteral("mirtex.menu.recent"));
    CommandRegistry *commands = &registry;
    RecentFiles *r = &recent;
    auto fill = [sub, commands, r]() {
        sub->clear(); // deletes the entries made for the last showing
        const QStringList paths = r->existing();
        for (qsizetype i = 0; i < paths.size(); ++i) {
            // "1 nome.txt — ~/cartella": the number is the entry's mnemonic.
            const QString label
                = QStringLiteral("&%1 %2 — %3")
                      .arg(i == 9 ? 0 : i + 1)
                      .arg(QFileInfo(paths[i]).fileName().replace(u'&', QStringLiteral("&&")),
                           DisplayPath::forDisplay(QFileInfo(paths[i]).path())
                               .replace(u'&', QStringLiteral("&&")));
            sub->addAction(
                commands->makeAction(QStringLiteral("openRecentFile:"), paths[i], label, sub));
        }
        sub->addSeparator();
        sub->addAction(
            commands->makeAction(QStringLiteral("clearRecentFiles:"), {}, QString(), sub));
    };
    // Filled now too: a menu without entries may never be opened, and so never filled.
    fill();
    QObject::connect(sub, &QMenu::aboutToShow, sub, fill);
    return sub;
}

} // namespace mirtex
