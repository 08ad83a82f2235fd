#include "core/markdown/CodeFenceLanguage.h"

#include <array>

namespace mirtex {

namespace {

constexpr std::array<std::pair<const char *, const char *>, 56> kAliases = {{
    {"sh", "shell"},          {"bash", "shell"},     {"zsh", "shell"},
    {"shell", "shell"},       {"console", "shell"},  {"shellsession", "shell"},
    {"js", "javascript"},     {"jsx", "javascript"}, {"node", "javascript"},
    {"ts", "typescript"},     {"tsx", "typescript"}, {"py", "python"},
    {"python3", "python"},    {"rb", "ruby"},        {"rs", "rust"},
    {"golang", "go"},         {"kt", "kotlin"},      {"c++", "cpp"},
    {"cxx", "cpp"},           {"h", "cpp"},          {"hpp", "cpp"},
    {"cs", "csharp"},         {"c#", "csharp"},      {"objective-c", "objc"},
    {"objc", "objc"},         {"yml", "yaml"},       {"md", "markdown"},
    {"html", "html"},         {"xml", "xml"},        {"svg", "xml"},
    {"plist", "xml"},         {"json", "json"},      {"jsonc", "json"},
    {"json5", "json"},        {"ps1", "powershell"}, {"pwsh", "powershell"},
    {"bat", "batch"},         {"cmd", "batch"},      {"ini", "ini"},
    {"toml", "toml"},         {"sql", "sql"},        {"diff", "diff"},
    {"patch", "diff"},        {"php", "php"},        {"lua", "lua"},
    {"perl", "perl"},         {"pl", "perl"},        {"java", "java"},
    {"swift", "swift"},       {"css", "css"},        {"scss", "css"},
    {"makefile", "makefile"}, {"make", "makefile"},  {"dockerfile", "dockerfile"},
    {"docker", "dockerfile"}, {"vb", "vb"},
}};

} // namespace

std::span<const std::pair<const char *, const char *>> CodeFenceLanguage::aliases()
{
    return kAliases;
}

LanguagePtr CodeFenceLanguage::find(QStringView word)
{
    if (word.isEmpty())
        return nullptr;
    const QString lower = word.toString().toLower();
    LanguagePtr found;
    for (const auto &[alias, id] : kAliases) {
        if (lower == QLatin1String(alias)) {
            found = Language::byId(QString::fromLatin1(id));
            break;
        }
    }
    if (!found) {
        for (const LanguagePtr &language : Language::all()) {
            if (language->id() == lower || language->name().toLower() == lower
                || language->extensions().contains(lower)) {
                found = language;
                break;
            }
        }
    }
    if (!found || found == Language::text() || found->id() == Language::text()->id())
        return nullptr;
    return found;
}

} // namespace mirtex
