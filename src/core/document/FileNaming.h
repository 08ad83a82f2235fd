// Small rules of the document flows: untitled names, the large-file threshold, sizes as shown.
#pragma once

#include <QString>
#include <QStringList>

namespace mirtex {

// Files above this many bytes are opened only after the user agrees.
inline constexpr qint64 kLargeFileBytes = 200'000'000;

// "nuovo N" with the smallest N from 1 that no name in `inUse` has.
QString nextUntitledName(const QStringList &inUse);

// A byte count in decimal units as a file size, e.g. "250 MB", "1,5 GB" (the locale's separator).
QString formatFileSize(qint64 bytes);

} // namespace mirtex
