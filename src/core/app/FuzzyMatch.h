// Fuzzy matching of a typed filter against command names, as the command palette filters: every
// character of the filter must appear in order (ignoring case); matches at word starts and runs
// of consecutive characters score higher.
#pragma once

#include <QStringView>

#include <optional>

namespace mirtex {

// Nothing when `filter` is not a subsequence of `candidate`; an empty filter matches with 0.
// Higher is better.
std::optional<int> fuzzyScore(QStringView filter, QStringView candidate);

} // namespace mirtex
