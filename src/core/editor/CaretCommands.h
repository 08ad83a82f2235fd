// Making and using several carets: the next or every occurrence of the selected text, a caret on
// the line above or below, and the clipboard with several selections. Pure functions.
#pragma once

#include "core/text/EditBatch.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

// The word (letters, digits, "_") around or just before an offset; empty range when none.
TextRange wordAt(QStringView text, qsizetype utf16Offset);

// With an empty main selection: the word at its caret, selected (nothing when there is no word).
// Otherwise the main selection's text is looked for after the last selection, wrapping round, and
// its next occurrence not yet selected is added as the new main selection; nothing when every one
// is selected already. Case-sensitive.
std::optional<Selections> addNextOccurrence(QStringView text, const Selections &selections);

// Every occurrence of the main selection's text (or of the word at the caret), selected; the one
// that was the main selection stays the main one. Nothing when there is nothing to look for.
std::optional<Selections> selectAllOccurrences(QStringView text, const Selections &selections);

// A caret on the line above the topmost selection (below the bottommost one), at the main caret's
// column clamped to that line, as the new main selection. Nothing at the first (last) line.
std::optional<Selections>
addCaretOnAdjacentLine(QStringView text, const Selections &selections, bool above);

// What copying several selections puts on the clipboard: their texts in text order, one line
// each (joined by LF). Empty selections are skipped.
QString textOfSelections(QStringView text, const Selections &selections);

// Pasting `clip` at several selections: when it holds as many lines as there are selections (a
// final line break aside), the first line replaces the first selection in text order and so on,
// each caret ending after its line. Nothing otherwise, or with one selection.
std::optional<EditBatch>
distributeLines(QStringView text, const Selections &selections, const QString &clip);

// Typing `typed` at every selection: each selection is replaced by it and the caret goes after it.
EditBatch typeAtSelections(const Selections &selections, const QString &typed);

// Backspace (`backwards`) or Delete at every selection: a selection loses its text, a caret the
// character before (after) it, a surrogate pair as one. Carets at the text's edge do nothing.
EditBatch deleteAtSelections(QStringView text, const Selections &selections, bool backwards);

} // namespace mirtex
