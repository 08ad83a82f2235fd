// The sorts among the line operations. Each returns the lines in their new order as views of
// the input. Pure; main or any thread.
#pragma once

#include <QLocale>
#include <QStringView>

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace mirtex {

// Literal order: UTF-16 code units compared as numbers, no locale, case or normalisation.
int compareUtf16(QStringView a, QStringView b);

std::vector<QStringView> sortLiterally(std::span<const QStringView> lines, bool descending);
// The same order over lines of valid UTF-8, sorted as they are (no conversion to UTF-16): what
// sortLiterally gives for the same text.
std::vector<std::string_view> sortUtf8Literally(std::span<const std::string_view> lines,
                                                bool descending);
// The locale's collation with case ignored; equal lines keep their order in both directions.
std::vector<QStringView>
sortIgnoringCase(std::span<const QStringView> lines, const QLocale &locale, bool descending);
// The same order over lines of valid UTF-8, without converting them.
std::vector<std::string_view> sortUtf8IgnoringCase(std::span<const std::string_view> lines,
                                                   const QLocale &locale,
                                                   bool descending);
// Numeric lines by value (stable), then the other lines in their input order.
std::vector<QStringView> sortNumerically(std::span<const QStringView> lines, bool descending);
// Ascending by characters (grapheme clusters), stable.
std::vector<QStringView> sortByLength(std::span<const QStringView> lines);

// The number a line starts with, as the numeric sorts read it: white space trimmed at both ends,
// "," read as ".", a decimal floating-point number scanned from the start. Nothing when the line
// does not start with one.
std::optional<double> leadingNumber(QStringView line);

} // namespace mirtex
