// What a command changes in a text, as a value: replacements, the selections afterwards and the
// name of the undo step. Commands compute it with pure functions; the editor applies it as one
// undo step. An empty batch (no replacement) means "nothing to do".
#pragma once

#include "core/text/Selections.h"
#include "core/text/TextReplacement.h"

#include <QStringView>

#include <vector>

namespace mirtex {

// Invariant (see isWellFormed): replacements are sorted by location and never overlap, every
// range in the coordinates of the text before the batch. Insertions at the same offset land in
// list order; an insertion may sit at the end of the range replaced just before it.
struct EditBatch
{
    std::vector<TextReplacement> replacements;
    Selections selectionsAfter;
    QString undoLabel; // empty: an unnamed step, like typing

    bool isEmpty() const { return replacements.empty(); }
};

// Whether the replacements keep the invariant and lie inside a text of `textLength` units.
bool isWellFormed(const EditBatch &batch, qsizetype textLength);

// The text after the batch; `text` must be the one the batch was computed on. One pass over the
// text and the replacements.
QString applyEditBatch(QStringView text, const EditBatch &batch);

// The same for a part of a text that starts at `textStart` and holds every replacement.
QString applyReplacements(QStringView text,
                          const std::vector<TextReplacement> &replacements,
                          qsizetype textStart = 0);

// Where `selections` end up once `replacements` are applied. An offset before a replacement (or
// at the start of a non-empty one) stays put relative to the text before it; an offset inside or
// at the end of a replaced range, or at an insertion point, moves behind the new text.
Selections mapSelections(const Selections &selections,
                         const std::vector<TextReplacement> &replacements);

} // namespace mirtex
