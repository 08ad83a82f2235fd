// A Markdown file written out as one self-contained HTML page: the style sheet inline and local
// images embedded as data URLs, so that the page can be moved or mailed on its own.
#pragma once

#include <QString>

#include <string>

namespace mirtex {

namespace MarkdownExport {

// The page for a Markdown text whose file is at sourcePath (relative links and images resolve
// against its folder).
std::string selfContainedPage(const QString &sourcePath, std::string markdown);

// Every <img src="file:..."> whose file can be read becomes a data URL; the others stay as they
// are.
std::string embedLocalImages(std::string html);

// Reads sourcePath and writes the page to outputPath (".html"; ".pdf" is not handled here).
// On failure returns false with the Italian message in error.
bool exportFile(const QString &sourcePath, const QString &outputPath, QString &error);

} // namespace MarkdownExport

} // namespace mirtex
