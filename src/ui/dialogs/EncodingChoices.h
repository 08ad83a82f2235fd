// The encodings and line endings offered to the user, as labels and pop-ups (the save panel);
// the Encoding menus lay out the same choices as commands.
#pragma once

#include "core/document/LineEnding.h"
#include "core/document/TextEncoding.h"

#include <QList>
#include <QString>

#include <array>

class QComboBox;

namespace mirtex {

class EncodingChoices
{
public:
    static constexpr std::array<LineEnding, 3> kLineEndings
        = {LineEnding::lf, LineEnding::crlf, LineEnding::cr};

    static QString lineEndingLabel(LineEnding ending);
    // Fills a pop-up with every encoding of the menus, grouped as the encoding menu is (the
    // common ones, then each region under a title that cannot be chosen); each encoding's item
    // has its identifier as data, titles and separators have none.
    static void fillEncodingPopup(QComboBox *popup, TextEncoding selected);
    static void fillLineEndingPopup(QComboBox *popup, LineEnding selected);
};

} // namespace mirtex
