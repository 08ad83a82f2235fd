#include "core/markdown/MarkdownRenderer.h"

#include "core/languages/Tokenizer.h"
#include "core/markdown/CodeFenceLanguage.h"
#include "core/markdown/MarkdownInline.h"
#include "core/markdown/MarkdownParser.h"
#include "core/markdown/MarkdownStyleSheet.h"

#include <QCoreApplication>

#include <array>
#include <unordered_map>

namespace mirtex {

namespace {

using MarkdownInline::appendEscaped;

// The class names of the token kinds, made once.
const std::string &tokenClass(TokenKind kind)
{
    static const auto names = [] {
        std::array<std::string, kTokenKindCount> list;
        for (int i = 0; i < kTokenKindCount; ++i)
            list[std::size_t(i)] = toString(TokenKind(i)).toStdString();
        return list;
    }();
    return names[std::size_t(kind)];
}

void appendLine(std::string &out, int line)
{
    out += " data-line=\"";
    out += std::to_string(line);
    out += '"';
}

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// UTF-16 to escaped UTF-8 straight into out (lone surrogates as U+FFFD).
void appendEscapedUtf16(std::string &out, QStringView text)
{
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        char32_t c = text[i].unicode();
        if (c < 0x80) {
            switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            default:
                out += char(c);
                break;
            }
            continue;
        }
        if (QChar::isSurrogate(c)) {
            if (QChar::isHighSurrogate(c) && i + 1 < size && text[i + 1].isLowSurrogate()) {
                c = QChar::surrogateToUcs4(char16_t(c), text[i + 1].unicode());
                ++i;
            } else {
                c = 0xFFFD;
            }
        }
        if (c < 0x800) {
            out += char(0xC0 | (c >> 6));
        } else if (c < 0x10000) {
            out += char(0xE0 | (c >> 12));
            out += char(0x80 | ((c >> 6) & 0x3F));
        } else {
            out += char(0xF0 | (c >> 18));
            out += char(0x80 | ((c >> 12) & 0x3F));
            out += char(0x80 | ((c >> 6) & 0x3F));
        }
        out += char(0x80 | (c & 0x3F));
    }
}

const char *alignAttribute(MarkdownAlign align)
{
    switch (align) {
    case MarkdownAlign::left:
        return " style=\"text-align:left\"";
    case MarkdownAlign::center:
        return " style=\"text-align:center\"";
    case MarkdownAlign::right:
        return " style=\"text-align:right\"";
    case MarkdownAlign::none:
        break;
    }
    return "";
}

void replaceAll(std::string &text, std::string_view from, std::string_view to)
{
    std::size_t at = text.find(from);
    if (at == std::string::npos)
        return;
    std::string result;
    result.reserve(text.size());
    std::size_t run = 0;
    for (; at != std::string::npos; at = text.find(from, run)) {
        result.append(text, run, at - run);
        result.append(to);
        run = at + from.size();
    }
    result.append(text, run);
    text = std::move(result);
}

} // namespace

std::string MarkdownRenderer::anchorBase(std::string_view headingHtml)
{
    std::string text;
    text.reserve(headingHtml.size());
    for (std::size_t i = 0; i < headingHtml.size(); ++i) {
        if (headingHtml[i] == '<') {
            const std::size_t close = headingHtml.find('>', i + 1);
            if (close != std::string_view::npos && close > i + 1) {
                i = close;
                continue;
            }
        }
        text += headingHtml[i];
    }
    replaceAll(text, "&lt;", "<");
    replaceAll(text, "&gt;", ">");
    replaceAll(text, "&quot;", "\"");
    replaceAll(text, "&amp;", "&");
    std::string slug;
    slug.reserve(text.size());
    const QString lower = QString::fromUtf8(text).toLower();
    for (qsizetype i = 0; i < lower.size(); ++i) {
        char32_t c = lower[i].unicode();
        qsizetype units = 1;
        if (lower[i].isHighSurrogate() && i + 1 < lower.size() && lower[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(lower[i], lower[i + 1]);
            units = 2;
        }
        if (c == U' ' || c == U'-') {
            slug += '-';
        } else if (c == U'_') {
            slug += '_';
        } else if (QChar::isLetter(c) || QChar::isDigit(c)) {
            slug += QStringView(lower).mid(i, units).toUtf8().toStdString();
        }
        i += units - 1;
    }
    return slug.empty() ? std::string("section") : slug;
}

void MarkdownRenderer::blocks(const std::vector<MarkdownBlock> &list,
                              bool tight,
                              RenderContext &context,
                              std::string &out) const
{
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].kind == MarkdownBlock::Kind::heading && i + 1 < list.size()) {
            out += "<div class=\"keep\">";
            block(list[i], tight, context, out);
            block(list[i + 1], tight, context, out);
            out += "</div>\n";
            ++i;
        } else {
            block(list[i], tight, context, out);
        }
    }
}

void MarkdownRenderer::block(const MarkdownBlock &block,
                             bool tight,
                             RenderContext &context,
                             std::string &out) const
{
    using Kind = MarkdownBlock::Kind;
    switch (block.kind) {
    case Kind::heading: {
        const char level = char('0' + std::clamp(block.level, 1, 6));
        std::string inner;
        MarkdownInline::render(block.inlines, context, inner);
        const std::string base = anchorBase(inner);
        int &count = context.slugs[base];
        std::string anchor = base;
        if (count > 0) {
            anchor += '-';
            anchor += std::to_string(count);
        }
        ++count;
        out += "<h";
        out += level;
        out += " id=\"";
        appendEscaped(out, anchor, true);
        out += '"';
        appendLine(out, block.line);
        out += '>';
        out += inner;
        out += "</h";
        out += level;
        out += ">\n";
        return;
    }
    case Kind::paragraph:
        if (tight) {
            MarkdownInline::render(block.inlines, context, out);
            out += '\n';
        } else {
            out += "<p";
            appendLine(out, block.line);
            out += '>';
            MarkdownInline::render(block.inlines, context, out);
            out += "</p>\n";
        }
        return;
    case Kind::code:
        code(block, context, out);
        return;
    case Kind::quote:
        out += "<blockquote";
        appendLine(out, block.line);
        out += ">\n";
        blocks(block.blocks, false, context, out);
        out += "</blockquote>\n";
        return;
    case Kind::list: {
        const char *tag = block.ordered ? "ol" : "ul";
        out += '<';
        out += tag;
        appendLine(out, block.line);
        if (block.ordered && block.start != 1) {
            out += " start=\"";
            out += std::to_string(block.start);
            out += '"';
        }
        const bool tasks = std::any_of(block.items.begin(),
                                       block.items.end(),
                                       [](const auto &item) { return item.checked.has_value(); });
        if (tasks)
            out += " class=\"tasks\"";
        out += ">\n";
        for (const MarkdownListItem &item : block.items) {
            out += "<li";
            appendLine(out, item.line);
            if (item.checked) {
                out += *item.checked ? " class=\"task done\"><span class=\"box checked\"></span>"
                                     : " class=\"task\"><span class=\"box\"></span>";
            } else {
                out += '>';
            }
            blocks(item.blocks, block.tight, context, out);
            out += "</li>\n";
        }
        out += "</";
        out += tag;
        out += ">\n";
        return;
    }
    case Kind::table: {
        out += "<div class=\"table\"";
        appendLine(out, block.line);
        out += "><table>\n<thead><tr>";
        for (std::size_t c = 0; c < block.header.size(); ++c) {
            out += "<th";
            out += alignAttribute(block.alignments[c]);
            out += '>';
            MarkdownInline::render(block.header[c], context, out);
            out += "</th>";
        }
        out += "</tr></thead>\n";
        if (!block.rows.empty()) {
            out += "<tbody>\n";
            for (const auto &row : block.rows) {
                out += "<tr>";
                for (std::size_t c = 0; c < row.size(); ++c) {
                    out += "<td";
                    out += alignAttribute(block.alignments[c]);
                    out += '>';
                    MarkdownInline::render(row[c], context, out);
                    out += "</td>";
                }
                out += "</tr>\n";
            }
            out += "</tbody>\n";
        }
        out += "</table></div>\n";
        return;
    }
    case Kind::html:
        out += "<div class=\"raw\"";
        appendLine(out, block.line);
        out += '>';
        out += block.text;
        out += "</div>\n";
        return;
    case Kind::rule:
        out += "<hr";
        appendLine(out, block.line);
        out += ">\n";
        return;
    case Kind::frontMatter:
        out += "<pre class=\"front-matter\"";
        appendLine(out, block.line);
        out += "><code>";
        appendEscaped(out, block.text);
        out += "</code></pre>\n";
        return;
    }
}

void MarkdownRenderer::code(const MarkdownBlock &block,
                            RenderContext &context,
                            std::string &out) const
{
    out += "<pre";
    appendLine(out, block.line);
    out += '>';
    if (!block.language.empty()) {
        out += "<span class=\"code-lang\">";
        appendEscaped(out, block.language);
        out += "</span><code class=\"language-";
        appendEscaped(out, block.language, true);
        out += "\">";
    } else {
        out += "<code>";
    }
    LanguagePtr language;
    QString text;
    if (highlightCode && !block.language.empty()) {
        auto [known, added] = context.fenceLanguages.try_emplace(block.language);
        if (added)
            known->second = CodeFenceLanguage::find(QString::fromUtf8(block.language));
        language = known->second;
        if (language) {
            text = QString::fromUtf8(block.text);
            if (text.size() > kMaxColouredCode)
                language = nullptr;
        }
    }
    if (language) {
        qsizetype at = 0;
        for (const Token &token : tokenize(*language, text)) {
            appendEscapedUtf16(out, QStringView(text).mid(at, token.location - at));
            out += "<span class=\"t-";
            out += tokenClass(token.kind);
            out += "\">";
            appendEscapedUtf16(out, QStringView(text).mid(token.location, token.length));
            out += "</span>";
            at = token.end();
        }
        appendEscapedUtf16(out, QStringView(text).mid(at));
    } else {
        appendEscaped(out, block.text);
    }
    out += "\n</code></pre>\n";
}

void MarkdownRenderer::footnotes(RenderContext &context, std::string &out) const
{
    if (context.footnoteOrder.empty())
        return;
    out += "<section class=\"footnotes\"><hr><ol>\n";
    // Notes may cite further notes; those are appended to the order and listed too.
    for (std::size_t i = 0; i < context.footnoteOrder.size(); ++i) {
        const std::string label = context.footnoteOrder[i];
        out += "<li id=\"fn-";
        appendEscaped(out, label, true);
        out += "\">";
        if (auto found = context.footnotes.find(label); found != context.footnotes.end())
            blocks(found->second, true, context, out);
        out += " <a href=\"#fnref-";
        appendEscaped(out, label, true);
        out += "\" class=\"backref\">\u21a9</a></li>\n";
    }
    out += "</ol></section>\n";
}

std::string MarkdownRenderer::renderBody(std::string utf8) const
{
    // Also for a document of nothing but definitions (links, unused footnotes): no blank page.
    const auto emptyNotice = [] {
        std::string out = "<p class=\"empty\">";
        appendEscaped(
            out,
            QCoreApplication::translate("MarkdownRenderer", "Il documento è vuoto.").toStdString());
        out += "</p>";
        return out;
    };
    if (isBlank(utf8))
        return emptyNotice();
    const std::size_t size = utf8.size();
    const MarkdownDocument document = MarkdownParser::parse(std::move(utf8));
    RenderContext context{document.footnotes, document.footnoteLabels, *this, {}, {}, {}, {}};
    std::string out;
    out.reserve(size + size / 2);
    blocks(document.blocks, false, context, out);
    footnotes(context, out);
    return out.empty() ? emptyNotice() : out;
}

QString MarkdownRenderer::renderBody(const QString &text) const
{
    return QString::fromStdString(renderBody(text.toStdString()));
}

std::string MarkdownRenderer::page(std::string_view body, bool forPrint)
{
    const std::string_view sheet = markdownStyleSheet();
    std::string out;
    out.reserve(body.size() + sheet.size() + 256);
    out += "<!doctype html><html><head><meta charset=\"utf-8\">\n<meta name=\"color-scheme\" "
           "content=\"";
    out += forPrint ? "light" : "light dark";
    out += "\">\n<style>";
    out += sheet;
    out += "</style></head>\n<body class=\"";
    out += forPrint ? "print" : "screen";
    out += "\"><article class=\"page\" id=\"page\">";
    out += body;
    out += "</article></body></html>";
    return out;
}

QString MarkdownRenderer::page(const QString &body, bool forPrint)
{
    return QString::fromStdString(page(body.toStdString(), forPrint));
}

} // namespace mirtex
