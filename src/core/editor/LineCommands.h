// Commands on whole lines at every selection: duplicate, delete, move up or down, join, insert a
// blank line, and the bookmarked lines' text and removal. Pure functions of the text (LF line
// breaks) and the selections; the caller names the batch. An empty batch means nothing changes.
#pragma once

#include "core/text/EditBatch.h"

#include <QStringView>

#include <vector>

namespace mirtex {

// An empty selection duplicates its lines (the caret goes to the copy below, same column), a
// non-empty one its text (the copy, right after it, ends up selected).
EditBatch duplicateLines(QStringView text, const Selections &selections);

// Deletes the lines the selections touch, with their line breaks; carets go to the start of the
// line that follows (or of the last line left).
EditBatch deleteLines(QStringView text, const Selections &selections);

// Moves the lines each selection touches one line up or down, past the neighbouring line. Nothing
// when a block already touches the first (up) or last (down) line.
EditBatch moveLines(QStringView text, const Selections &selections, bool up);

// Joins the lines a selection touches, or the caret's line with the next, into one: the line
// break and the white space around it become one space (none next to an empty line).
EditBatch joinLines(QStringView text, const Selections &selections);

// An empty line above or below each caret's line; the caret goes to it.
EditBatch insertBlankLine(QStringView text, const Selections &selections, bool above);

// Deletes the given lines (from 0, any order, out-of-range ones ignored) with their line breaks;
// the selections follow the text.
EditBatch deleteLineNumbers(QStringView text,
                            const Selections &selections,
                            std::vector<qsizetype> lineIndexes);

// The given lines in text order, each followed by a line break; out-of-range ones are ignored.
QString textOfLines(QStringView text, std::vector<qsizetype> lineIndexes);

} // namespace mirtex
