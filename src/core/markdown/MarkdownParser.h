// Markdown text to blocks: CommonMark with the GitHub extensions (tables, strike-through, task
// lists, bare autolinks) and footnotes, plus a front matter block fenced by "---" lines at the very
// start. Never fails: any byte sequence gives some blocks.
#pragma once

#include "core/markdown/MarkdownBlock.h"

#include <string>

namespace mirtex {

namespace MarkdownParser {

MarkdownDocument parse(std::string utf8);

} // namespace MarkdownParser

} // namespace mirtex
