// Languages 25-34 of the built-in table (ruby to yaml): names, detection data, comments, rules.
#include "core/languages/LanguageTable.h"

namespace mirtex::languagetable {

namespace {
using K = TokenKind;

std::optional<QString> comment(const char *token)
{
    return QString::fromLatin1(token);
}

LanguageDefinition ruby()
{
    return {.id = QStringLiteral("ruby"),
            .name = "Ruby",
            .extensions = split("rb rbw rake gemspec ru"),
            .fileNames = split("rakefile gemfile podfile fastfile brewfile"),
            .lineComment = comment("#"),
            .rules = {
                rule(K::comment, R"(^=begin\b[\s\S]*?(?:^=end\b.*|\z))"),
                hashComment(),
                doubleQuotedString(),
                singleQuotedString(),
                rule(K::type, R"((?<![:\w]):[A-Za-z_]\w*[?!]?)"),
                rule(K::variable, R"(@{1,2}\w+|\$\w+)"),
                number(),
                words(K::keyword,
                      "BEGIN END alias and begin break case class def defined? do else elsif end "
                      "ensure false for if in module next nil not or redo rescue retry return self "
                      "super then true undef unless until when while yield __method__ require "
                      "require_relative include extend attr_accessor attr_reader attr_writer "
                      "private protected public lambda proc puts raise loop"),
            }};
}

LanguageDefinition rust()
{
    return {.id = QStringLiteral("rust"),
            .name = "Rust",
            .extensions = split("rs"),
            .lineComment = comment("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                rule(K::string, R"re(b?r#*"[\s\S]*?"#*)re"),
                doubleQuotedString(),
                characterLiteral(),
                rule(K::preprocessor, R"(#!?\[[^\]\n]*\]|\b\w+!)"),
                number(),
                words(K::keyword,
                      "as async await break const continue crate dyn else enum extern false fn for "
                      "if impl in let loop match mod move mut pub ref return self Self static "
                      "struct super trait true type unsafe use where while abstract become box do "
                      "final macro override priv try typeof unsized virtual yield union "
                      "macro_rules"),
                words(K::type,
                      "i8 i16 i32 i64 i128 isize u8 u16 u32 u64 u128 usize f32 f64 bool char str "
                      "String Vec Option Result Box Rc Arc RefCell Cell Some None Ok Err HashMap "
                      "HashSet BTreeMap"),
            }};
}

LanguageDefinition shell()
{
    return {.id = QStringLiteral("shell"),
            .name = "Shell (bash/zsh)",
            .extensions = split("sh bash zsh ksh fish command tool bashrc zshrc profile"),
            .fileNames = split(".bashrc .bash_profile .zshrc .zprofile .profile .zshenv"),
            .lineComment = comment("#"),
            .rules = {
                rule(K::preprocessor, R"(\A#!.*)"),
                hashCommentAfterBlank(),
                doubleQuotedString(),
                rule(K::string, R"('[^']*'?)"),
                rule(K::variable, R"(\$\{[^}\n]*\}|\$\w+|\$[@#?$!*0-9-])"),
                words(K::keyword,
                      "if then else elif fi case esac for select while until do done in function "
                      "time coproc return exit break continue declare typeset local export "
                      "readonly unset shift source alias unalias echo printf read cd pwd test eval "
                      "exec set trap true false let getopts kill wait sudo"),
                number(),
            }};
}

LanguageDefinition sql()
{
    return {.id = QStringLiteral("sql"),
            .name = "SQL",
            .extensions = split("sql ddl dml psql mysql"),
            .lineComment = comment("--"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                rule(K::comment, R"(--.*)"),
                rule(K::string, R"('(?:[^']|'')*'?)"),
                rule(K::attribute, R"re(`[^`\n]*`|"[^"\n]*")re"),
                number(),
                words(K::keyword,
                      "select from where and or not insert into values update set delete create "
                      "table view index drop alter add column primary key foreign references "
                      "unique constraint default null is in between like join inner left right "
                      "outer full cross on as distinct group by order having limit offset union "
                      "all exists case when then else end begin commit rollback transaction grant "
                      "revoke with returning if replace trigger procedure function database schema "
                      "cascade asc desc explain analyze vacuum",
                      true),
                words(K::type,
                      "int integer bigint smallint tinyint decimal numeric real float double "
                      "precision char varchar nchar nvarchar text blob clob boolean bool date time "
                      "timestamp interval serial bigserial uuid bytea json jsonb xml money",
                      true),
            }};
}

LanguageDefinition swift()
{
    return {.id = QStringLiteral("swift"),
            .name = "Swift",
            .extensions = split("swift"),
            .lineComment = comment("//"),
            .blockComment = pair("/*", "*/"),
            .rules = {
                cBlockComment(),
                slashLineComment(),
                rule(K::string, R"re(#*"""[\s\S]*?(?:"""#*|\z))re"),
                doubleQuotedString(),
                rule(K::preprocessor, R"(@[A-Za-z_]\w*|#[a-zA-Z]+)"),
                number(),
                words(K::keyword,
                      "associatedtype class deinit enum extension fileprivate func import init "
                      "inout internal let open operator private precedencegroup protocol public "
                      "rethrows static struct subscript typealias var break case catch continue "
                      "default defer do else fallthrough for guard if in repeat return throw "
                      "switch where while as false is nil self Self super throws true try async "
                      "await actor some any convenience dynamic final indirect lazy mutating "
                      "nonmutating optional override required weak unowned get set willSet didSet "
                      "consume borrowing consuming isolated nonisolated"),
                words(K::type,
                      "Int Int8 Int16 Int32 Int64 UInt UInt8 UInt16 UInt32 UInt64 Float Double "
                      "Bool String Character Array Dictionary Set Optional Result Void Any "
                      "AnyObject Error Data Date URL UUID Task"),
            }};
}

LanguageDefinition toml()
{
    return {
        .id = QStringLiteral("toml"),
        .name = "TOML",
        .extensions = split("toml"),
        .fileNames = split("cargo.lock pipfile"),
        .lineComment = comment("#"),
        .rules = {
            hashComment(),
            rule(K::heading, R"(^[ \t]*\[\[?[^\]\n]*\]\]?)"),
            rule(K::attribute, R"re(^[ \t]*[\w."'-]+(?=[ \t]*=))re"),
            rule(K::string, R"re("""[\s\S]*?(?:"""|\z)|'''[\s\S]*?(?:'''|\z))re"),
            doubleQuotedString(),
            singleQuotedString(),
            rule(K::number,
                 R"(\d{4}-\d{2}-\d{2}(?:[T ]\d{2}:\d{2}:\d{2}(?:\.\d+)?(?:Z|[+-]\d{2}:\d{2})?)?)"),
            number(),
            words(K::keyword, "true false inf nan"),
        }};
}

LanguageDefinition typescript()
{
    return {.id = QStringLiteral("typescript"),
            .name = "TypeScript",
            .extensions = split("ts tsx mts cts"),
            .lineComment = comment("//"),
            .blockComment = pair("/*", "*/"),
            .rules = typeScriptRules()};
}

LanguageDefinition vb()
{
    return {.id = QStringLiteral("vb"),
            .name = "Visual Basic / VBScript",
            .extensions = split("vb vbs bas cls frm vba"),
            .lineComment = comment("'"),
            .rules = {
                rule(K::comment, R"('.*|(?i:\brem\b.*))"),
                rule(K::string, R"re("(?:[^"\n]|"")*"?)re"),
                rule(K::preprocessor, R"(^[ \t]*#\w+)"),
                number(),
                words(K::keyword,
                      "addhandler addressof alias and andalso as boolean byref byte byval call "
                      "case catch cbool cbyte cchar cdate cdbl cdec char cint class clng cobj "
                      "const continue csbyte cshort csng cstr ctype cuint culng cushort date "
                      "decimal declare default delegate dim directcast do double each else elseif "
                      "end endif enum erase error event exit explicit false finally for friend "
                      "function get gettype global gosub goto handles if implements imports in "
                      "inherits integer interface is isnot let lib like long loop me mod module "
                      "mustinherit mustoverride mybase myclass namespace narrowing new next not "
                      "nothing notinheritable notoverridable object of on operator option optional "
                      "or orelse overloads overridable overrides paramarray partial private "
                      "property protected public raiseevent readonly redim removehandler resume "
                      "return sbyte select set shadows shared short single static step stop string "
                      "structure sub synclock then throw to true try trycast typeof uinteger ulong "
                      "ushort using variant wend when while widening with withevents writeonly xor",
                      true),
            }};
}

LanguageDefinition xml()
{
    return {.id = QStringLiteral("xml"),
            .name = "XML",
            .extensions = split("xml xsd xsl xslt svg plist rss atom xaml csproj vcxproj props "
                                "targets storyboard xib entitlements resx config nuspec wsdl kml "
                                "gpx"),
            .blockComment = pair("<!--", "-->"),
            .rules = {
                rule(K::comment, R"(<!--[\s\S]*?(?:-->|\z))"),
                rule(K::string, R"(<!\[CDATA\[[\s\S]*?(?:\]\]>|\z))"),
                rule(K::preprocessor, R"(<\?[\s\S]*?(?:\?>|\z)|<!DOCTYPE[^>]*>)"),
                rule(K::tag, R"(</?[A-Za-z_][\w:.-]*|/?>)"),
                rule(K::attribute, R"((?<=\s)[A-Za-z_:][\w:.-]*(?=\s*=))"),
                doubleQuotedString(),
                singleQuotedString(),
                rule(K::number, R"(&#?\w+;)"),
            }};
}

LanguageDefinition yaml()
{
    return {.id = QStringLiteral("yaml"),
            .name = "YAML",
            .extensions = split("yaml yml"),
            .fileNames = split(".clang-format"),
            .lineComment = comment("#"),
            .rules = {
                hashCommentAfterBlank(),
                rule(K::meta, R"(^(?:---|\.\.\.)[ \t]*$)"),
                rule(K::attribute,
                     R"re(^[ \t]*(?:-[ \t]+)?[^\s#'"\-][^:#\n]*?(?=[ \t]*:(?:[ \t]|$)))re"),
                doubleQuotedString(),
                singleQuotedString(),
                rule(K::variable, R"([&*][\w-]+)"),
                rule(K::preprocessor, R"(!!?[\w/]+)"),
                words(K::keyword, "true false yes no on off null", true),
                rule(K::keyword, R"(~)"),
                rule(K::keyword, R"(^[ \t]*-(?=[ \t]))"),
                number(),
            }};
}
} // namespace

QList<LanguageDefinition> lastLanguages()
{
    return {ruby(), rust(), shell(), sql(), swift(), toml(), typescript(), vb(), xml(), yaml()};
}

} // namespace mirtex::languagetable
