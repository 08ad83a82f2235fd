#include "ui/document/EncodingMenus.h"

#include "core/document/EncodingMenu.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QMenu>

namespace mirtex {

namespace {
constexpr LineEnding kEndings[] = {LineEnding::lf, LineEnding::crlf, LineEnding::cr};
}

QMenu *EncodingMenus::build(const QString &title,
                            QWidget *parent,
                            const std::function<void(TextEncoding)> &onChosen)
{
    auto *menu = new QMenu(title, parent);
    auto add = [&onChosen](QMenu *into, TextEncoding encoding) {
        QAction *action = into->addAction(encoding.label());
        action->setData(encoding.id());
        QObject::connect(
            action, &QAction::triggered, into, [onChosen, encoding]() { onChosen(encoding); });
    };
    for (const TextEncoding &encoding : commonEncodings())
        add(menu, encoding);
    menu->addSeparator();
    for (const EncodingGroup &group : encodingMenuGroups()) {
        QMenu *sub = menu->addMenu(group.title);
        for (const TextEncoding &encoding : group.encodings)
            add(sub, encoding);
    }
    return menu;
}

QString EncodingMenus::lineEndingLabel(LineEnding ending)
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

QMenu *EncodingMenus::buildLineEndings(const QString &title,
                                       QWidget *parent,
                                       const std::function<void(LineEnding)> &onChosen)
{
    auto *menu = new QMenu(title, parent);
    for (LineEnding ending : kEndings) {
        QAction *action = menu->addAction(lineEndingLabel(ending));
        action->setData(toString(ending));
        QObject::connect(
            action, &QAction::triggered, menu, [onChosen, ending]() { onChosen(ending); });
    }
    return menu;
}

void EncodingMenus::fillEncodingPopup(QComboBox *popup, TextEncoding selected)
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

void EncodingMenus::fillLineEndingPopup(QComboBox *popup, LineEnding selected)
{
    popup->clear();
    for (LineEnding ending : kEndings)
        popup->addItem(lineEndingLabel(ending), toString(ending));
    popup->setCurrentIndex(popup->findData(toString(selected)));
}

} // namespace mirtex
