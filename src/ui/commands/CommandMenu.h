// A popup menu of registered commands that all act on one argument (a tab, a sidebar entry).
#pragma once

#include <QVariant>

#include <initializer_list>

class QMenu;
class QString;
class QWidget;

namespace mirtex {

class CommandRegistry;

// The commands in order, each bound to `argument`; an empty name is a separator. The menu is owned
// by `parent`.
QMenu *commandMenu(CommandRegistry &registry,
                   const QString &objectName,
                   std::initializer_list<const char *> names,
                   const QVariant &argument,
                   QWidget *parent);

} // namespace mirtex
