// One highlighting rule of a language: a token kind and the ICU pattern that finds it.
#pragma once

#include "core/languages/TokenKind.h"

#include <QString>
#include <QStringList>
#include <QStringView>

namespace mirtex {

struct LanguageRule
{
    TokenKind kind = TokenKind::comment;
    QString pattern;   // ICU regular expression syntax
    QStringList words; // non-empty only for rules built from a word list

    // A rule matching any of the blank-separated words as a whole word: a word counts only when
    // neither preceded nor followed by a letter, digit, "_" or "$".
    static LanguageRule fromWords(TokenKind kind, QStringView words, bool caseInsensitive = false);

    friend bool operator==(const LanguageRule &, const LanguageRule &) = default;
};

} // namespace mirtex
