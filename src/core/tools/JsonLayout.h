// JSON validated by a real parser (RapidJSON, with its relaxed syntax: comments, trailing commas,
// NaN and Infinity; any single top-level value) and laid out again from its own characters, so
// that key order, number spelling and string escapes stay exactly as written.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

bool isValidJson(QStringView text);

// One value per line, nested levels indented by `indentUnit`; "{}" and "[]" stay whole. Nothing
// when the text is not valid JSON.
std::optional<QString> formatJson(QStringView text, QStringView indentUnit);
// White space outside strings dropped. Nothing when the text is not valid JSON.
std::optional<QString> minifyJson(QStringView text);

} // namespace mirtex
