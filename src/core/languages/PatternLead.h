// What every match of a highlighting pattern starts with, read from the pattern's text, so that
// the tokenizer can skip to the candidates with a plain character search.
#pragma once

#include <QStringView>

#include <optional>

namespace mirtex {

// The ASCII character every match of the ICU pattern `pattern` starts with, when the pattern says
// so plainly: after any leading look-behind groups, a literal character (or an escaped
// punctuation mark) that no quantifier makes optional, with no alternation at the top level and
// no inline flags. Nothing when the pattern is anything else; the caller then searches with the
// pattern alone. A match of such a pattern can only start where that character is.
std::optional<char16_t> leadingLiteral(QStringView pattern);

} // namespace mirtex
