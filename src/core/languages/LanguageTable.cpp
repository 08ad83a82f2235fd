// Languages 1-14 of the built-in table (text to json): names, detection data, comments, rules.
#include "core/languages/LanguageTable.h"

namespace mirtex::languagetable {

namespace {
using K = TokenKind;

LanguageDefinition text()
{
    return {.id = QStringLiteral("text"),
            .name = QT_TRANSLATE_NOOP("Language", "Testo normale"),
            .extensions = split("txt text")};
}

LanguageDefinition batch()
{
    return {.id = QStringLiteral("batch"),
            .name = "Batch",
            .extensions = split("bat cmd nt"),
            .lineComment = QStringLiteral("REM "),
            .rules = {
                rule(K::comment, R"((?i:^[ \t]*(?:@?rem\b.*|::.*)))"),
                rule(K::preprocessor, R"(^[ \t]*:[\w.-]+)"),
                rule(K::variable, R"(%[\w~:#$*.-]+%|%%?~?\w|![\w.-]+!)"),
                doubleQuotedString(),
                words(K::keyword,
                      "echo set if else goto call exit for in do not exist defined errorlevel equ "
                      "neq lss leq gtr geq setlocal endlocal enabledelayedexpansion pause shift "
                      "start cd chdir dir copy xcopy robocopy move del erase mkdir md rmdir rd cls "
                      "title type ren rename pushd popd choice off on nul con",
                      true),
                number(),
            }};
}

LanguageDefinition c()
{
    return {.id = QStringLiteral("c"),
            .name = "C",
            .extensions = split("c"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {cBlockComment(),
                      slashLineComment(),
                      cPreprocessor(),
                      doubleQuotedString(),
                      characterLiteral(),
                      number(),
                      words(K::keyword, kCKeywords),
                      words(K::type, kCTypes)}};
}

LanguageDefinition cpp()
{
    return {.id = QStringLiteral("cpp"),
            .name = "C++",
            .extensions = split("cpp cc cxx c++ hpp hh hxx h inl ino tpp"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules
            = {cBlockComment(),
               slashLineComment(),
               cPreprocessor(),
               rule(K::string, R"re(R"[^(\s"]*\([\s\S]*?\)[^)\s"]*")re"),
               doubleQuotedString(),
               characterLiteral(),
               number(),
               extendedWords(
                   K::keyword,
                   kCKeywords,
                   "alignas alignof and and_eq asm bitand bitor catch class compl concept "
                   "consteval constexpr constinit const_cast co_await co_return co_yield "
                   "decltype delete dynamic_cast explicit export friend mutable namespace new "
                   "noexcept not not_eq nullptr operator or or_eq override final private "
                   "protected public reinterpret_cast requires static_assert static_cast "
                   "template this thread_local throw try typeid typename using virtual xor "
                   "xor_eq"),
               extendedWords(K::type,
                             kCTypes,
                             "std string wstring string_view vector map unordered_map set "
                             "unordered_set list deque array pair tuple optional variant "
                             "unique_ptr shared_ptr weak_ptr function char8_t char16_t "
                             "char32_t")}};
}

LanguageDefinition csharp()
{
    return {.id = QStringLiteral("csharp"),
            .name = "C#",
            .extensions = split("cs csx"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                cPreprocessor(),
                rule(K::string, R"re(\$?@"(?:[^"]|"")*"?)re"),
                rule(K::string, R"re(\$?"(?:[^"\\\n]|\\.)*"?)re"),
                characterLiteral(),
                number(),
                words(K::keyword,
                      "abstract as base break case catch checked class const continue default "
                      "delegate do else enum event explicit extern false finally fixed for foreach "
                      "goto if implicit in interface internal is lock namespace new null operator "
                      "out override params private protected public readonly ref return sealed "
                      "sizeof stackalloc static struct switch this throw true try typeof unchecked "
                      "unsafe using virtual volatile while add alias async await by descending "
                      "equals from get group init into join let nameof notnull on orderby record "
                      "remove required select set unmanaged value var when where with yield file "
                      "scoped global partial"),
                words(K::type,
                      "bool byte char decimal double float int long object sbyte short string uint "
                      "ulong ushort void dynamic nint nuint String Object Int32 Int64 Boolean Task "
                      "List Dictionary IEnumerable Action Func Span DateTime Guid"),
                rule(K::preprocessor, R"(\[[A-Z]\w*(?:\([^)\n]*\))?\])"),
            }};
}

LanguageDefinition css()
{
    return {
        .id = QStringLiteral("css"),
        .name = "CSS",
        .extensions = split("css scss sass less"),
        .lineComment = QStringLiteral("//"),
        .blockComment = pair("/*", "*/"),
        .rules = {
            cBlockComment(),
            rule(K::comment, R"((?<!:)//.*)"),
            doubleQuotedString(),
            singleQuotedString(),
            rule(K::preprocessor, R"(@[\w-]+)"),
            rule(K::number, R"(#[0-9a-fA-F]{3,8}(?![\w-]))"),
            rule(K::variable, R"((?:\$|--)[\w-]+)"),
            rule(K::attribute, R"([\w-]+(?=[ \t]*:(?!:)[^{;\n]*(?:;|$|\})))"),
            rule(K::type, R"([.#][A-Za-z_][\w-]*)"),
            rule(
                K::number,
                R"(-?(?:\d+\.?\d*|\.\d+)(?:px|em|rem|%|vh|vw|vmin|vmax|s|ms|deg|rad|turn|pt|pc|cm|mm|in|ex|ch|fr|dpi|dppx)?(?![\w-]))"),
            rule(K::keyword, R"(!important)"),
            rule(K::tag, R"(::?[\w-]+)"),
        }};
}

LanguageDefinition diff()
{
    return {.id = QStringLiteral("diff"),
            .name = "Diff",
            .extensions = split("diff patch"),
            .rules = {
                rule(K::meta, R"(^(?:diff |index |--- |\+\+\+ |Index: |=====).*)"),
                rule(K::preprocessor, R"(^@@.*)"),
                rule(K::added, R"(^[+>].*)"),
                rule(K::removed, R"(^[-<].*)"),
                rule(K::type, R"(^!.*)"),
            }};
}

LanguageDefinition dockerfile()
{
    return {
        .id = QStringLiteral("dockerfile"),
        .name = "Dockerfile",
        .extensions = split("dockerfile"),
        .fileNames = split("dockerfile containerfile"),
        .lineComment = QStringLiteral("#"),
        .rules = {
            hashComment(),
            rule(
                K::keyword,
                R"((?i:^[ \t]*(?:FROM|RUN|CMD|LABEL|MAINTAINER|EXPOSE|ENV|ADD|COPY|ENTRYPOINT|VOLUME|USER|WORKDIR|ARG|ONBUILD|STOPSIGNAL|HEALTHCHECK|SHELL)\b))"),
            words(K::keyword, "AS as"),
            rule(K::variable, R"(\$\{?\w+\}?)"),
            doubleQuotedString(),
            singleQuotedString(),
            number(),
        }};
}

LanguageDefinition go()
{
    return {.id = QStringLiteral("go"),
            .name = "Go",
            .extensions = split("go"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                doubleQuotedString(),
                rule(K::string, R"(`[^`]*`?)"),
                characterLiteral(),
                number(),
                words(K::keyword,
                      "break case chan const continue default defer else fallthrough for func go "
                      "goto if import interface map package range return select struct switch type "
                      "var true false nil iota"),
                words(K::type,
                      "bool byte complex64 complex128 error float32 float64 int int8 int16 int32 "
                      "int64 rune string uint uint8 uint16 uint32 uint64 uintptr any comparable "
                      "append cap clear close complex copy delete imag len make max min new panic "
                      "print println recover"),
            }};
}

LanguageDefinition html()
{
    return {.id = QStringLiteral("html"),
            .name = "HTML",
            .extensions = split("html htm xhtml shtml vue svelte php3 asp aspx jsp erb hbs"),
            .blockComment = pair("<!--", "-->"),
            .rules = {
                rule(K::comment, R"(<!--[\s\S]*?(?:-->|\z))"),
                rule(K::preprocessor, R"((?i:<!DOCTYPE[^>]*>))"),
                rule(K::tag, R"(</?[A-Za-z][\w:.-]*|/?>)"),
                rule(K::attribute, R"((?<=\s)[A-Za-z_:@][\w:.@-]*(?=\s*=))"),
                doubleQuotedString(),
                singleQuotedString(),
                rule(K::number, R"(&#?\w+;)"),
            }};
}

LanguageDefinition ini()
{
    return {.id = QStringLiteral("ini"),
            .name = QT_TRANSLATE_NOOP("Language", "INI / Configurazione"),
            .extensions = split("ini cfg conf properties prop inf reg editorconfig gitconfig env"),
            .fileNames = split(".gitignore .gitattributes .npmrc .env hosts"),
            .lineComment = QStringLiteral(";"),
            .rules = {
                rule(K::comment, R"(^[ \t]*[;#!].*)"),
                rule(K::heading, R"(^[ \t]*\[[^\]\n]*\])"),
                rule(K::attribute, R"(^[ \t]*[^=:;#!\s\[][^=:\n]*?(?=[ \t]*[=:]))"),
                doubleQuotedString(),
                number(),
            }};
}

LanguageDefinition java()
{
    return {.id = QStringLiteral("java"),
            .name = "Java",
            .extensions = split("java groovy gradle"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                rule(K::string, R"re("""[\s\S]*?(?:"""|\z))re"),
                doubleQuotedString(),
                characterLiteral(),
                annotation(),
                number(),
                words(K::keyword,
                      "abstract assert break case catch class const continue default do else enum "
                      "extends final finally for goto if implements import instanceof interface "
                      "native new package private protected public return static strictfp super "
                      "switch synchronized this throw throws transient try volatile while true "
                      "false null var record sealed permits yield def"),
                words(K::type,
                      "boolean byte char double float int long short void String Object Integer "
                      "Long Double Float Boolean Character Byte Short List ArrayList Map HashMap "
                      "Set HashSet Optional Exception RuntimeException Thread StringBuilder System "
                      "Math"),
            }};
}

QList<LanguageRule> javaScriptRules(const char *extraKeywords, const char *extraTypes)
{
    QList<LanguageRule> rules{cBlockComment(),
                              slashLineComment(),
                              doubleQuotedString(),
                              singleQuotedString(),
                              backtickString()};
    if (*extraKeywords)
        rules.append(annotation()); // TypeScript decorators
    rules.append(number());
    rules.append(extendedWords(K::keyword, kJavaScriptKeywords, extraKeywords));
    rules.append(extendedWords(K::type, kJavaScriptTypes, extraTypes));
    return rules;
}

LanguageDefinition javascript()
{
    return {.id = QStringLiteral("javascript"),
            .name = "JavaScript",
            .extensions = split("js mjs cjs jsx es6"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules = javaScriptRules("", "")};
}

LanguageDefinition json()
{
    return {.id = QStringLiteral("json"),
            .name = "JSON",
            .extensions = split("json jsonc json5 geojson webmanifest babelrc eslintrc"),
            .lineComment = QStringLiteral("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                rule(K::attribute, R"re("(?:[^"\\\n]|\\.)*"(?=\s*:))re"),
                doubleQuotedString(),
                number(),
                words(K::keyword, "true false null"),
            }};
}
} // namespace

QList<LanguageRule> typeScriptRules()
{
    return javaScriptRules(
        "abstract as asserts declare enum implements infer interface is keyof module namespace "
        "never private protected public readonly type unique override satisfies accessor",
        "any bigint boolean number object string symbol unknown void Record Partial Required "
        "Readonly Pick Omit ReturnType");
}

QList<LanguageDefinition> firstLanguages()
{
    return {text(),
            batch(),
            c(),
            cpp(),
            csharp(),
            css(),
            diff(),
            dockerfile(),
            go(),
            html(),
            ini(),
            java(),
            javascript(),
            json()};
}

} // namespace mirtex::languagetable
