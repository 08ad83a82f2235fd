// One user command: what menus, shortcuts, the toolbar and the palette invoke by name.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>
#include <QVariant>

#include <functional>

namespace mirtex {

struct Command
{
    // The selector: stable, recorded by macros, and the object name of the command's actions
    // (followed by the argument for commands that take one, as in "setLanguage:python").
    QString name;
    // Menu text, already translated.
    QString label;
    QList<QKeySequence> shortcuts;
    // The argument is the represented object (an encoding, language or theme identifier, a line
    // ending), invalid for commands that take none.
    std::function<void(const QVariant &argument)> run;
    // Empty: always enabled.
    std::function<bool(const QVariant &argument)> isEnabled = {};
    // Set for commands shown with a check mark (a setting, the current language or theme).
    std::function<bool(const QVariant &argument)> isChecked = {};
};

} // namespace mirtex
