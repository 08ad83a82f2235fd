// The page's built-in style sheet: light colours on :root, dark ones for the screen page only, and
// the rules for the screen and print variants.
#include "core/markdown/MarkdownStyleSheet.h"

namespace mirtex {

std::string_view markdownStyleSheet()
{
    static constexpr std::string_view sheet = R"css(:root {
  --desk: #e8e8ec;
  --page: #ffffff;
  --text: #1d1d1f;
  --muted: #6e6e73;
  --rule: #d5d5da;
  --heading: #1f3864;
  --accent: #2f5496;
  --link: #0a58ca;
  --code-bg: #f4f4f6;
  --code-text: #1d1d1f;
  --quote: #55555a;
  --table-head: #eef1f6;
  --table-stripe: #f8f9fb;
  --mark: #fff3a8;
  --t-comment: #6a737d;
  --t-string: #0a7a3c;
  --t-number: #b35a00;
  --t-keyword: #b8237a;
  --t-type: #6f42c1;
  --t-preprocessor: #8a6100;
  --t-tag: #1f6feb;
  --t-attribute: #8250df;
  --t-heading: #1f3864;
  --t-variable: #953800;
  --t-added: #116329;
  --t-removed: #b31d28;
  --t-meta: #6e7781;
  --t-link: #0a58ca;
}
@media (prefers-color-scheme: dark) {
  body.screen {
    --desk: #161618;
    --page: #232326;
    --text: #e6e6ea;
    --muted: #9a9aa0;
    --rule: #3c3c41;
    --heading: #a9c6ff;
    --accent: #8fb3ff;
    --link: #7cb2ff;
    --code-bg: #2c2c30;
    --code-text: #e6e6ea;
    --quote: #bdbdc3;
    --table-head: #2d3038;
    --table-stripe: #27272b;
    --mark: #6b5b12;
    --t-comment: #8b949e;
    --t-string: #7ee2a8;
    --t-number: #ffb86b;
    --t-keyword: #ff7ab8;
    --t-type: #c9a2ff;
    --t-preprocessor: #e3c26b;
    --t-tag: #79b8ff;
    --t-attribute: #d2a8ff;
    --t-heading: #a9c6ff;
    --t-variable: #ffab70;
    --t-added: #7ee2a8;
    --t-removed: #ff8182;
    --t-meta: #8b949e;
    --t-link: #7cb2ff;
  }
}
html { background: var(--desk); }
body { margin: 0; padding: 26px 22px 64px; background: var(--desk); color: var(--text); -webkit-print-color-adjust: exact; print-color-adjust: exact; font: 15px/1.6 -apple-system, "Helvetica Neue", Helvetica, Arial, sans-serif; -webkit-font-smoothing: antialiased; overflow-wrap: break-word; }
.page { max-width: 780px; margin: 0 auto; background: var(--page); padding: 60px 68px 72px; border-radius: 3px; box-shadow: 0 0 0 0.5px rgba(0,0,0,.08), 0 2px 6px rgba(0,0,0,.08), 0 12px 32px rgba(0,0,0,.08); }
@media (max-width: 760px) { body.screen { padding: 14px 12px 40px; } }
@media (max-width: 760px) { body.screen .page { padding: 34px 32px 44px; } }
.page > :first-child { margin-top: 0; }
.page > :last-child { margin-bottom: 0; }
p.empty { color: var(--muted); font-style: italic; }
h1, h2, h3, h4, h5, h6 { color: var(--heading); line-height: 1.25; margin: 1.6em 0 0.6em; font-weight: 650; }
h1 { font-size: 2em; font-weight: 700; padding-bottom: 0.3em; border-bottom: 1px solid var(--rule); }
h2 { font-size: 1.5em; padding-bottom: 0.25em; border-bottom: 1px solid var(--rule); }
h3 { font-size: 1.25em; }
h4 { font-size: 1.05em; }
h5 { font-size: 0.95em; }
h6 { font-size: 0.9em; color: var(--muted); }
p, ul, ol, blockquote, pre, .table, dl, details { margin: 0 0 1em; }
a { color: var(--link); text-decoration: none; }
a:hover { text-decoration: underline; }
strong { font-weight: 650; }
del { color: var(--muted); }
mark { background: var(--mark); color: inherit; }
hr { border: 0; border-top: 1px solid var(--rule); margin: 2em 0; }
ul, ol { padding-left: 1.7em; }
li { margin: 0.2em 0; }
li > p { margin: 0.4em 0; }
li > ul, li > ol { margin: 0.2em 0; }
ul.tasks { list-style: none; padding-left: 0.4em; }
ul.tasks ul.tasks { padding-left: 1.6em; }
.box { display: inline-block; position: relative; box-sizing: border-box; width: 0.95em; height: 0.95em; margin-right: 0.5em; vertical-align: -0.12em; border: 1.5px solid var(--muted); border-radius: 3px; }
.box.checked { background: var(--accent); border-color: var(--accent); }
.box.checked::after { content: ""; position: absolute; left: 0.27em; top: 0.08em; width: 0.22em; height: 0.46em; border: solid #fff; border-width: 0 0.13em 0.13em 0; transform: rotate(45deg); }
li.task.done { color: var(--muted); }
.page > .keep:first-child > :first-child { margin-top: 0; }
blockquote { margin-left: 0; padding: 0.2em 0 0.2em 1em; border-left: 3px solid var(--accent); color: var(--quote); }
blockquote > :last-child { margin-bottom: 0; }
code, pre { font-family: "SF Mono", SFMono-Regular, Menlo, Consolas, monospace; font-size: 0.86em; }
:not(pre) > code { background: var(--code-bg); padding: 0.12em 0.36em; border-radius: 4px; }
pre { position: relative; background: var(--code-bg); color: var(--code-text); padding: 14px 16px; border-radius: 6px; overflow-x: auto; line-height: 1.45; }
pre code { font-size: 1em; white-space: pre; }
pre .code-lang { position: absolute; top: 6px; right: 10px; font: 600 10px/1 -apple-system, sans-serif; text-transform: uppercase; letter-spacing: .06em; color: var(--muted); }
pre.front-matter { background: transparent; border: 1px dashed var(--rule); color: var(--muted); }
.table { overflow-x: auto; }
table { border-collapse: collapse; font-size: 0.94em; min-width: 40%; }
th, td { border: 1px solid var(--rule); padding: 6px 12px; vertical-align: top; }
th { background: var(--table-head); font-weight: 650; text-align: left; }
tbody tr:nth-child(even) { background: var(--table-stripe); }
img { max-width: 100%; height: auto; }
kbd { font: 0.85em "SF Mono", Menlo, monospace; padding: 0.1em 0.4em; border: 1px solid var(--rule); border-bottom-width: 2px; border-radius: 4px; }
sup.fnref { font-size: 0.75em; line-height: 0; }
.footnotes { font-size: 0.88em; color: var(--muted); margin-top: 2.5em; }
.footnotes hr { margin: 0 0 1em; }
.footnotes .backref { margin-left: 0.3em; }
details { border: 1px solid var(--rule); border-radius: 6px; padding: 0.5em 0.9em; }
summary { cursor: pointer; font-weight: 600; }
.t-comment { color: var(--t-comment); font-style: italic; }
.t-string { color: var(--t-string); }
.t-number { color: var(--t-number); }
.t-keyword { color: var(--t-keyword); }
.t-type { color: var(--t-type); }
.t-preprocessor { color: var(--t-preprocessor); }
.t-tag { color: var(--t-tag); }
.t-attribute { color: var(--t-attribute); }
.t-heading { color: var(--t-heading); font-weight: 600; }
.t-variable { color: var(--t-variable); }
.t-added { color: var(--t-added); }
.t-removed { color: var(--t-removed); }
.t-meta { color: var(--t-meta); }
.t-emphasis { font-style: italic; }
.t-link { color: var(--t-link); }
body.print { background: #fff; padding: 0; font-size: 11pt; }
body.print .page { max-width: none; padding: 0; margin: 0; box-shadow: none; border-radius: 0; }
body.print pre { white-space: pre-wrap; }
body.print pre code { white-space: pre-wrap; }
@media print { html, body { background: #fff !important; } }
@media print { pre, blockquote, tr, img, .table, li.task, .keep { break-inside: avoid; page-break-inside: avoid; } }
@media print { h1, h2, h3, h4, h5, h6 { break-after: avoid; } }
@media print { a { color: var(--link); } }
)css";
    return sheet;
}

} // namespace mirtex
