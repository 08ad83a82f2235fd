// The named HTML entities the decoder knows, and the two HTML entity conversions.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex {

// The character of a named entity ("amp" without "&" and ";"), case-sensitive.
std::optional<QChar> namedEntity(QStringView name);

QString encodeHtmlEntities(QStringView text);
// Numeric entities that are not Unicode scalar values and unknown names stay as written.
QString decodeHtmlEntities(QStringView text);

} // namespace mirtex
