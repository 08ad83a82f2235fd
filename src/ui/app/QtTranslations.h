// Qt's own texts (file dialogs, standard buttons, Qt's messages) and QScintilla's, in the interface
// language: the system's language when the program has a translation for it, else Italian, the
// language of the program's own texts.
#pragma once

#include <QLocale>
#include <QString>

namespace mirtex::QtTranslations {

// The interface language for `system` ("it" unless the program speaks the system's language).
QString interfaceLanguage(const QLocale &system = QLocale::system());

// Installs Qt's and QScintilla's catalogues for interfaceLanguage() into the application, once per
// process; a catalogue the system does not ship is skipped. Returns the files installed.
QStringList install();

} // namespace mirtex::QtTranslations
