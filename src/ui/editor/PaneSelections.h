// Reading and setting every selection of one pane in UTF-16 units.
#pragma once

#include "core/text/Selections.h"

class QsciScintillaBase;

namespace mirtex {

class TextPositions;

Selections readSelections(QsciScintillaBase *pane, const TextPositions &positions);

// Offsets are clamped into the text. Several selections switch the pane's multiple selection on.
void writeSelections(QsciScintillaBase *pane,
                     const TextPositions &positions,
                     const Selections &selections);

} // namespace mirtex
