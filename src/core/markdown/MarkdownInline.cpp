#include "core/markdown/MarkdownInline.h"

#include "core/markdown/MarkdownRenderer.h"

#include <algorithm>
#include <cmark-gfm.h>
#include <cstdlib>
#include <cstring>

namespace mirtex {

namespace {

// Inline nesting deeper than this is written as its plain text.
constexpr int kMaxDepth = 100;

std::string_view literalOf(cmark_node *node)
{
    const char *text = cmark_node_get_literal(node);
    return text ? std::string_view(text) : std::string_view();
}

std::string_view schemeOf(std::string_view url)
{
    const std::size_t colon = url.find(':');
    if (colon == std::string_view::npos || colon == 0)
        return {};
    const std::string_view scheme = url.substr(0, colon);
    const bool valid = std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
               || c == '+' || c == '.' || c == '-';
    });
    return valid ? scheme : std::string_view();
}

bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return (x | 0x20) == (y | 0x20);
           });
}

void appendPlainText(cmark_node *node, std::string &out)
{
    // Iterative, so that any depth is safe.
    cmark_iter *iter = cmark_iter_new(node);
    cmark_event_type event;
    while ((event = cmark_iter_next(iter)) != CMARK_EVENT_DONE) {
        cmark_node *current = cmark_iter_get_node(iter);
        if (event != CMARK_EVENT_ENTER || current == node)
            continue;
        switch (cmark_node_get_type(current)) {
        case CMARK_NODE_TEXT:
        case CMARK_NODE_CODE:
            MarkdownInline::appendEscaped(out, literalOf(current), true);
            break;
        case CMARK_NODE_SOFTBREAK:
        case CMARK_NODE_LINEBREAK:
            out += ' ';
            break;
        default:
            break;
        }
    }
    cmark_iter_free(iter);
}

class InlineWriter
{
public:
    InlineWriter(RenderContext &context, std::string &out)
        : m_context(context)
        , m_out(out)
    {}

    void children(cmark_node *parent, int depth)
    {
        if (depth > kMaxDepth) {
            appendPlainText(parent, m_out);
            return;
        }
        for (cmark_node *node = cmark_node_first_child(parent); node; node = cmark_node_next(node))
            write(node, depth);
    }

private:
    void write(cmark_node *node, int depth)
    {
        switch (cmark_node_get_type(node)) {
        case CMARK_NODE_TEXT:
            MarkdownInline::appendEscaped(m_out, literalOf(node));
            return;
        case CMARK_NODE_SOFTBREAK:
            m_out += '\n';
            return;
        case CMARK_NODE_LINEBREAK:
            m_out += "<br>\n";
            return;
        case CMARK_NODE_CODE:
            m_out += "<code>";
            MarkdownInline::appendEscaped(m_out, literalOf(node));
            m_out += "</code>";
            return;
        case CMARK_NODE_HTML_INLINE:
            m_out += literalOf(node);
            return;
        case CMARK_NODE_EMPH:
            wrap(node, "<em>", "</em>", depth);
            return;
        case CMARK_NODE_STRONG:
            wrap(node, "<strong>", "</strong>", depth);
            return;
        case CMARK_NODE_LINK:
            link(node, depth);
            return;
        case CMARK_NODE_IMAGE:
            image(node);
            return;
        case CMARK_NODE_FOOTNOTE_REFERENCE:
            footnoteReference(node);
            return;
        default:
            break;
        }
        if (std::strcmp(cmark_node_get_type_string(node), "strikethrough") == 0)
            wrap(node, "<del>", "</del>", depth);
        else
            children(node, depth + 1);
    }

    void wrap(cmark_node *node, const char *open, const char *close, int depth)
    {
        m_out += open;
        children(node, depth + 1);
        m_out += close;
    }

    void appendDestination(std::string_view url)
    {
        const std::optional<QUrl> &base = m_context.renderer.baseURL;
        if (base && !url.empty() && url.front() != '#' && schemeOf(url).empty()) {
            const QUrl resolved
                = base->resolved(QUrl::fromEncoded(QByteArray(url.data(), qsizetype(url.size()))));
            MarkdownInline::appendEscaped(m_out, resolved.toEncoded().toStdString(), true);
        } else {
            MarkdownInline::appendEscaped(m_out, url, true);
        }
    }

    void appendTitle(cmark_node *node)
    {
        const char *title = cmark_node_get_title(node);
        if (title && *title) {
            m_out += " title=\"";
            MarkdownInline::appendEscaped(m_out, title, true);
            m_out += '"';
        }
    }

    void link(cmark_node *node, int depth)
    {
        const char *url = cmark_node_get_url(node);
        const std::string_view destination = url ? url : "";
        m_out += "<a";
        if (MarkdownInline::isSafeDestination(destination)) {
            m_out += " href=\"";
            appendDestination(destination);
            m_out += '"';
        }
        appendTitle(node);
        m_out += '>';
        children(node, depth + 1);
        m_out += "</a>";
    }

    void image(cmark_node *node)
    {
        const char *url = cmark_node_get_url(node);
        const std::string_view destination = url ? url : "";
        m_out += "<img";
        const std::string_view scheme = schemeOf(destination);
        if (MarkdownInline::isSafeDestination(destination)
            || (equalsIgnoringCase(scheme, "data")
                && destination.substr(5, 6) == std::string_view("image/"))) {
            m_out += " src=\"";
            appendDestination(destination);
            m_out += '"';
        }
        m_out += " alt=\"";
        appendPlainText(node, m_out);
        m_out += '"';
        appendTitle(node);
        m_out += '>';
    }

    void footnoteReference(cmark_node *node)
    {
        std::string label(literalOf(node));
        const std::vector<std::string> &labels = m_context.footnoteLabels;
        if (const int number = std::atoi(label.c_str());
            number > 0 && std::size_t(number) <= labels.size())
            label = labels[std::size_t(number - 1)];
        std::vector<std::string> &order = m_context.footnoteOrder;
        const auto found = m_context.footnoteNumbers.find(label);
        const bool first = found == m_context.footnoteNumbers.end();
        if (first && !m_context.footnotes.contains(label)) {
            m_out += "[^";
            MarkdownInline::appendEscaped(m_out, label);
            m_out += ']';
            return;
        }
        if (first) {
            order.push_back(label);
            m_context.footnoteNumbers.emplace(label, order.size());
        }
        const std::size_t number = first ? order.size() : found->second;
        m_out += "<sup class=\"fnref\"><a href=\"#fn-";
        MarkdownInline::appendEscaped(m_out, label, true);
        m_out += '"';
        if (first) {
            m_out += " id=\"fnref-";
            MarkdownInline::appendEscaped(m_out, label, true);
            m_out += '"';
        }
        m_out += '>';
        m_out += std::to_string(number);
        m_out += "</a></sup>";
    }

    RenderContext &m_context;
    std::string &m_out;
};

} // namespace

void MarkdownInline::render(MarkdownInlines node, RenderContext &context, std::string &out)
{
    if (!node)
        return;
    InlineWriter(context, out).children(node, 0);
}

void MarkdownInline::appendEscaped(std::string &out, std::string_view text, bool attribute)
{
    std::size_t run = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const char *entity = nullptr;
        switch (c) {
        case '&':
            entity = "&amp;";
            break;
        case '<':
            entity = "&lt;";
            break;
        case '>':
            entity = "&gt;";
            break;
        case '"':
            if (attribute)
                entity = "&quot;";
            break;
        default:
            break;
        }
        if (entity) {
            out.append(text.data() + run, i - run);
            out += entity;
            run = i + 1;
        }
    }
    out.append(text.data() + run, text.size() - run);
}

bool MarkdownInline::isSafeDestination(std::string_view url)
{
    const std::string_view scheme = schemeOf(url);
    if (scheme.empty())
        return true;
    for (const char *allowed : {"http", "https", "mailto", "ftp", "file", "tel"}) {
        if (equalsIgnoringCase(scheme, allowed))
            return true;
    }
    return false;
}

} // namespace mirtex
