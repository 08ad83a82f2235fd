// "Recupera testo non salvato…": the texts the session set aside in its recovery folder, listed by
// date and first line, the chosen one opened as a new modified tab.
#pragma once

#include <QString>

namespace mirtex {

class CommandRegistry;
class DocumentTab;
class MainWindow;
class Questions;
class SessionKeeper;

namespace RecoveryCommands {

// `session` may be null (no session storage: the command lists nothing).
void registerIn(CommandRegistry &registry,
                MainWindow &window,
                Questions &questions,
                const SessionKeeper *session);

// Opens a recovered file as a new untitled tab, modified, so that closing it asks to save.
// Null when the file cannot be read.
DocumentTab *openRecovered(MainWindow &window, const QString &path);

} // namespace RecoveryCommands

} // namespace mirtex
