// The six case changes of a piece of text, their stored names and labels (menu title and undo
// step), and the pure function that applies one.
#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>

namespace mirtex {

enum class CaseConversion : std::uint8_t {
    upper,
    lower,
    title,
    sentence,
    invert,
    random,
};

inline constexpr int kCaseConversionCount = 6;

QString toString(CaseConversion conversion);
std::optional<CaseConversion> caseConversionFromString(QStringView name);
// Translated.
QString label(CaseConversion conversion);

// Full Unicode case mappings ("ß" upper-cases to "SS"), with no locale-specific rules. `random`
// draws from the system's random source. Pure otherwise; never fails.
QString convertCase(QStringView text, CaseConversion conversion);

} // namespace mirtex
