#include "ui/dialogs/DialogQuestions.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace mirtex {

int DialogQuestions::chooseFromList(QWidget *parent, const AskedQuestion &question)
{
    bool chosen = false;
    const QString item = QInputDialog::getItem(
        parent, question.message, question.informative, question.buttons, 0, false, &chosen);
    return chosen ? int(question.buttons.indexOf(item)) : -1;
}

int DialogQuestions::choose(QWidget *parent, const AskedQuestion &question, int escapeIndex)
{
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(question.message);
    box.setInformativeText(question.informative);
    QList<QPushButton *> made;
    for (const QString &label : question.buttons)
        made.append(box.addButton(label, QMessageBox::ActionRole));
    if (!made.isEmpty())
        box.setDefaultButton(made.first());
    if (escapeIndex >= 0 && escapeIndex < made.size())
        box.setEscapeButton(made[escapeIndex]);
    box.exec();
    const int index = int(made.indexOf(static_cast<QPushButton *>(box.clickedButton())));
    return index >= 0 ? index : escapeIndex;
}

void DialogQuestions::inform(QWidget *parent, const QString &message, const QString &informative)
{
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(message);
    box.setInformativeText(informative);
    box.addButton(QMessageBox::Ok);
    box.exec();
}

std::optional<SaveDialogChoice> DialogQuestions::chooseSaveLocation(QWidget *parent,
                                                                    Preferences &prefs,
                                                                    const Document &document,
                                                                    const QString &title)
{
    return SaveDialog::ask(parent, prefs, document, title);
}

QStringList DialogQuestions::chooseFilesToOpen(QWidget *parent, const QString &folder)
{
    return QFileDialog::getOpenFileNames(parent, tr("Apri"), folder);
}

QString DialogQuestions::chooseFolderToOpen(QWidget *parent)
{
    return QFileDialog::getExistingDirectory(parent, tr("Apri cartella"));
}

std::optional<QString> DialogQuestions::askForName(QWidget *parent,
                                                   const QString &title,
                                                   const QString &label,
                                                   const QString &initial)
{
    bool accepted = false;
    const QString name
        = QInputDialog::getText(parent, title, label, QLineEdit::Normal, initial, &accepted);
    if (!accepted)
        return std::nullopt;
    return name;
}

} // namespace mirtex

namespace mirtex {

std::optional<QString> DialogQuestions::askForText(QWidget *parent, const AskedQuestion &question)
{
    QInputDialog dialog(parent);
    dialog.setWindowTitle(question.message);
    dialog.setLabelText(question.informative);
    dialog.setInputMode(QInputDialog::TextInput);
    if (!question.buttons.isEmpty())
        dialog.setCancelButtonText(question.buttons.constLast());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

} // namespace mirtex
