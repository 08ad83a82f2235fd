// mirtex-bench's Markdown command: a file rendered to the complete page, as the preview and the
// HTML export make it.
#pragma once

#include <QStringList>

#include <optional>

namespace mirtex {

// markdown [--gfm] [--to html] [--no-colour] FILE: the page on standard output. Nothing when
// arguments[0] is not "markdown".
std::optional<int> runMarkdownCommand(const QStringList &arguments);

} // namespace mirtex
