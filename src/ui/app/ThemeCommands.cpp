#include "ui/app/ThemeCommands.h"

#include "core/app/Preferences.h"
#include "core/languages/Theme.h"
#include "ui/commands/CommandRegistry.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

void ThemeCommands::registerIn(CommandRegistry &registry, Preferences &prefs)
{
    Preferences *p = &prefs;
    registry.add({kChooseTheme,
                  QCoreApplication::translate("AppearanceController", "Tema"),
                  {},
                  [p](const QVariant &id) { p->setThemeID(id.toString()); },
                  {},
                  [p](const QVariant &id) { return p->themeID() == id.toString(); }});
}

QMenu *ThemeCommands::addThemeMenu(CommandRegistry &registry, QMenu *menu)
{
    QMenu *themes = menu->addMenu(QCoreApplication::translate("AppearanceController", "Tema"));
    themes->setObjectName(QStringLiteral("mirtex.menu.theme"));
    auto *group = new QActionGroup(themes);
    for (const ThemeChoice &choice : Theme::choices()) {
        QAction *action = registry.action(kChooseTheme, choice.id, choice.name);
        group->addAction(action);
        themes->addAction(action);
    }
    return themes;
}

} // namespace mirtex
