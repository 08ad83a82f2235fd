#include "ui/app/AboutWindow.h"

#include "core/app/AppInfo.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace mirtex {

AboutWindow::AboutWindow(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("mirtex.about"));
    setWindowTitle(tr("Informazioni su Mirtex++"));
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(10);

    auto *name = new QLabel(AppInfo::name());
    name->setObjectName(QStringLiteral("name"));
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    name->setFont(big);
    auto *version = new QLabel(tr("Versione %1").arg(AppInfo::version()));
    version->setObjectName(QStringLiteral("version"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *description
        = new QLabel(tr("Un editor di testo e di codice a schede, per file di ogni codifica."));
    description->setObjectName(QStringLiteral("description"));
    description->setWordWrap(true);
    for (QLabel *label : {name, version, description}) {
        label->setAlignment(Qt::AlignHCenter);
        layout->addWidget(label);
    }
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    layout->addWidget(buttons);
    setMinimumWidth(360);
}

} // namespace mirtex
