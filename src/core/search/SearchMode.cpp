#include "core/search/SearchMode.h"

#include <QCoreApplication>

namespace mirtex {

QString toString(SearchMode mode)
{
    switch (mode) {
    case SearchMode::normal:
        return QStringLiteral("normal");
    case SearchMode::extended:
        return QStringLiteral("extended");
    case SearchMode::regex:
        return QStringLiteral("regex");
    }
    return {};
}

std::optional<SearchMode> searchModeFromString(QStringView name)
{
    for (const SearchMode mode : kSearchModes) {
        if (toString(mode) == name)
            return mode;
    }
    return std::nullopt;
}

QString label(SearchMode mode)
{
    switch (mode) {
    case SearchMode::normal:
        return QCoreApplication::translate("Search", "Normale");
    case SearchMode::extended:
        return QCoreApplication::translate("Search", "Esteso (\\n, \\r, \\t, \\0, \\x…)");
    case SearchMode::regex:
        return QCoreApplication::translate("Search", "Espressione regolare");
    }
    return {};
}

} // namespace mirtex
