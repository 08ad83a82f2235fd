#include "ui/dialogs/Questions.h"

#include "core/document/FileNaming.h"

namespace mirtex {

SaveQuestionAnswer Questions::askToSave(QWidget *parent, const QString &displayName)
{
    const int answer = choose(parent,
                              {tr("Salvare le modifiche a “%1”?").arg(displayName),
                               tr("Se non salvi, le modifiche andranno perse."),
                               {tr("Salva"), tr("Annulla"), tr("Non salvare")}},
                              1);
    if (answer == 0)
        return SaveQuestionAnswer::save;
    return answer == 2 ? SaveQuestionAnswer::discard : SaveQuestionAnswer::cancel;
}

LargeFileAnswer Questions::askToOpenLargeFile(QWidget *parent, const QString &fileName, qint64 size)
{
    const int answer = choose(parent,
                              {tr("“%1” è molto grande (%2).").arg(fileName, formatFileSize(size)),
                               tr("Aprirlo può richiedere tempo e molta memoria."),
                               {tr("Apri comunque"), tr("Annulla")}},
                              1);
    return answer == 0 ? LargeFileAnswer::open : LargeFileAnswer::cancel;
}

Utf8OfferAnswer Questions::offerUtf8(QWidget *parent, const QString &encodingLabel)
{
    const int answer
        = choose(parent,
                 {tr("Alcuni caratteri non si possono salvare in %1.").arg(encodingLabel),
                  tr("Salvare il file in UTF-8?"),
                  {tr("Salva in UTF-8"), tr("Annulla")}},
                 1);
    return answer == 0 ? Utf8OfferAnswer::saveInUtf8 : Utf8OfferAnswer::cancel;
}

ReopenAnswer
Questions::askToReopen(QWidget *parent, const QString &displayName, const QString &encoding)
{
    const int answer = choose(parent,
                              {tr("Riaprire “%1” come %2?").arg(displayName, encoding),
                               tr("Le modifiche non salvate andranno perse."),
                               {tr("Riapri"), tr("Annulla")}},
                              1);
    return answer == 0 ? ReopenAnswer::reopen : ReopenAnswer::cancel;
}

ReloadAnswer Questions::askToReload(QWidget *parent, const QString &displayName)
{
    const int answer = choose(parent,
                              {tr("Ricaricare “%1” dal disco?").arg(displayName),
                               tr("Le modifiche non salvate andranno perse."),
                               {tr("Ricarica"), tr("Annulla")}},
                              1);
    return answer == 0 ? ReloadAnswer::reload : ReloadAnswer::cancel;
}

ReplaceInFilesAnswer
Questions::askToReplaceInFiles(QWidget *parent, const QString &query, const QString &folderName)
{
    const int answer
        = choose(parent,
                 {tr("Sostituire “%1” in tutti i file di “%2”?").arg(query, folderName),
                  tr("I file vengono modificati sul disco; i documenti già aperti qui "
                     "si possono annullare con Ctrl+Z."),
                  {tr("Sostituisci"), tr("Annulla")}},
                 1);
    return answer == 0 ? ReplaceInFilesAnswer::replace : ReplaceInFilesAnswer::cancel;
}

MissingFileAnswer Questions::askAboutMissingFile(QWidget *parent, const QString &displayName)
{
    const int answer = choose(parent,
                              {tr("“%1” non esiste più sul disco.").arg(displayName),
                               tr("Vuoi tenerlo aperto? Salvandolo lo ricrei."),
                               {tr("Tieni aperto"), tr("Chiudi")}},
                              0);
    return answer == 1 ? MissingFileAnswer::close : MissingFileAnswer::keepOpen;
}

UnwrittenSessionAnswer Questions::askAboutUnwrittenSession(QWidget *parent, const QString &reason)
{
    const int answer
        = choose(parent,
                 {tr("Non è stato possibile salvare la sessione."),
                  tr("%1\n\nUscendo ora, il testo non salvato potrebbe non essere ripristinato al "
                     "prossimo avvio.")
                      .arg(reason),
                  {tr("Riprova"), tr("Salva i documenti…"), tr("Esci comunque")}},
                 1);
    switch (answer) {
    case 0:
        return UnwrittenSessionAnswer::retry;
    case 2:
        return UnwrittenSessionAnswer::quitAnyway;
    default:
        return UnwrittenSessionAnswer::saveDocuments;
    }
}

DigestAnswer Questions::showDigest(QWidget *parent,
                                   const QString &algorithm,
                                   bool ofSelection,
                                   const QString &digest)
{
    const QString message = ofSelection ? tr("%1 della selezione").arg(algorithm)
                                        : tr("%1 del documento").arg(algorithm);
    const int answer = choose(parent, {message, digest, {tr("Copia"), tr("Chiudi")}}, 1);
    return answer == 0 ? DigestAnswer::copy : DigestAnswer::close;
}

std::optional<int> Questions::chooseRecoveredText(QWidget *parent, const QStringList &labels)
{
    const int answer = chooseFromList(
        parent,
        {tr("Recupera testo non salvato"),
         tr("Testo di schede chiuse senza salvare o di sessioni danneggiate, tenuto per 30 "
            "giorni. Scegli quale aprire in una nuova scheda:"),
         labels});
    if (answer < 0 || answer >= labels.size())
        return std::nullopt;
    return answer;
}

int Questions::chooseFromList(QWidget *parent, const AskedQuestion &question)
{
    AskedQuestion withCancel = question;
    withCancel.buttons.append(tr("Annulla"));
    const int answer = choose(parent, withCancel, int(question.buttons.size()));
    return answer < question.buttons.size() ? answer : -1;
}

ChangedFileAnswer
Questions::askAboutChangedFile(QWidget *parent, const QString &displayName, bool hasOwnChanges)
{
    const int answer = choose(
        parent,
        {tr("“%1” è cambiato sul disco.").arg(displayName),
         hasOwnChanges ? tr("È stato modificato da un altro programma. Ricaricandolo perderai "
                            "le modifiche fatte qui.")
                       : tr("È stato modificato da un altro programma. Vuoi ricaricarlo?"),
         {tr("Ricarica"), tr("Ignora")}},
        1);
    return answer == 0 ? ChangedFileAnswer::reload : ChangedFileAnswer::ignore;
}

} // namespace mirtex

namespace mirtex {

std::optional<QString>
Questions::askForLine(QWidget *parent, qsizetype lineCount, qsizetype caretLineNumber)
{
    return askForText(parent,
                      {tr("Vai alla riga"),
                       tr("Riga da 1 a %1 (ora sei alla %2)").arg(lineCount).arg(caretLineNumber),
                       {tr("Annulla")}});
}

std::optional<QString> Questions::askForText(QWidget *, const AskedQuestion &)
{
    return std::nullopt;
}

} // namespace mirtex
