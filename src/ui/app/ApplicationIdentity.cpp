#include "ui/app/ApplicationIdentity.h"

#include "core/app/AppInfo.h"

#include <QGuiApplication>

namespace mirtex::ApplicationIdentity {

void apply()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Mirtex"));
    QCoreApplication::setApplicationName(AppInfo::name());
    QCoreApplication::setApplicationVersion(AppInfo::version());
    QGuiApplication::setDesktopFileName(QStringLiteral("mirtex"));
}

} // namespace mirtex::ApplicationIdentity
