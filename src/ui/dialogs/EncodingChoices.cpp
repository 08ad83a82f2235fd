#include "ui/dialogs/EncodingChoices.h"

#include "core/document/EncodingMenu.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QStandardItemModel>

#include <algorithm>

namespace mirtex {

QString EncodingChoices::lineEndingLabel(LineEnding ending)
{
    switch (ending) {
    case LineEnding::lf:
        return QCoreApplication::translate("EncodingMenus", "LF (Unix, macOS)");
    case LineEnding::crlf:
        return QCoreApplication::translate("EncodingMenus", "CRLF (Windows)");
    case LineEnding::cr:
        return QCoreApplication::translate("EncodingMenus", "CR (Mac classico)");
    }
    return {};
}

void EncodingChoices::fillEncodingPopup(QComboBox *popup, TextEncoding selected)
{
    popup->clear();
    // Laid out as the encoding menu: the common entries, then each region under its title (a
    // title that cannot be chosen), each encoding once.
    QList<TextEncoding> listed = commonEncodings();
    const QList<EncodingGroup> groups = encodingMenuGroups();
    const bool inGroups = std::any_of(groups.begin(), groups.end(), [&](const EncodingGroup &g) {
        return g.encodings.contains(selected);
    });
    if (!listed.contains(selected) && !inGroups) {
        popup->addItem(selected.label(), selected.id());
        popup->insertSeparator(popup->count());
    }
    for (const TextEncoding &encoding : listed)
        popup->addItem(encoding.label(), encoding.id());
    auto *model = qobject_cast<QStandardItemModel *>(popup->model());
    for (const EncodingGroup &group : groups) {
        popup->insertSeparator(popup->count());
        popup->addItem(group.title);
        if (QStandardItem *title = model ? model->item(popup->count() - 1) : nullptr) {
            title->setFlags(Qt::NoItemFlags);
            QFont bold = title->font();
            bold.setBold(true);
            title->setFont(bold);
        }
        for (const TextEncoding &encoding : group.encodings) {
            if (listed.contains(encoding))
                continue;
            listed.append(encoding);
            popup->addItem(encoding.label(), encoding.id());
        }
    }
    popup->setCurrentIndex(popup->findData(selected.id()));
}

void EncodingChoices::fillLineEndingPopup(QComboBox *popup, LineEnding selected)
{
    popup->clear();
    for (LineEnding ending : kLineEndings)
        popup->addItem(lineEndingLabel(ending), toString(ending));
    popup->setCurrentIndex(popup->findData(toString(selected)));
}

} // namespace mirtex
