#include "ui/commands/CommandMenu.h"

#include "ui/commands/CommandRegistry.h"

#include <QMenu>

namespace mirtex {

QMenu *commandMenu(CommandRegistry &registry,
                   const QString &objectName,
                   std::initializer_list<const char *> names,
                   const QVariant &argument,
                   QWidget *parent)
{
    auto *menu = new QMenu(parent);
    menu->setObjectName(objectName);
    for (const char *name : names) {
        if (!*name)
            menu->addSeparator();
        else if (QAction *action
                 = registry.makeAction(QLatin1String(name), argument, QString(), menu))
            menu->addAction(action);
    }
    return menu;
}

} // namespace mirtex
