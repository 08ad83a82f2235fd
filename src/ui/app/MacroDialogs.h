// The two questions of the macro commands: how many times to play the macro, and the name to
// save it under. Modal dialogs; nothing means the user cancelled.
#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace mirtex {

namespace MacroDialogs {

// "Esegui la macro più volte": a number from 0 (to the end of the file) to 100,000.
std::optional<int> askCount(QWidget *parent);

// "Salva la macro…": a name; `problem` says why the last one was refused (empty the first time).
std::optional<QString>
askName(QWidget *parent, const QString &problem, const QString &current = {});

} // namespace MacroDialogs

} // namespace mirtex
