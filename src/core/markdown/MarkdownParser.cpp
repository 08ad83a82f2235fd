#include "core/markdown/MarkdownParser.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm-extension_api.h>
#include <cmark-gfm.h>
#include <mutex>

namespace mirtex {

namespace {

// Containers nested deeper than this are written at this depth, so that a pathological document
// cannot exhaust the stack of the walks over the blocks.
constexpr int kMaxDepth = 200;

int lineOf(cmark_node *node)
{
    const int line = cmark_node_get_start_line(node);
    return line > 0 ? line - 1 : 0;
}

std::string_view literalOf(cmark_node *node)
{
    const char *text = cmark_node_get_literal(node);
    return text ? std::string_view(text) : std::string_view();
}

std::string_view withoutFinalBreak(std::string_view text)
{
    if (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    return text;
}

std::string_view firstWord(std::string_view info)
{
    const std::size_t begin = info.find_first_not_of(" \t");
    if (begin == std::string_view::npos)
        return {};
    info.remove_prefix(begin);
    return info.substr(0, info.find_first_of(" \t"));
}

MarkdownAlign alignOf(std::uint8_t code)
{
    switch (code) {
    case 'l':
        return MarkdownAlign::left;
    case 'c':
        return MarkdownAlign::center;
    case 'r':
        return MarkdownAlign::right;
    default:
        return MarkdownAlign::none;
    }
}

class Converter
{
public:
    Converter(MarkdownDocument &document, std::string_view input)
        : m_document(document)
        , m_input(input)
    {}

    void blocksOf(cmark_node *parent, std::vector<MarkdownBlock> &out, int depth)
    {
        // Containers that add nothing of their own (and quotes and lists past the nesting cap)
        // are walked here with a list of where to go on, not by recursion, so that input nested
        // ten thousand deep takes no more stack than input nested to the cap.
        std::vector<cmark_node *> resume;
        cmark_node *child = cmark_node_first_child(parent);
        while (child || !resume.empty()) {
            if (!child) {
                child = resume.back();
                resume.pop_back();
                continue;
            }
            cmark_node *next = cmark_node_next(child);
            if (cmark_node *inner = cmark_node_first_child(child);
                inner && isTransparent(child, depth)) {
                resume.push_back(next);
                child = inner;
                continue;
            }
            add(child, out, depth);
            child = next;
        }
    }

private:
    // Whether `add` would only add the node's children, at the same depth, to the same list.
    static bool isTransparent(cmark_node *node, int depth)
    {
        switch (cmark_node_get_type(node)) {
        case CMARK_NODE_CUSTOM_BLOCK:
        case CMARK_NODE_DOCUMENT:
        case CMARK_NODE_ITEM:
            return true;
        case CMARK_NODE_BLOCK_QUOTE:
        case CMARK_NODE_LIST:
            return depth >= kMaxDepth;
        case CMARK_NODE_FOOTNOTE_DEFINITION:
        case CMARK_NODE_HEADING:
        case CMARK_NODE_PARAGRAPH:
        case CMARK_NODE_CODE_BLOCK:
        case CMARK_NODE_HTML_BLOCK:
        case CMARK_NODE_THEMATIC_BREAK:
            return false;
        default:
            return std::string_view(cmark_node_get_type_string(node)) != "table";
        }
    }

    void add(cmark_node *node, std::vector<MarkdownBlock> &out, int depth)
    {
        const cmark_node_type type = cmark_node_get_type(node);
        if (type == CMARK_NODE_FOOTNOTE_DEFINITION) {
            const std::string label = footnoteLabel(node);
            if (!m_document.footnotes.contains(label)) {
                m_document.footnoteLabels.push_back(label);
                blocksOf(node, m_document.footnotes[label], depth + 1);
            }
            return;
        }
        MarkdownBlock block;
        block.line = lineOf(node);
        switch (type) {
        case CMARK_NODE_HEADING:
            block.kind = MarkdownBlock::Kind::heading;
            block.level = cmark_node_get_heading_level(node);
            block.inlines = node;
            break;
        case CMARK_NODE_PARAGRAPH:
            block.kind = MarkdownBlock::Kind::paragraph;
            block.inlines = node;
            break;
        case CMARK_NODE_CODE_BLOCK: {
            block.kind = MarkdownBlock::Kind::code;
            block.text = withoutFinalBreak(literalOf(node));
            int fenceLength = 0;
            int fenceOffset = 0;
            char fenceCharacter = 0;
            if (cmark_node_get_fenced(node, &fenceLength, &fenceOffset, &fenceCharacter)) {
                const char *info = cmark_node_get_fence_info(node);
                block.language = firstWord(info ? std::string_view(info) : std::string_view());
            }
            break;
        }
        case CMARK_NODE_HTML_BLOCK:
            block.kind = MarkdownBlock::Kind::html;
            block.text = withoutFinalBreak(literalOf(node));
            break;
        case CMARK_NODE_THEMATIC_BREAK:
            block.kind = MarkdownBlock::Kind::rule;
            break;
        case CMARK_NODE_BLOCK_QUOTE:
            if (depth >= kMaxDepth) {
                blocksOf(node, out, depth);
                return;
            }
            block.kind = MarkdownBlock::Kind::quote;
            blocksOf(node, block.blocks, depth + 1);
            break;
        case CMARK_NODE_LIST:
            if (depth >= kMaxDepth) {
                for (cmark_node *item = cmark_node_first_child(node); item;
                     item = cmark_node_next(item))
                    blocksOf(item, out, depth);
                return;
            }
            block.kind = MarkdownBlock::Kind::list;
            block.ordered = cmark_node_get_list_type(node) == CMARK_ORDERED_LIST;
            block.start = block.ordered ? cmark_node_get_list_start(node) : 1;
            block.tight = cmark_node_get_list_tight(node) != 0;
            for (cmark_node *item = cmark_node_first_child(node); item;
                 item = cmark_node_next(item)) {
                MarkdownListItem entry;
                entry.line = lineOf(item);
                if (std::string_view(cmark_node_get_type_string(item)) == "tasklist")
                    entry.checked = cmark_gfm_extensions_get_tasklist_item_checked(item);
                blocksOf(item, entry.blocks, depth + 1);
                block.items.push_back(std::move(entry));
            }
            break;
        case CMARK_NODE_CUSTOM_BLOCK:
        case CMARK_NODE_DOCUMENT:
        case CMARK_NODE_ITEM:
            blocksOf(node, out, depth);
            return;
        default:
            if (std::string_view(cmark_node_get_type_string(node)) == "table") {
                out.push_back(table(node));
                return;
            }
            // A node of an extension this converter does not know: its content, or its text as
            // raw HTML.
            if (cmark_node_first_child(node)) {
                blocksOf(node, out, depth);
                return;
            }
            block.kind = MarkdownBlock::Kind::html;
            block.text = withoutFinalBreak(literalOf(node));
            break;
        }
        out.push_back(std::move(block));
    }

    MarkdownBlock table(cmark_node *node)
    {
        MarkdownBlock block;
        block.kind = MarkdownBlock::Kind::table;
        block.line = lineOf(node);
        const std::size_t columns = cmark_gfm_extensions_get_table_columns(node);
        const std::uint8_t *aligns = cmark_gfm_extensions_get_table_alignments(node);
        block.alignments.reserve(columns);
        for (std::size_t i = 0; i < columns; ++i)
            block.alignments.push_back(aligns ? alignOf(aligns[i]) : MarkdownAlign::none);
        bool header = true;
        for (cmark_node *row = cmark_node_first_child(node); row; row = cmark_node_next(row)) {
            std::vector<MarkdownInlines> cells;
            cells.reserve(columns);
            for (cmark_node *cell = cmark_node_first_child(row); cell && cells.size() < columns;
                 cell = cmark_node_next(cell))
                cells.push_back(cell);
            cells.resize(columns, nullptr);
            if (header)
                block.header = std::move(cells);
            else
                block.rows.push_back(std::move(cells));
            header = false;
        }
        block.header.resize(columns, nullptr);
        return block;
    }

    // The label of a footnote definition, read from its "[^label]:" in the source (the parser
    // keeps only the number it gave the note).
    std::string footnoteLabel(cmark_node *node)
    {
        if (m_lineStarts.empty()) {
            m_lineStarts.push_back(0);
            for (std::size_t i = 0; i < m_input.size(); ++i) {
                if (m_input[i] == '\n')
                    m_lineStarts.push_back(i + 1);
            }
        }
        // The definition's own position is not reliable; its first block starts after the label,
        // on the label's line.
        cmark_node *content = cmark_node_first_child(node);
        if (!content)
            return {};
        const std::size_t line = std::size_t(lineOf(content));
        const int column = cmark_node_get_start_column(content);
        if (line >= m_lineStarts.size() || column < 1)
            return {};
        const std::size_t lineStart = m_lineStarts[line];
        const std::size_t from = std::min(lineStart + std::size_t(column - 1), m_input.size());
        const std::size_t end = m_input.rfind("]:", from);
        const std::size_t at = end == std::string_view::npos ? end : m_input.rfind("[^", end);
        if (at == std::string_view::npos || at < lineStart)
            return {};
        return std::string(m_input.substr(at + 2, end - at - 2));
    }

    MarkdownDocument &m_document;
    std::string_view m_input;
    std::vector<std::size_t> m_lineStarts;
};

// The length of a front matter at the start of text: a "---" line, any lines, and a closing "---"
// or "..." line; 0 when there is none. textEnd receives where the lines between the fences end.
std::size_t frontMatterLength(std::string_view text, std::size_t &bodyBegin, std::size_t &bodyEnd)
{
    auto lineEnd = [&](std::size_t from) {
        const std::size_t end = text.find('\n', from);
        return end == std::string_view::npos ? text.size() : end;
    };
    auto trimmed = [&](std::size_t from, std::size_t to) {
        std::string_view line = text.substr(from, to - from);
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
            line.remove_suffix(1);
        return line;
    };
    const std::size_t first = lineEnd(0);
    if (trimmed(0, first) != "---" || first == text.size())
        return 0;
    bodyBegin = first + 1;
    for (std::size_t at = bodyBegin; at < text.size();) {
        const std::size_t end = lineEnd(at);
        const std::string_view line = trimmed(at, end);
        if (line == "---" || line == "...") {
            bodyEnd = at > bodyBegin ? at - 1 : bodyBegin;
            return end;
        }
        at = end + 1;
    }
    return 0;
}

bool isDelimiterRow(std::string_view line)
{
    bool dash = false;
    for (const char c : line) {
        if (c == '-')
            dash = true;
        else if (c != '|' && c != ':' && c != ' ' && c != '\t' && c != '\r')
            return false;
    }
    return dash;
}

bool isBlankLine(std::string_view line)
{
    return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

// The fence a line opens or closes: its character and length, or {0, 0}.
std::pair<char, std::size_t> fenceOf(std::string_view line)
{
    const std::size_t indent = line.find_first_not_of(' ');
    if (indent == std::string_view::npos || indent > 3)
        return {0, 0};
    const char c = line[indent];
    if (c != '`' && c != '~')
        return {0, 0};
    const std::size_t end = line.find_first_not_of(c, indent);
    const std::size_t length = (end == std::string_view::npos ? line.size() : end) - indent;
    return length >= 3 ? std::pair{c, length} : std::pair<char, std::size_t>{0, 0};
}

// Inside the rows of a table a "|" splits cells even within a code span; the way to keep one is
// "\|", which the table reader turns back into "|". Writes the protected copy of table rows whose
// code spans hold a bare "|" into buffer and returns it; returns input when nothing changes.
std::string_view protectCodeSpanPipes(std::string_view input, std::string &buffer)
{
    bool changed = false;
    std::size_t copied = 0;
    auto protectLine = [&](std::size_t lineBegin, std::string_view line) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '\\') {
                ++i;
                continue;
            }
            if (line[i] != '`')
                continue;
            std::size_t run = line.find_first_not_of('`', i);
            if (run == std::string_view::npos)
                return;
            const std::size_t ticks = run - i;
            // The closing run of exactly as many backticks.
            std::size_t close = run;
            while ((close = line.find('`', close)) != std::string_view::npos) {
                const std::size_t closeEnd
                    = std::min(line.find_first_not_of('`', close), line.size());
                if (closeEnd - close == ticks)
                    break;
                close = closeEnd;
            }
            if (close == std::string_view::npos) {
                i = run - 1;
                continue;
            }
            for (std::size_t k = run; k < close; ++k) {
                if (line[k] != '|' || line[k - 1] == '\\')
                    continue;
                if (!changed) {
                    buffer.reserve(input.size() + 64);
                    changed = true;
                }
                buffer.append(input, copied, lineBegin + k - copied);
                buffer += "\\|";
                copied = lineBegin + k + 1;
            }
            i = close + ticks - 1;
        }
    };

    std::pair<char, std::size_t> fence{0, 0};
    bool inTable = false;
    std::string_view previous;
    std::size_t previousBegin = 0;
    for (std::size_t begin = 0; begin < input.size();) {
        std::size_t end = input.find('\n', begin);
        if (end == std::string_view::npos)
            end = input.size();
        const std::string_view line = input.substr(begin, end - begin);
        const auto lineFence = fenceOf(line);
        if (fence.first) {
            if (lineFence.first == fence.first && lineFence.second >= fence.second) {
                const std::size_t runEnd
                    = line.find_first_not_of(fence.first, line.find(fence.first));
                if (runEnd == std::string_view::npos || isBlankLine(line.substr(runEnd)))
                    fence = {0, 0};
            }
        } else if (lineFence.first) {
            fence = lineFence;
            inTable = false;
        } else if (isBlankLine(line)) {
            inTable = false;
        } else if (inTable) {
            if (line.find('`') != std::string_view::npos)
                protectLine(begin, line);
        } else if (previous.find('|') != std::string_view::npos && isDelimiterRow(line)) {
            inTable = true;
            if (previous.find('`') != std::string_view::npos)
                protectLine(previousBegin, previous);
        }
        previous = line;
        previousBegin = begin;
        begin = end + 1;
    }
    if (!changed)
        return input;
    buffer.append(input, copied);
    return buffer;
}

cmark_parser *newParser()
{
    static std::once_flag once;
    std::call_once(once, [] { cmark_gfm_core_extensions_ensure_registered(); });
    cmark_parser *parser = cmark_parser_new(CMARK_OPT_FOOTNOTES | CMARK_OPT_UNSAFE);
    for (const char *name : {"table", "strikethrough", "autolink", "tasklist"}) {
        if (cmark_syntax_extension *extension = cmark_find_syntax_extension(name))
            cmark_parser_attach_syntax_extension(parser, extension);
    }
    return parser;
}

} // namespace

MarkdownDocument MarkdownParser::parse(std::string utf8)
{
    MarkdownDocument document;
    auto source = std::make_shared<std::string>(std::move(utf8));
    std::string_view frontMatter;
    std::size_t bodyBegin = 0;
    std::size_t bodyEnd = 0;
    const std::size_t fenceEnd = frontMatterLength(*source, bodyBegin, bodyEnd);
    std::string blanked;
    std::string_view input = *source;
    if (fenceEnd > 0) {
        frontMatter = std::string_view(*source).substr(bodyBegin, bodyEnd - bodyBegin);
        // The parser sees the front matter as blank lines, so that line numbers stay true.
        blanked.reserve(source->size());
        for (std::size_t i = 0; i < fenceEnd; ++i) {
            if ((*source)[i] == '\n')
                blanked.push_back('\n');
        }
        blanked.append(*source, fenceEnd);
        input = blanked;
    }

    std::string protectedInput;
    input = protectCodeSpanPipes(input, protectedInput);

    cmark_parser *parser = newParser();
    cmark_parser_feed(parser, input.data(), input.size());
    cmark_node *root = cmark_parser_finish(parser);
    cmark_parser_free(parser);
    document.tree = std::shared_ptr<cmark_node>(root, [](cmark_node *node) {
        if (node)
            cmark_node_free(node);
    });
    document.source = source;

    if (fenceEnd > 0) {
        MarkdownBlock block;
        block.kind = MarkdownBlock::Kind::frontMatter;
        block.line = 0;
        block.text = frontMatter;
        document.blocks.push_back(block);
    }
    if (root) {
        Converter converter(document, input);
        converter.blocksOf(root, document.blocks, 0);
    }
    return document;
}

} // namespace mirtex
