// mirtex: URLs handed to the program ("mirtex:?text=…", "mirtex://open?path=…"): which text they
// carry, and reading it. A "path" inside the temporary folder is a hand-over file and is deleted
// once read.
#pragma once

#include "core/document/DocumentError.h"

#include <QString>

#include <expected>
#include <optional>

namespace mirtex {

struct UrlEvent
{
    enum class Kind {
        path,
        text
    };

    Kind kind = Kind::text;
    QString value;

    // Nothing for another scheme, no scheme, or neither a "path" with a value nor a "text" item.
    static std::optional<UrlEvent> parse(const QString &url);

    // The text to open, with LF line breaks: the value of "text", or the decoded content of
    // "path" (why not, when the file cannot be read or decoded). `tempDir` is the system's
    // temporary folder.
    std::expected<QString, DocumentError> resolveText(const QString &tempDir) const;

    // True when `path` really lies inside `folder`, after resolving "..", "." and symbolic links.
    static bool isInsideFolder(const QString &path, const QString &folder);
};

} // namespace mirtex
