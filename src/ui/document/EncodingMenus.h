// Menus of encodings (common ones first, then the groups) and of line endings; used by the
// Encoding menu, the status bar and the save panel.
#pragma once

#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QString>

#include <functional>

class QComboBox;
class QMenu;
class QWidget;

namespace mirtex {

class EncodingMenus
{
public:
    static QMenu *
    build(const QString &title, QWidget *parent, const std::function<void(TextEncoding)> &onChosen);
    static QMenu *buildLineEndings(const QString &title,
                                   QWidget *parent,
                                   const std::function<void(LineEnding)> &onChosen);
    static QString lineEndingLabel(LineEnding ending);
    // Fills a pop-up with the same encodings; each item's data is the encoding's identifier.
    static void fillEncodingPopup(QComboBox *popup, TextEncoding selected);
    static void fillLineEndingPopup(QComboBox *popup, LineEnding selected);
};

} // namespace mirtex
