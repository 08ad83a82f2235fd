// Toggling line and block comments with a language's tokens, at every selection. Pure functions:
// the result is an EditBatch whose label the caller sets; an empty batch changes nothing.
#pragma once

#include "core/text/EditBatch.h"

#include <QString>
#include <QStringView>

namespace mirtex {

// Comments or uncomments every line the selections touch, as one set. Blank lines are never
// changed. When every other line starts (after its indentation) with `token`, the token and one
// space after it are removed; otherwise "token " goes in after the smallest indentation of those
// lines, so the tokens line up. Empty when every touched line is blank.
EditBatch toggleLineComment(QStringView text, const Selections &selections, const QString &token);

// Wraps each selection (an empty one: the whole lines it is on) in "start text end", or unwraps it
// when its text, trimmed of white space, already starts with `start` and ends with `end`; one
// space inside each token goes with it. The new text of each range ends up selected.
EditBatch toggleBlockComment(QStringView text,
                             const Selections &selections,
                             const QString &start,
                             const QString &end);

} // namespace mirtex
