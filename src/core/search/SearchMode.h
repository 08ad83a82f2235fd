// How the find panel reads its query and replacement: as typed, with escapes, or as a pattern.
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace mirtex {

// Stored as its raw value (0, 1, 2 in this order) and named by its enumerator.
enum class SearchMode {
    normal,
    extended,
    regex
};

inline constexpr std::array<SearchMode, 3> kSearchModes{
    SearchMode::normal, SearchMode::extended, SearchMode::regex};

QString toString(SearchMode mode);
std::optional<SearchMode> searchModeFromString(QStringView name);

// The menu label ("Normale", "Esteso (\n, \r, \t, \0, \x…)", "Espressione regolare").
QString label(SearchMode mode);

} // namespace mirtex
