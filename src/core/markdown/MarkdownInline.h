// Inline content to HTML: emphasis, strike-through, code spans, links and images (relative ones
// resolved against the document's folder), autolinks, raw HTML, line breaks and footnote
// references, which also record the order in which footnotes are first cited.
#pragma once

#include "core/languages/Language.h"
#include "core/markdown/MarkdownBlock.h"

#include <QUrl>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace mirtex {

class MarkdownRenderer;

// The mutable state of one rendering.
struct RenderContext
{
    const std::unordered_map<std::string, std::vector<MarkdownBlock>> &footnotes;
    const std::vector<std::string> &footnoteLabels;
    const MarkdownRenderer &renderer;
    std::unordered_map<std::string, int> slugs;
    std::vector<std::string> footnoteOrder;
    std::unordered_map<std::string, std::size_t> footnoteNumbers;     // label to its 1-based place
    std::unordered_map<std::string_view, LanguagePtr> fenceLanguages; // looked up once per word
};

namespace MarkdownInline {

// Appends the HTML of the inline content of node to out.
void render(MarkdownInlines node, RenderContext &context, std::string &out);

// "&", "<" and ">" as entities; with attribute set, double quotes as "&quot;" too.
void appendEscaped(std::string &out, std::string_view text, bool attribute = false);

// Whether a link destination may be followed: no scheme, or one of http, https, mailto, ftp, file
// and tel. Anything else (javascript:, data:, an unknown scheme) is shown as text only.
bool isSafeDestination(std::string_view url);

} // namespace MarkdownInline

} // namespace mirtex
