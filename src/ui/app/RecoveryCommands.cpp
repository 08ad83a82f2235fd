#include "ui/app/RecoveryCommands.h"

#include "core/app/Preferences.h"
#include "core/document/SessionRecovery.h"
#include "ui/app/SessionKeeper.h"
#include "ui/commands/CommandRegistry.h"
#include "ui/dialogs/Questions.h"
#include "ui/document/DocumentTab.h"
#include "ui/document/MainWindow.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>

namespace mirtex {

namespace RecoveryCommands {

DocumentTab *openRecovered(MainWindow &window, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    // The editor holds UTF-8: bytes that are not (an older copy set aside as it was) are shown
    // as U+FFFD.
    QByteArray utf8 = file.readAll();
    if (!utf8.isValidUtf8())
        utf8 = QString::fromUtf8(utf8).toUtf8();
    auto *tab = new DocumentTab(window.preferences(),
                                utf8,
                                std::nullopt,
                                TextEncoding::utf8(),
                                LineEnding::lf,
                                window.nextUntitledName(),
                                QUuid::createUuid(),
                                QByteArray());
    window.addDocument(tab);
    return tab;
}

void registerIn(CommandRegistry &registry,
                MainWindow &window,
                Questions &questions,
                const SessionKeeper *session)
{
    auto tr = [](const char *text) { return QCoreApplication::translate("MainMenu", text); };
    MainWindow *w = &window;
    Questions *q = &questions;
    const QString folder = session ? session->folderPath() : QString();
    registry.add(
        {QStringLiteral("recoverUnsavedText:"),
         tr("Recupera testo non salvato…"),
         {},
         [w, q, folder, tr](const QVariant &) {
             const QList<RecoveredText> texts
                 = folder.isEmpty() ? QList<RecoveredText>() : SessionRecovery::list(folder);
             if (texts.isEmpty()) {
                 q->inform(w, tr("Non c'è testo non salvato da recuperare."));
                 return;
             }
             QStringList labels;
             const QLocale locale;
             for (const RecoveredText &text : texts)
                 labels.append(locale.toString(text.modified, QLocale::ShortFormat)
                               + QStringLiteral(" — ")
                               + (text.firstLine.isEmpty() ? tr("(vuoto)") : text.firstLine));
             if (const auto chosen = q->chooseRecoveredText(w, labels))
                 openRecovered(*w, texts[*chosen].path);
         }});
}

} // namespace RecoveryCommands

} // namespace mirtex
