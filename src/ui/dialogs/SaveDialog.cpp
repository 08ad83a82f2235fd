#include "ui/dialogs/SaveDialog.h"

#include "core/app/Preferences.h"
#include "core/document/Document.h"
#include "ui/dialogs/EncodingChoices.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>

namespace mirtex {

namespace {
const QString kLastSaveDirectory = QStringLiteral("lastSaveDirectory");
}

std::optional<SaveDialogChoice>
SaveDialog::ask(QWidget *parent, Preferences &prefs, const Document &document, const QString &title)
{
    QFileDialog dialog(parent, title);
    dialog.setOption(QFileDialog::DontUseNativeDialog); // the pop-ups live inside the dialog
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    QString folder = prefs.value(kLastSaveDirectory).toString();
    if (document.path())
        folder = QFileInfo(*document.path()).absolutePath();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        folder = QDir::homePath();
    dialog.setDirectory(folder);
    dialog.selectFile(document.displayName());

    auto *encodingPopup = new QComboBox(&dialog);
    encodingPopup->setObjectName(QStringLiteral("encodingPopup"));
    EncodingChoices::fillEncodingPopup(encodingPopup, document.encoding());
    auto *endingPopup = new QComboBox(&dialog);
    endingPopup->setObjectName(QStringLiteral("endingPopup"));
    EncodingChoices::fillLineEndingPopup(endingPopup, document.lineEnding());
    if (auto *grid = qobject_cast<QGridLayout *>(dialog.layout())) {
        const int row = grid->rowCount();
        grid->addWidget(
            new QLabel(QCoreApplication::translate("SaveDialog", "Codifica:"), &dialog), row, 0);
        grid->addWidget(encodingPopup, row, 1);
        grid->addWidget(
            new QLabel(QCoreApplication::translate("SaveDialog", "Fine riga:"), &dialog),
            row + 1,
            0);
        grid->addWidget(endingPopup, row + 1, 1);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;

    SaveDialogChoice choice;
    choice.path = dialog.selectedFiles().first();
    choice.encoding = TextEncoding::fromId(encodingPopup->currentData().toString())
                          .value_or(document.encoding());
    choice.lineEnding = lineEndingFromString(endingPopup->currentData().toString())
                            .value_or(document.lineEnding());
    prefs.setValue(kLastSaveDirectory, QFileInfo(choice.path).absolutePath());
    return choice;
}

} // namespace mirtex
