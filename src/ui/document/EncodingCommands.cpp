#include "ui/document/EncodingCommands.h"

#include "core/document/EncodingMenu.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/EncodingChoices.h"
#include "ui/document/CommandContext.h"
#include "ui/document/DocumentFlows.h"
#include "ui/document/DocumentTab.h"

#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

void EncodingCommands::registerIn(CommandRegistry &registry, CommandContext &context)
{
    CommandContext *c = &context;
    auto withEncoding = [c](void (DocumentFlows::*flow)(DocumentTab *, TextEncoding)) {
        return [c, flow](const QVariant &id) {
            const auto encoding = TextEncoding::fromId(id.toString());
            if (DocumentTab *tab = c->currentTab(); tab && encoding)
                (c->flows().*flow)(tab, *encoding);
        };
    };
    auto editable = [c](const QVariant &) { return c->isEditable(); };
    auto tr = [](const char *text) { return QCoreApplication::translate("MainMenu", text); };
    // The current tab's encoding carries the check mark in both menus.
    auto isCurrent = [c](const QVariant &id) {
        const DocumentTab *tab = c->currentTab();
        return tab && tab->document().encoding().id() == id.toString();
    };

    registry.add({kConvert,
                  tr("Converti in"),
                  {},
                  withEncoding(&DocumentFlows::convertEncoding),
                  editable,
                  isCurrent});
    registry.add({kReopen,
                  tr("Riapri con codifica"),
                  {},
                  withEncoding(&DocumentFlows::reopenWithEncoding),
                  [c](const QVariant &) { return c->hasDocument(); },
                  isCurrent});
    registry.add({kLineEnding,
                  tr("Fine riga"),
                  {},
                  [c](const QVariant &id) {
                      const auto ending = lineEndingFromString(id.toString());
                      if (DocumentTab *tab = c->currentTab(); tab && ending)
                          c->flows().setLineEnding(tab, *ending);
                  },
                  editable,
                  [c](const QVariant &id) {
                      const DocumentTab *tab = c->currentTab();
                      return tab && toString(tab->document().lineEnding()) == id.toString();
                  }});
}

QMenu *EncodingCommands::encodingMenu(CommandRegistry &registry,
                                      const QString &command,
                                      const QString &title,
                                      QWidget *parent)
{
    auto *menu = new QMenu(title, parent);
    auto add = [&registry, &command](QMenu *into, const TextEncoding &encoding) {
        into->addAction(registry.action(command, encoding.id(), encoding.label()));
    };
    for (const TextEncoding &encoding : commonEncodings())
        add(menu, encoding);
    menu->addSeparator();
    for (const EncodingGroup &group : encodingMenuGroups()) {
        QMenu *sub = menu->addMenu(group.title);
        for (const TextEncoding &encoding : group.encodings)
            add(sub, encoding);
    }
    return menu;
}

QMenu *
EncodingCommands::lineEndingMenu(CommandRegistry &registry, const QString &title, QWidget *parent)
{
    auto *menu = new QMenu(title, parent);
    for (LineEnding ending : EncodingChoices::kLineEndings) {
        menu->addAction(registry.action(
            kLineEnding, toString(ending), EncodingChoices::lineEndingLabel(ending)));
    }
    return menu;
}

} // namespace mirtex
