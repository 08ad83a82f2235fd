// The colours an editor pane paints with, resolved from the current theme.
#pragma once

#include "core/languages/TokenKind.h"

#include <QColor>

#include <array>

namespace mirtex {

struct EditorColors
{
    QColor background;
    QColor text;
    QColor caret;
    QColor selection;
    QColor currentLine;
    QColor gutter;
    QColor gutterText;
    QColor gutterCurrent;
    QColor invisibles;
    QColor smartHighlight;
    QColor braceMatch;
    QColor mark;
    QColor bookmark;
    std::array<QColor, kTokenKindCount> tokens;
    bool isDark = false;
};

} // namespace mirtex
