#include "ui/app/MacroDialogs.h"

#include "core/editor/MacroRepeat.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace mirtex::MacroDialogs {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MacroDialogs", text);
}

// The buttons in their fixed order, the first the default.
QDialogButtonBox *buttons(QDialog &dialog, const QString &accept)
{
    auto *box = new QDialogButtonBox(&dialog);
    QPushButton *ok = box->addButton(accept, QDialogButtonBox::AcceptRole);
    box->addButton(tr("Annulla"), QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    QObject::connect(box, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return box;
}

} // namespace

std::optional<int> askCount(QWidget *parent)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("mirtex.macroCount"));
    dialog.setWindowTitle(tr("Esegui la macro più volte"));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(
        new QLabel(tr("Quante volte? Scrivi 0 per ripeterla fino alla fine del file.")));
    auto *count = new QSpinBox(&dialog);
    // A spin box takes only numbers in its range, so nothing else can be asked for.
    count->setRange(0, MacroRepeat::kMaxRunsToEnd);
    count->setValue(1);
    count->selectAll();
    layout->addWidget(count);
    layout->addWidget(buttons(dialog, tr("Esegui")));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return count->value();
}

std::optional<QString> askName(QWidget *parent, const QString &problem, const QString &current)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("mirtex.macroName"));
    dialog.setWindowTitle(current.isEmpty() ? tr("Salva la macro") : tr("Rinomina la macro"));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(tr("Nome della macro:")));
    auto *name = new QLineEdit(current, &dialog);
    layout->addWidget(name);
    if (!problem.isEmpty()) {
        auto *why = new QLabel(problem);
        why->setWordWrap(true);
        why->setStyleSheet(QStringLiteral("color: #CF222E;"));
        layout->addWidget(why);
    }
    layout->addWidget(buttons(dialog, current.isEmpty() ? tr("Salva") : tr("Rinomina")));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return name->text();
}

} // namespace mirtex::MacroDialogs
