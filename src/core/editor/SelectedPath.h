// The file path a user points at with the selection or the caret, for "open the selected path".
#pragma once

#include "core/text/Selection.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

// The selected text, or with an empty selection the run of characters around the caret that
// paths are made of (stopping at white space, quotes, brackets and angle brackets). "file://"
// URLs become paths, "~/" the home folder, and a relative path is taken from `baseFolder` (empty:
// left relative). Nothing when there is nothing path-like. Does not look at the file system.
std::optional<QString> selectedPath(QStringView text,
                                    const Selection &selection,
                                    const QString &baseFolder,
                                    const QString &homeFolder);

} // namespace mirtex
