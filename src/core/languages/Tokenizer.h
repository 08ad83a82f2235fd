// Turning text into tokens with a language's joined expression, and the token-list invariant.
// Pure functions, safe on any thread (each call uses its own matcher).
#pragma once

#include "core/languages/Language.h"
#include "core/languages/Token.h"
#include "core/text/TextRange.h"

#include <QList>
#include <QStringView>

namespace mirtex {

// Tokens of text, sorted and never overlapping, offsets in UTF-16 units from the start of text.
// Empty for an empty text or a language without an expression.
QList<Token> tokenize(const Language &language, QStringView text);
// The same tokens, found by running the joined expression itself: the reference that tokenize,
// which scans rule by rule for speed, must always agree with.
QList<Token> tokenizeWithJoinedExpression(const Language &language, QStringView text);

// Every token has length >= 1, starts at or after the end of the previous one and ends at or
// before textLength. An empty list is valid.
bool tokensAreValid(const QList<Token> &tokens, qint64 textLength);

// A short text mixing the constructs of every language (comments, strings, numbers, tags,
// variables, non-BMP characters), used to check that each language yields valid tokens.
QString mixedSampleText();

} // namespace mirtex
