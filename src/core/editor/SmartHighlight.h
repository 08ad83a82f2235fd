// Finding the other whole-word occurrences of the selected word ("smart" highlighting).
#pragma once

#include "core/text/TextRange.h"

#include <QString>
#include <QStringView>

#include <stop_token>
#include <vector>

namespace mirtex {

inline constexpr qsizetype kSmartWordMaxLength = 199;
inline constexpr qsizetype kSmartRangesLimit = 5000;

// A selection qualifies when it is 1 to 199 UTF-16 units of letters, marks, digits and "_"
// (well-formed UTF-16: a lone surrogate disqualifies it).
bool isSmartHighlightWord(QStringView word);

// The regular expression whose matches findSmartHighlights() enumerates: the word, quoted, with no
// letter, digit or "_" right before or after it (ICU syntax).
QString smartHighlightPattern(QStringView word);

// The whole-word occurrences of the selected text, in text order, without the selection itself,
// at most `limit` of them. Nothing when the selection does not qualify or lies outside the text.
// Gives the same ranges as enumerating smartHighlightPattern() with ICU, without its cost.
// Pure; safe on any thread with a shared snapshot. When `stop` is requested the search ends early
// and returns what it found so far, which the caller is expected to discard.
std::vector<TextRange> findSmartHighlights(QStringView text,
                                           TextRange selection,
                                           qsizetype limit = kSmartRangesLimit,
                                           std::stop_token stop = {});

} // namespace mirtex
