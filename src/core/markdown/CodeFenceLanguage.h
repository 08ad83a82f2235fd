// The language of a fenced code block's info word: the fence alias table first, then the languages
// by id, lower-cased name or file extension.
#pragma once

#include "core/languages/Language.h"

#include <span>
#include <utility>

namespace mirtex {

namespace CodeFenceLanguage {

// The fence names that stand for a language id (sh for shell, c++ for cpp, ...).
std::span<const std::pair<const char *, const char *>> aliases();

// The language of a fence word (compared lower-cased); null for an empty or unknown word and for
// plain text.
LanguagePtr find(QStringView word);

} // namespace CodeFenceLanguage

} // namespace mirtex
