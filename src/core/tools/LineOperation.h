// The eighteen operations on whole lines, their stored names and labels (menu title and undo
// step), and the pure function that applies one to a list of lines.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mirtex {

enum class LineOperation : std::uint8_t {
    sortAscending,
    sortDescending,
    sortAscendingIgnoringCase,
    sortDescendingIgnoringCase,
    sortNumericAscending,
    sortNumericDescending,
    sortByLength,
    shuffle,
    reverse,
    removeDuplicates,
    removeConsecutiveDuplicates,
    removeEmpty,
    removeBlank,
    trimTrailing,
    trimLeading,
    trimBoth,
    tabsToSpaces,
    leadingSpacesToTabs,
};

inline constexpr int kLineOperationCount = 18;

QString toString(LineOperation operation);
std::optional<LineOperation> lineOperationFromString(QStringView name);
// Translated.
QString label(LineOperation operation);

// What an operation works with besides the lines.
struct LineOperationOptions
{
    int tabWidth = 4; // columns, positive
    // Collation of the two case-insensitive sorts.
    QLocale locale;
};

// The lines after an operation: views into the input lines or into `storage`, which holds the
// lines the operation wrote anew. Moving the value keeps the views valid.
struct LineList
{
    std::vector<QStringView> lines;
    QString storage;
};

// Pure; never fails. The lines hold no line break. Lengths and columns count user-perceived
// characters (grapheme clusters).
LineList applyLineOperation(std::span<const QStringView> lines,
                            LineOperation operation,
                            const LineOperationOptions &options = {});

// The lines of `text` split at every LF (an empty text gives one empty line), and back.
std::vector<QStringView> splitLines(QStringView text);
QString joinLines(std::span<const QStringView> lines);

} // namespace mirtex
