#include "ui/app/AppCommands.h"

#include "ui/app/AboutWindow.h"
#include "ui/app/AppDelegate.h"
#include "ui/app/SecondaryWindows.h"
#include "ui/app/SettingsWindow.h"
#include "ui/app/ShortcutsWindow.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/document/MainWindow.h"

#include <QCoreApplication>
#include <QMenuBar>

namespace mirtex {

void AppCommands::registerIn(CommandRegistry &registry,
                             AppDelegate &delegate,
                             MainWindow &window,
                             SecondaryWindows &windows)
{
    auto tr = [](const char *text) { return QCoreApplication::translate("MainMenu", text); };
    AppDelegate *d = &delegate;
    MainWindow *w = &window;
    SecondaryWindows *s = &windows;
    CommandRegistry *r = &registry;

    registry.add({QStringLiteral("terminate:"),
                  tr("Esci"),
                  QKeySequence::keyBindings(QKeySequence::Quit),
                  [d](const QVariant &) { d->requestQuit(); }});
    registry.add({QStringLiteral("showPreferences:"),
                  tr("Impostazioni…"),
                  {QKeySequence(QStringLiteral("Ctrl+,"))},
                  [s, w](const QVariant &) {
                      s->show(QStringLiteral("settings"),
                              [w]() { return new SettingsWindow(w->preferences(), w); });
                  }});
    registry.add({QStringLiteral("showShortcuts:"),
                  tr("Scorciatoie da tastiera"),
                  {QKeySequence(QStringLiteral("F1"))},
                  [s, w, r](const QVariant &) {
                      s->show(QStringLiteral("shortcuts"),
                              [w, r]() { return new ShortcutsWindow(*r, w->menuBar(), w); });
                  }});
    registry.add({QStringLiteral("showAbout:"),
                  tr("Informazioni su Mirtex++"),
                  {},
                  [s, w](const QVariant &) {
                      s->show(QStringLiteral("about"), [w]() { return new AboutWindow(w); });
                  }});
    registry.add({QStringLiteral("openMenuBar:"),
                  tr("Apri la barra dei menu"),
                  {QKeySequence(Qt::Key_F10)},
                  [w](const QVariant &) {
                      QMenuBar *bar = w->menuBar();
                      if (!bar->actions().isEmpty()) {
                          bar->setFocus(Qt::MenuBarFocusReason);
                          bar->setActiveAction(bar->actions().first());
                      }
                  }});
}

} // namespace mirtex
