// How a language's blocks are found, chosen by the language's id.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

enum class FoldStyle {
    braces,      // { } and [ ] outside strings and comments, plus multi-line comments
    indentation, // lines indented under a header
    headings,    // Markdown headings, outside fenced blocks
    tags,        // opening and closing tags (HTML without case, XML with it)
    sections,    // INI and TOML "[section]" headers
    none,
};

FoldStyle foldStyleFor(QStringView languageId);
// Whether tag names are compared without case and void elements open nothing (HTML, not XML).
bool foldsHtmlTags(QStringView languageId);

QString toString(FoldStyle style);
std::optional<FoldStyle> foldStyleFromString(QStringView name);

} // namespace mirtex
