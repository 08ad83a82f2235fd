// The blocks of a Markdown document as the renderer walks them. Inline content (heading and
// paragraph text, table cells) is kept as the parser's inline nodes, which the document owns, and
// is rendered by MarkdownInline; code, raw HTML and front matter are UTF-8 text.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct cmark_node;

namespace mirtex {

enum class MarkdownAlign : std::uint8_t {
    none,
    left,
    center,
    right,
};

// A parsed inline source: the node whose children are the inline content (null: empty text).
using MarkdownInlines = cmark_node *;

struct MarkdownListItem;

struct MarkdownBlock
{
    enum class Kind : std::uint8_t {
        heading,
        paragraph,
        code,
        quote,
        list,
        table,
        html,
        rule,
        frontMatter,
    };

    Kind kind = Kind::paragraph;
    int line = 0;                          // 0-based source line where the block starts
    int level = 0;                         // heading: 1 to 6
    MarkdownInlines inlines = nullptr;     // heading, paragraph
    std::string_view language;             // code: the info string's first word, possibly empty
    std::string_view text;                 // code (without the final line break), html, frontMatter
    std::vector<MarkdownBlock> blocks;     // quote
    bool ordered = false;                  // list
    int start = 1;                         // list: the first item's number
    bool tight = false;                    // list
    std::vector<MarkdownListItem> items;   // list
    std::vector<MarkdownInlines> header;   // table: one per column
    std::vector<MarkdownAlign> alignments; // table: one per column
    std::vector<std::vector<MarkdownInlines>> rows; // table: each exactly header.size() cells
};

struct MarkdownListItem
{
    std::vector<MarkdownBlock> blocks;
    std::optional<bool> checked; // absent: no check box
    int line = 0;
};

// A parsed document: the blocks and the footnote definitions. Link reference definitions are
// resolved by the parser into the links themselves.
// Owns the parser's tree and any text the block views point into; movable, not copyable.
struct MarkdownDocument
{
    std::vector<MarkdownBlock> blocks;
    // Footnote definitions by label.
    std::unordered_map<std::string, std::vector<MarkdownBlock>> footnotes;
    // The parser numbers the footnotes it finds cited, in order of first citation, and names a
    // reference by that number: label of number n at n - 1.
    std::vector<std::string> footnoteLabels;
    std::shared_ptr<cmark_node> tree;
    std::shared_ptr<const std::string> source;
};

} // namespace mirtex
