// The program's name and version as the build states them (the version is CMake's project version).
#pragma once

#include <QString>

namespace mirtex::AppInfo {

// "Mirtex++".
QString name();
// "0.1.0".
QString version();

} // namespace mirtex::AppInfo
