// The built-in language table as data, split in three files, and the rules several languages share.
#pragma once

#include "core/languages/Language.h"

#include <QCoreApplication>

namespace mirtex::languagetable {

// Languages 1-14 (text to json), 15-24 (kotlin to python) and 25-34 (ruby to yaml), in menu order.
QList<LanguageDefinition> firstLanguages();
QList<LanguageDefinition> middleLanguages();
QList<LanguageDefinition> lastLanguages();
// JavaScript's rules with TypeScript's decorators and extra words.
QList<LanguageRule> typeScriptRules();

inline LanguageRule rule(TokenKind kind, const char *pattern)
{
    return LanguageRule{kind, QString::fromLatin1(pattern), {}};
}

inline LanguageRule words(TokenKind kind, const char *list, bool caseInsensitive = false)
{
    return LanguageRule::fromWords(kind, QString::fromLatin1(list), caseInsensitive);
}

// A word rule whose list is base followed by extra (a language extending a relative's words).
inline LanguageRule extendedWords(TokenKind kind, const char *base, const char *extra)
{
    const QString list = QString::fromLatin1(base) + u' ' + QString::fromLatin1(extra);
    return LanguageRule::fromWords(kind, list);
}

inline QStringList split(const char *blankSeparated)
{
    return QString::fromLatin1(blankSeparated).split(u' ', Qt::SkipEmptyParts);
}

inline std::pair<QString, QString> pair(const char *opener, const char *closer)
{
    return {QString::fromLatin1(opener), QString::fromLatin1(closer)};
}

// Rules reused by several languages.
inline LanguageRule slashLineComment()
{
    return rule(TokenKind::comment, R"(//.*)");
}

inline LanguageRule cBlockComment()
{
    return rule(TokenKind::comment, R"(/\*[\s\S]*?(?:\*/|\z))");
}

inline LanguageRule hashComment()
{
    return rule(TokenKind::comment, R"(#.*)");
}

inline LanguageRule hashCommentAfterBlank()
{
    return rule(TokenKind::comment, R"((?:^|(?<=[ \t]))#.*)");
}

inline LanguageRule doubleQuotedString()
{
    return rule(TokenKind::string, R"re("(?:[^"\\\n]|\\.)*"?)re");
}

inline LanguageRule singleQuotedString()
{
    return rule(TokenKind::string, R"re('(?:[^'\\\n]|\\.)*'?)re");
}

inline LanguageRule backtickString()
{
    return rule(TokenKind::string, R"re(`(?:[^`\\]|\\.)*`?)re");
}

inline LanguageRule characterLiteral()
{
    return rule(TokenKind::string, R"re('(?:[^'\\\n]|\\.{1,8})')re");
}

inline LanguageRule number()
{
    return rule(
        TokenKind::number,
        R"re((?<![\w.$])(?:0[xX][0-9a-fA-F_]+|0[bB][01_]+|0[oO][0-7_]+|\d[\d_]*(?:\.\d[\d_]*)?(?:[eE][+-]?\d+)?)[uUlLfFdDmMnN]*(?![\w$]))re");
}

inline LanguageRule cPreprocessor()
{
    return rule(TokenKind::preprocessor, R"(^[ \t]*#[ \t]*[a-zA-Z]+)");
}

inline LanguageRule annotation()
{
    return rule(TokenKind::preprocessor, R"(@[A-Za-z_][\w.]*)");
}

// Word lists extended by related languages.
inline constexpr const char *kCKeywords
    = "auto break case char const continue default do double else enum extern float for goto if "
      "inline int long register restrict return short signed sizeof static struct switch typedef "
      "union unsigned void volatile while _Bool _Complex _Atomic _Noreturn _Static_assert "
      "_Thread_local true false NULL bool";
inline constexpr const char *kCTypes
    = "size_t ssize_t ptrdiff_t intptr_t uintptr_t int8_t int16_t int32_t int64_t uint8_t "
      "uint16_t uint32_t uint64_t wchar_t FILE va_list";
inline constexpr const char *kJavaScriptKeywords
    = "break case catch class const continue debugger default delete do else export extends "
      "finally for from function get if import in instanceof let new of return set static super "
      "switch this throw try typeof var void while with yield async await true false null "
      "undefined NaN Infinity";
inline constexpr const char *kJavaScriptTypes
    = "Array ArrayBuffer BigInt Boolean Date Error Function JSON Map Math Number Object Promise "
      "Proxy Reflect RegExp Set String Symbol WeakMap WeakSet console window document globalThis "
      "require module exports process";

} // namespace mirtex::languagetable
