// The tools that rewrite a piece of text (Base64, URL percent-encoding, HTML entities, JSON
// layout), their stored names and labels (menu title and undo step), and the pure function that
// applies one.
#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>

namespace mirtex {

enum class TextTool : std::uint8_t {
    base64Encode,
    base64Decode,
    urlEncode,
    urlDecode,
    htmlEncode,
    htmlDecode,
    jsonFormat,
    jsonMinify,
};

inline constexpr int kTextToolCount = 8;

QString toString(TextTool tool);
std::optional<TextTool> textToolFromString(QStringView name);
// Translated.
QString label(TextTool tool);

// The new text, or nothing when `text` is not valid input for the tool (Base64, percent-encoding
// or JSON that does not parse). `indentUnit` is one level of indentation (a TAB or spaces), used
// by jsonFormat. Pure.
std::optional<QString> applyTextTool(QStringView text, TextTool tool, QStringView indentUnit);

} // namespace mirtex
