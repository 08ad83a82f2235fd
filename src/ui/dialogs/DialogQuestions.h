// The questions as the user sees them: message boxes, the save panel and the open panels.
#pragma once

#include "ui/dialogs/Questions.h"

namespace mirtex {

class DialogQuestions : public Questions
{
public:
    void inform(QWidget *parent, const QString &message, const QString &informative = {}) override;
    std::optional<SaveDialogChoice> chooseSaveLocation(QWidget *parent,
                                                       Preferences &prefs,
                                                       const Document &document,
                                                       const QString &title) override;
    QStringList chooseFilesToOpen(QWidget *parent, const QString &folder) override;
    QString chooseFolderToOpen(QWidget *parent) override;
    std::optional<QString> askForName(QWidget *parent,
                                      const QString &title,
                                      const QString &label,
                                      const QString &initial) override;

protected:
    int choose(QWidget *parent, const AskedQuestion &question, int escapeIndex) override;
    int chooseFromList(QWidget *parent, const AskedQuestion &question) override;
    std::optional<QString> askForText(QWidget *parent, const AskedQuestion &question) override;
};

} // namespace mirtex
