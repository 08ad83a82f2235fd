#include "core/app/AppInfo.h"

// The build defines MIRTEX_VERSION for this file alone, so a new version rebuilds one file.
#ifndef MIRTEX_VERSION
#error "MIRTEX_VERSION must be defined by the build"
#endif

namespace mirtex::AppInfo {

QString name()
{
    return QStringLiteral("Mirtex++");
}

QString version()
{
    return QStringLiteral(MIRTEX_VERSION);
}

} // namespace mirtex::AppInfo
