// Every modal question the program asks, with its exact wording and button order, answered with
// a typed value. How a question is put to someone (a dialog, or a script in tests and the
// self-test) is up to the implementation; the texts live here once.
#pragma once

#include "ui/dialogs/SaveDialog.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace mirtex {

class Document;
class Preferences;

// A question as shown: buttons in this order, the first is the default.
struct AskedQuestion
{
    QString message;
    QString informative;
    QStringList buttons;
};

enum class SaveQuestionAnswer {
    save,
    discard,
    cancel
};
enum class LargeFileAnswer {
    open,
    cancel
};
enum class Utf8OfferAnswer {
    saveInUtf8,
    cancel
};
enum class ReopenAnswer {
    reopen,
    cancel
};
enum class ReloadAnswer {
    reload,
    cancel
};
enum class MissingFileAnswer {
    keepOpen,
    close
};
enum class ChangedFileAnswer {
    reload,
    ignore
};
// The hash tool's alert.
enum class DigestAnswer {
    copy,
    close
};
// Find in files' replace, which changes files on the disk.
enum class ReplaceInFilesAnswer {
    replace,
    cancel
};
enum class UnwrittenSessionAnswer {
    retry,
    saveDocuments,
    quitAnyway
};

class Questions
{
    Q_DECLARE_TR_FUNCTIONS(Questions)

public:
    virtual ~Questions() = default;

    // "Salvare le modifiche a …?" when closing or quitting with unsaved changes.
    SaveQuestionAnswer askToSave(QWidget *parent, const QString &displayName);
    // Files above the large-file threshold.
    LargeFileAnswer askToOpenLargeFile(QWidget *parent, const QString &fileName, qint64 size);
    // Characters the chosen encoding cannot hold.
    Utf8OfferAnswer offerUtf8(QWidget *parent, const QString &encodingLabel);
    // Reopening a modified document in another encoding loses its changes.
    ReopenAnswer askToReopen(QWidget *parent, const QString &displayName, const QString &encoding);
    // "Ricarica dal disco" on a document with unsaved changes.
    ReloadAnswer askToReload(QWidget *parent, const QString &displayName);
    MissingFileAnswer askAboutMissingFile(QWidget *parent, const QString &displayName);
    ChangedFileAnswer
    askAboutChangedFile(QWidget *parent, const QString &displayName, bool hasOwnChanges);
    // Quitting when the session or a backup could not be written; `reason` says what failed.
    // Closing the box saves the documents one by one, the choice that loses nothing.
    UnwrittenSessionAnswer askAboutUnwrittenSession(QWidget *parent, const QString &reason);
    // A digest of the document or of the selection ("MD5 del documento"), with "Copia".
    DigestAnswer
    showDigest(QWidget *parent, const QString &algorithm, bool ofSelection, const QString &digest);
    // "Sostituire “query” in tutti i file di “folder”?" before replacing in a folder's files.
    ReplaceInFilesAnswer
    askToReplaceInFiles(QWidget *parent, const QString &query, const QString &folderName);
    // One of the texts set aside in the recovery folder, by index; nothing when cancelled.
    std::optional<int> chooseRecoveredText(QWidget *parent, const QStringList &labels);

    // "Vai alla riga": the answer as typed, for a text of `lineCount` lines with the caret on
    // `caretLineNumber` (from 1); nothing when cancelled.
    std::optional<QString>
    askForLine(QWidget *parent, qsizetype lineCount, qsizetype caretLineNumber);

    // A message with a single "OK".
    virtual void inform(QWidget *parent, const QString &message, const QString &informative = {})
        = 0;
    // The save panel; nothing when cancelled.
    virtual std::optional<SaveDialogChoice> chooseSaveLocation(QWidget *parent,
                                                               Preferences &prefs,
                                                               const Document &document,
                                                               const QString &title)
        = 0;
    // The open panels, starting in `folder` (empty: the panel's own choice); empty when cancelled.
    virtual QStringList chooseFilesToOpen(QWidget *parent, const QString &folder) = 0;
    virtual QString chooseFolderToOpen(QWidget *parent) = 0;
    // A name typed by the user (a new file or folder, a rename), starting from `initial`;
    // nothing when cancelled.
    virtual std::optional<QString>
    askForName(QWidget *parent, const QString &title, const QString &label, const QString &initial)
        = 0;

protected:
    // The index of the button chosen; closing the box chooses `escapeIndex`.
    virtual int choose(QWidget *parent, const AskedQuestion &question, int escapeIndex) = 0;
    // One of `question.buttons` picked from a list (too many for buttons); -1 when cancelled.
    // By default asked with choose() and one more button, "Annulla".
    virtual int chooseFromList(QWidget *parent, const AskedQuestion &question);
    // A line of text typed in answer (the message is the title, the informative text explains,
    // the one button cancels); nothing when cancelled. By default, cancelled.
    virtual std::optional<QString> askForText(QWidget *parent, const AskedQuestion &question);
};

} // namespace mirtex
