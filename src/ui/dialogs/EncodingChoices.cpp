#include "ui/dialogs/EncodingChoices.h"

#include "core/document/EncodingMenu.h"

#include <QComboBox>
#include <QCoreApplication>

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
    QList<TextEncoding> all = commonEncodings();
    for (const EncodingGroup &group : encodingMenuGroups()) {
        for (const TextEncoding &encoding : group.encodings) {
            if (!all.contains(encoding))
                all.append(encoding);
        }
    }
    if (!all.contains(selected))
        all.prepend(selected);
    for (const TextEncoding &encoding : all)
        popup->addItem(encoding.label(), encoding.id());
    popup->setCurrentIndex(int(all.indexOf(selected)));
}

void EncodingChoices::fillLineEndingPopup(QComboBox *popup, LineEnding selected)
{
    popup->clear();
    for (LineEnding ending : kLineEndings)
        popup->addItem(lineEndingLabel(ending), toString(ending));
    popup->setCurrentIndex(popup->findData(toString(selected)));
}

} // namespace mirtex
