// The rules that turn a remembered session back into tabs and that need no view: clamping what
// no longer fits the text and naming untitled tabs.
#pragma once

#include "core/document/SessionState.h"
#include "core/text/TextRange.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace mirtex::SessionRestore {

// The selection moved inside [0, textLength] (UTF-16 units), keeping as much of it as fits.
TextRange clampSelection(TextRange selection, qsizetype textLength);

// Number of lines of a text: one more than its line breaks (LF, CRLF or CR each count once).
qsizetype lineCountOf(QStringView text);

// The bookmarked line indexes (from 0) that exist in a text of lineCount lines, ascending and
// without repeats.
QList<qsizetype> bookmarksWithin(const QList<qsizetype> &lineIndexes, qsizetype lineCount);

// The tab to select among tabCount restored tabs; nullopt when none was restored.
std::optional<qsizetype> clampSelected(qsizetype selected, qsizetype tabCount);

// Gives every entry without path and without untitledName a name of its own, after the names
// the other entries already carry.
void nameUntitledEntries(QList<SessionState::Entry> &entries);

} // namespace mirtex::SessionRestore
