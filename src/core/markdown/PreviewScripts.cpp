#include "core/markdown/PreviewScripts.h"

#include <algorithm>

namespace mirtex {

namespace {

constexpr std::string_view kPageOpen = "<article class=\"page\" id=\"page\">";
constexpr std::string_view kPageClose = "</article></body></html>";

} // namespace

std::string PreviewScripts::jsonStringLiteral(std::string_view text)
{
    static constexpr char hex[] = "0123456789abcdef";
    std::string out;
    out.reserve(text.size() + text.size() / 8 + 2);
    out += '"';
    std::size_t copied = 0;
    auto flush = [&](std::size_t upTo) { out.append(text, copied, upTo - copied); };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const char *escape = nullptr;
        switch (c) {
        case '"':
            escape = "\\\"";
            break;
        case '\\':
            escape = "\\\\";
            break;
        case '\n':
            escape = "\\n";
            break;
        case '\r':
            escape = "\\r";
            break;
        case '\t':
            escape = "\\t";
            break;
        default:
            break;
        }
        if (escape) {
            flush(i);
            out += escape;
            copied = i + 1;
        } else if (c < 0x20) {
            flush(i);
            out += "\\u00";
            out += hex[c >> 4];
            out += hex[c & 15];
            copied = i + 1;
        } else if (c == 0xE2 && i + 2 < text.size()
                   && static_cast<unsigned char>(text[i + 1]) == 0x80
                   && (static_cast<unsigned char>(text[i + 2]) == 0xA8
                       || static_cast<unsigned char>(text[i + 2]) == 0xA9)) {
            // U+2028 and U+2029 end a line in older JavaScript.
            flush(i);
            out += static_cast<unsigned char>(text[i + 2]) == 0xA8 ? "\\u2028" : "\\u2029";
            i += 2;
            copied = i + 1;
        }
    }
    flush(text.size());
    out += '"';
    return out;
}

QString PreviewScripts::jsonStringLiteral(const QString &text)
{
    return QString::fromStdString(jsonStringLiteral(text.toStdString()));
}

std::string PreviewScripts::updateScript(std::string_view body)
{
    std::string script = "document.getElementById('page').innerHTML = ";
    script += jsonStringLiteral(body);
    script += ';';
    return script;
}

QString PreviewScripts::followScript(int line, bool atEnd)
{
    return QStringLiteral("mirtexFollow(%1, %2);")
        .arg(line)
        .arg(atEnd ? QLatin1String("true") : QLatin1String("false"));
}

QString PreviewScripts::followFunction()
{
    // The elements carrying a source line are gathered once per content (the content element's
    // first child changes with every update) and kept in increasing line order, so that finding
    // the pair around a line is a binary search even in a very long page.
    return QStringLiteral(R"js(
window.mirtexLines = function () {
  var page = document.getElementById('page');
  var first = page ? page.firstChild : null;
  var c = window.mirtexLineCache;
  if (c && c.first === first && c.page === page) return c.list;
  var all = document.querySelectorAll('[data-line]');
  var list = [], last = -1;
  for (var i = 0; i < all.length; i++) {
    var n = parseInt(all[i].getAttribute('data-line'), 10);
    if (n >= last) { list.push({line: n, el: all[i]}); last = n; }
  }
  window.mirtexLineCache = {first: first, page: page, list: list};
  return list;
};
window.mirtexFollow = function (line, atEnd) {
  var root = document.scrollingElement || document.documentElement;
  var max = root.scrollHeight - window.innerHeight;
  if (atEnd) { window.scrollTo(0, max); return; }
  if (line <= 0) { window.scrollTo(0, 0); return; }
  var list = window.mirtexLines();
  var lo = 0, hi = list.length;
  while (lo < hi) { var mid = (lo + hi) >> 1; if (list[mid].line <= line) lo = mid + 1; else hi = mid; }
  if (lo === 0) { window.scrollTo(0, 0); return; }
  var before = list[lo - 1], after = lo < list.length ? list[lo] : null;
  var top = before.el.getBoundingClientRect().top + window.scrollY;
  if (after && after.line > before.line) {
    var next = after.el.getBoundingClientRect().top + window.scrollY;
    top += (next - top) * (line - before.line) / (after.line - before.line);
  }
  window.scrollTo(0, Math.max(0, Math.min(max, top - 28)));
};
window.mirtexTopLine = function () {
  var list = window.mirtexLines();
  var y = window.scrollY + 28;
  var lo = 0, hi = list.length;
  while (lo < hi) {
    var mid = (lo + hi) >> 1;
    if (list[mid].el.getBoundingClientRect().top + window.scrollY <= y) lo = mid + 1; else hi = mid;
  }
  if (lo === 0) return 0;
  var before = list[lo - 1], after = lo < list.length ? list[lo] : null;
  var top = before.el.getBoundingClientRect().top + window.scrollY;
  if (after && after.line > before.line) {
    var next = after.el.getBoundingClientRect().top + window.scrollY;
    if (next > top)
      return Math.floor(before.line + (after.line - before.line) * (y - top) / (next - top));
  }
  return before.line;
};
)js");
}

QString PreviewScripts::topLineScript()
{
    return QStringLiteral("window.mirtexTopLine ? window.mirtexTopLine() : -1;");
}

QString PreviewScripts::fragmentScript(const QString &fragment)
{
    return QStringLiteral("var e = document.getElementById(") + jsonStringLiteral(fragment)
           + QStringLiteral("); if (e) e.scrollIntoView({behavior: 'smooth'});");
}

double PreviewScripts::pageZoom(int zoomStep)
{
    return std::max(0.5, 1.0 + 0.1 * zoomStep);
}

bool PreviewScripts::splitPage(const QString &page, PageParts &parts)
{
    const QString open = QString::fromLatin1(kPageOpen.data(), qsizetype(kPageOpen.size()));
    const QString close = QString::fromLatin1(kPageClose.data(), qsizetype(kPageClose.size()));
    const qsizetype begin = page.indexOf(open);
    if (begin < 0 || !page.endsWith(close))
        return false;
    const qsizetype bodyBegin = begin + open.size();
    const qsizetype bodyEnd = page.size() - close.size();
    if (bodyEnd < bodyBegin)
        return false;
    parts.shell = page.left(bodyBegin) + close;
    parts.body = page.mid(bodyBegin, bodyEnd - bodyBegin);
    return true;
}

} // namespace mirtex
