// Languages 15-24 of the built-in table (kotlin to python): names, detection data, comments, rules.
#include "core/languages/LanguageTable.h"

namespace mirtex::languagetable {

namespace {
using K = TokenKind;

std::optional<QString> comment(const char *token)
{
    return QString::fromLatin1(token);
}

LanguageDefinition kotlin()
{
    return {.id = QStringLiteral("kotlin"),
            .name = "Kotlin",
            .extensions = split("kt kts"),
            .lineComment = comment("//"),
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
                      "as break class continue do else false for fun if in interface is null "
                      "object package return super this throw true try typealias typeof val var "
                      "when while by catch constructor delegate dynamic field file finally get "
                      "import init param property receiver set setparam where actual abstract "
                      "annotation companion const crossinline data enum expect external final "
                      "infix inline inner internal lateinit noinline open operator out override "
                      "private protected public reified sealed suspend tailrec vararg value"),
                words(K::type,
                      "Int Long Short Byte Double Float Boolean Char String Unit Nothing Any Array "
                      "List MutableList Map MutableMap Set MutableSet Sequence Pair"),
            }};
}

LanguageDefinition log()
{
    return {
        .id = QStringLiteral("log"),
        .name = QT_TRANSLATE_NOOP("Language", "File di log"),
        .extensions = split("log out"),
        .rules = {
            rule(
                K::removed,
                R"((?i:\b(?:error|err|fatal|critical|crit|severe|exception|fail(?:ed|ure)?|panic)\b))"),
            rule(K::type, R"((?i:\b(?:warn(?:ing)?)\b))"),
            rule(K::added, R"((?i:\b(?:info|notice|ok|success(?:ful)?|done|passed)\b))"),
            rule(K::comment, R"((?i:\b(?:debug|trace|verbose)\b))"),
            rule(
                K::number,
                R"(\d{4}-\d{2}-\d{2}(?:[T ]\d{2}:\d{2}(?::\d{2}(?:[.,]\d+)?)?(?:Z|[+-]\d{2}:?\d{2})?)?|\b\d{2}:\d{2}:\d{2}(?:[.,]\d+)?\b)"),
            doubleQuotedString(),
            rule(K::link, R"(https?://\S+)"),
            number(),
        }};
}

LanguageDefinition lua()
{
    return {.id = QStringLiteral("lua"),
            .name = "Lua",
            .extensions = split("lua"),
            .lineComment = comment("--"),
            .blockComment = pair("--[[", "]]"),
            .rules = {
                rule(K::comment, R"(--\[=*\[[\s\S]*?(?:\]=*\]|\z))"),
                rule(K::comment, R"(--.*)"),
                rule(K::string, R"(\[=*\[[\s\S]*?(?:\]=*\]|\z))"),
                doubleQuotedString(),
                singleQuotedString(),
                number(),
                words(K::keyword,
                      "and break do else elseif end false for function goto if in local nil not "
                      "or repeat return then true until while"),
                words(K::type,
                      "print pairs ipairs table string math io os type tostring tonumber require "
                      "pcall error assert setmetatable getmetatable rawget rawset select next "
                      "unpack coroutine utf8 self"),
            }};
}

LanguageDefinition makefile()
{
    return {
        .id = QStringLiteral("makefile"),
        .name = "Makefile",
        .extensions = split("mk mak make"),
        .fileNames = split("makefile gnumakefile"),
        .lineComment = comment("#"),
        .rules = {
            hashComment(),
            rule(K::variable, R"(\$\([^)\n]*\)|\$\{[^}\n]*\}|\$[@<^+?*%])"),
            rule(
                K::keyword,
                R"(^[ \t]*(?:include|-include|sinclude|ifeq|ifneq|ifdef|ifndef|else|endif|define|endef|export|unexport|override|vpath)\b)"),
            rule(K::attribute, R"(^[ \t]*[\w.-]+(?=[ \t]*[:?+!]?=))"),
            rule(K::tag, R"(^[\w./%$()-][\w./%$() -]*(?=[ \t]*::?(?!=)))"),
            doubleQuotedString(),
            singleQuotedString(),
        }};
}

LanguageDefinition markdown()
{
    return {
        .id = QStringLiteral("markdown"),
        .name = "Markdown",
        .extensions = split("md markdown mdown mkd mdx"),
        .blockComment = pair("<!--", "-->"),
        .rules = {
            rule(K::string, R"(^[ \t]*```[\s\S]*?(?:^[ \t]*```|\z))"),
            rule(K::comment, R"(<!--[\s\S]*?(?:-->|\z))"),
            rule(K::heading, R"(^#{1,6}[ \t].*|^.+\n(?:=+|-+)[ \t]*$)"),
            rule(K::comment, R"(^[ \t]*>.*)"),
            rule(K::meta, R"(^[ \t]*(?:-{3,}|\*{3,}|_{3,})[ \t]*$)"),
            rule(K::keyword, R"(^[ \t]*(?:[-*+]|\d+[.)])(?=[ \t]))"),
            rule(K::string, R"(`[^`\n]+`)"),
            rule(K::link, R"(!?\[[^\]\n]*\]\([^)\n]*\)|<https?://[^>\n]+>|https?://[^\s)>\]]+)"),
            rule(K::emphasis, R"(\*\*[^*\n]+\*\*|__[^_\n]+__)"),
            rule(K::variable,
                 R"((?<![*\w])\*[^*\s][^*\n]*\*(?!\*)|(?<![_\w])_[^_\s][^_\n]*_(?![_\w]))"),
        }};
}

LanguageDefinition objc()
{
    return {
        .id = QStringLiteral("objc"),
        .name = "Objective-C",
        .extensions = split("m mm"),
        .lineComment = comment("//"),
        .blockComment = pair("/*", "*/"),
        .rules = {
            cBlockComment(),
            slashLineComment(),
            cPreprocessor(),
            rule(K::string, R"re(@?"(?:[^"\\\n]|\\.)*"?)re"),
            characterLiteral(),
            number(),
            rule(
                K::keyword,
                R"(@(?:interface|implementation|end|property|synthesize|dynamic|protocol|optional|required|class|selector|encode|try|catch|finally|throw|autoreleasepool|import|public|private|protected|package)\b)"),
            extendedWords(K::keyword,
                          kCKeywords,
                          "self super nil Nil YES NO id instancetype nonatomic atomic strong weak "
                          "copy assign retain readonly readwrite nullable nonnull"),
            extendedWords(K::type,
                          kCTypes,
                          "NSString NSArray NSDictionary NSNumber NSInteger NSUInteger CGFloat "
                          "BOOL NSObject"),
        }};
}

LanguageDefinition perl()
{
    return {.id = QStringLiteral("perl"),
            .name = "Perl",
            .extensions = split("pl pm t pod"),
            .lineComment = comment("#"),
            .rules = {
                rule(K::preprocessor, R"(\A#!.*)"),
                rule(K::comment, R"(^=[a-zA-Z][\s\S]*?(?:^=cut\b.*|\z))"),
                hashComment(),
                doubleQuotedString(),
                singleQuotedString(),
                rule(K::variable, R"([$@%][\w:]+|\$[^\w\s{])"),
                number(),
                words(K::keyword,
                      "my our local sub if elsif else unless while until for foreach do last next "
                      "redo return use no require package BEGIN END print printf say die warn eval "
                      "defined undef ref bless shift push pop unshift splice keys values each "
                      "exists delete open close chomp chop split join map grep sort reverse scalar "
                      "wantarray and or not eq ne lt gt le ge cmp qw q qq qr"),
            }};
}

LanguageDefinition php()
{
    return {.id = QStringLiteral("php"),
            .name = "PHP",
            .extensions = split("php phtml php4 php5 phps inc"),
            .lineComment = comment("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                rule(K::comment, R"(#(?!\[).*)"),
                rule(K::preprocessor, R"(<\?(?:php|=)?|\?>)"),
                doubleQuotedString(),
                singleQuotedString(),
                rule(K::variable, R"(\$\w+)"),
                number(),
                words(K::keyword,
                      "abstract and array as break callable case catch class clone const continue "
                      "declare default do echo else elseif empty enddeclare endfor endforeach "
                      "endif endswitch endwhile enum eval exit extends final finally fn for "
                      "foreach function global goto if implements include include_once instanceof "
                      "insteadof interface isset list match namespace new or print private "
                      "protected public readonly require require_once return static switch throw "
                      "trait try unset use var while xor yield true false null self parent",
                      true),
                words(K::type, "int float bool string void mixed object iterable never"),
            }};
}

LanguageDefinition powershell()
{
    return {
        .id = QStringLiteral("powershell"),
        .name = "PowerShell",
        .extensions = split("ps1 psm1 psd1"),
        .lineComment = comment("#"),
        .blockComment = pair("<#", "#>"),
        .rules = {
            rule(K::comment, R"(<#[\s\S]*?(?:#>|\z))"),
            hashComment(),
            rule(K::string, R"re(@"[\s\S]*?^"@|@'[\s\S]*?^'@)re"),
            doubleQuotedString(),
            rule(K::string, R"('(?:[^'\n]|'')*'?)"),
            rule(K::variable, R"(\$[\w:?]+|\$\{[^}\n]+\})"),
            rule(
                K::keyword,
                R"((?i:-(?:eq|ne|gt|ge|lt|le|like|notlike|match|notmatch|contains|notcontains|in|notin|replace|and|or|not|xor|is|isnot|as|band|bor|f)\b))"),
            words(K::keyword,
                  "begin break catch class continue data define do dynamicparam else elseif end "
                  "enum exit filter finally for foreach from function hidden if in inlinescript "
                  "param parallel process return sequence static switch throw trap try until "
                  "using var while workflow",
                  true),
            rule(K::type, R"(\b[A-Z][a-zA-Z]+-[A-Z][a-zA-Z]+\b|\[[\w.]+(?:\[\])?\])"),
            number(),
        }};
}

LanguageDefinition python()
{
    return {
        .id = QStringLiteral("python"),
        .name = "Python",
        .extensions = split("py pyw pyi pyx gyp"),
        .fileNames = split("sconstruct sconscript"),
        .lineComment = comment("#"),
        .rules = {
            rule(K::string, R"re((?i:[rbuf]{0,2})"""[\s\S]*?(?:"""|\z))re"),
            rule(K::string, R"re((?i:[rbuf]{0,2})'''[\s\S]*?(?:'''|\z))re"),
            hashComment(),
            rule(K::string, R"re((?i:[rbuf]{0,2})"(?:[^"\\\n]|\\.)*"?)re"),
            rule(K::string, R"re((?i:[rbuf]{0,2})'(?:[^'\\\n]|\\.)*'?)re"),
            rule(K::preprocessor, R"(^[ \t]*@[\w.]+)"),
            number(),
            words(K::keyword,
                  "False None True and as assert async await break class continue def del elif "
                  "else except finally for from global if import in is lambda nonlocal not or "
                  "pass raise return try while with yield match case self cls"),
            words(K::type,
                  "abs all any bin bool bytearray bytes callable chr classmethod compile complex "
                  "dict dir divmod enumerate eval exec filter float format frozenset getattr "
                  "globals hasattr hash help hex id input int isinstance issubclass iter len list "
                  "locals map max min next object oct open ord pow print property range repr "
                  "reversed round set setattr slice sorted staticmethod str sum super tuple type "
                  "vars zip Exception ValueError TypeError KeyError IndexError AttributeError "
                  "RuntimeError StopIteration OSError NotImplementedError"),
        }};
}
} // namespace

QList<LanguageDefinition> middleLanguages()
{
    return {kotlin(),
            log(),
            lua(),
            makefile(),
            markdown(),
            objc(),
            perl(),
            php(),
            powershell(),
            python()};
}

} // namespace mirtex::languagetable
