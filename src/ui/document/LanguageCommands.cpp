#include "ui/document/LanguageCommands.h"

#include "core/languages/Language.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentTab.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

void LanguageCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    registry.add({kSetLanguage,
                  QCoreApplication::translate("MainMenu", "Linguaggio"),
                  {},
                  [c](const QVariant &id) {
                      if (DocumentTab *tab = c->currentTab())
                          tab->setLanguage(Language::byId(id.toString()));
                  },
                  [c](const QVariant &) { return c->hasDocument(); },
                  [c](const QVariant &id) {
                      const DocumentTab *tab = c->currentTab();
                      return tab && tab->document().languageId() == id.toString();
                  }});
}

void LanguageCommands::layOut(CommandRegistry &registry, QMenu *menu)
{
    auto *group = new QActionGroup(menu);
    for (const LanguagePtr &language : Language::all()) {
        QAction *action = registry.action(kSetLanguage, language->id(), language->name());
        group->addAction(action);
        menu->addAction(action);
    }
}

} // namespace mirtex
