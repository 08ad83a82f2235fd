#include "core/editor/FoldStyle.h"

#include <iterator>

namespace mirtex {

namespace {

struct StyleOf
{
    const char16_t *languageId;
    FoldStyle style;
};

// Languages without an entry have no fold style.
constexpr StyleOf kStyles[] = {
    {u"c", FoldStyle::braces},
    {u"cpp", FoldStyle::braces},
    {u"csharp", FoldStyle::braces},
    {u"css", FoldStyle::braces},
    {u"go", FoldStyle::braces},
    {u"java", FoldStyle::braces},
    {u"javascript", FoldStyle::braces},
    {u"json", FoldStyle::braces},
    {u"kotlin", FoldStyle::braces},
    {u"objc", FoldStyle::braces},
    {u"php", FoldStyle::braces},
    {u"rust", FoldStyle::braces},
    {u"swift", FoldStyle::braces},
    {u"typescript", FoldStyle::braces},
    {u"powershell", FoldStyle::braces},
    {u"perl", FoldStyle::braces},
    {u"shell", FoldStyle::braces},
    {u"python", FoldStyle::indentation},
    {u"yaml", FoldStyle::indentation},
    {u"lua", FoldStyle::indentation},
    {u"ruby", FoldStyle::indentation},
    {u"vb", FoldStyle::indentation},
    {u"makefile", FoldStyle::indentation},
    {u"sql", FoldStyle::indentation},
    {u"markdown", FoldStyle::headings},
    {u"html", FoldStyle::tags},
    {u"xml", FoldStyle::tags},
    {u"ini", FoldStyle::sections},
    {u"toml", FoldStyle::sections},
};

constexpr const char16_t *kNames[]
    = {u"braces", u"indentation", u"headings", u"tags", u"sections", u"none"};

} // namespace

FoldStyle foldStyleFor(QStringView languageId)
{
    for (const StyleOf &entry : kStyles) {
        if (QStringView(entry.languageId) == languageId)
            return entry.style;
    }
    return FoldStyle::none;
}

bool foldsHtmlTags(QStringView languageId)
{
    return languageId == u"html";
}

QString toString(FoldStyle style)
{
    return QString::fromUtf16(kNames[std::size_t(style)]);
}

std::optional<FoldStyle> foldStyleFromString(QStringView name)
{
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if (QStringView(kNames[i]) == name)
            return FoldStyle(i);
    }
    return std::nullopt;
}

} // namespace mirtex
