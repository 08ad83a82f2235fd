// Any bytes as the text of the JSON tools: validation, layout and minifying agree on what is JSON,
// what they write is JSON again, and a second layout changes nothing.
#include "FuzzMain.h"
#include "core/tools/JsonLayout.h"
#include "core/tools/TextTool.h"

#include <cstdlib>

using namespace mirtex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    if (size == 0)
        return 0;
    static const QString units[]
        = {QStringLiteral("\t"), QStringLiteral("  "), QStringLiteral("    "), QString()};
    const QString &unit = units[data[0] & 3];
    const QString text
        = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    const bool valid = isValidJson(text);
    const std::optional<QString> formatted = formatJson(text, unit);
    const std::optional<QString> minified = minifyJson(text);
    if (formatted.has_value() != valid || minified.has_value() != valid)
        std::abort();
    if (applyTextTool(text, TextTool::jsonFormat, unit) != formatted
        || applyTextTool(text, TextTool::jsonMinify, unit) != minified)
        std::abort();
    if (!valid)
        return 0;
    if (!isValidJson(*formatted) || !isValidJson(*minified))
        std::abort();
    // Laying out is stable, and both forms minify to the same text.
    if (formatJson(*formatted, unit) != formatted || minifyJson(*minified) != minified
        || minifyJson(*formatted) != minified)
        std::abort();
    return 0;
}
