// A Markdown text to the HTML of one page: the body (blocks, anchored headings, coloured code,
// footnotes) and the complete self-contained page around it. Output is UTF-8, built by appending
// to one string; nothing is written to disk.
#pragma once

#include "core/markdown/MarkdownBlock.h"

#include <QString>
#include <QUrl>

#include <optional>
#include <string>
#include <string_view>

namespace mirtex {

struct RenderContext;

class MarkdownRenderer
{
public:
    std::optional<QUrl> baseURL; // the document's folder: relative links and images resolve here
    bool highlightCode = true;

    // Fenced code longer than this (UTF-16 units) is written uncoloured.
    static constexpr qsizetype kMaxColouredCode = 299'999;

    std::string renderBody(std::string utf8) const;
    QString renderBody(const QString &text) const;

    static std::string page(std::string_view body, bool forPrint);
    static QString page(const QString &body, bool forPrint);

    // A heading's anchor base from its rendered HTML: tags removed, the four entities decoded,
    // lower-cased, letters, digits, "-" and "_" kept, each space a dash; "section" when empty.
    static std::string anchorBase(std::string_view headingHtml);

private:
    void blocks(const std::vector<MarkdownBlock> &list,
                bool tight,
                RenderContext &context,
                std::string &out) const;
    void
    block(const MarkdownBlock &block, bool tight, RenderContext &context, std::string &out) const;
    void code(const MarkdownBlock &block, RenderContext &context, std::string &out) const;
    void footnotes(RenderContext &context, std::string &out) const;
};

} // namespace mirtex
