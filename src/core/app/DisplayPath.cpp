#include "core/app/DisplayPath.h"

#include <QtGlobal>

namespace mirtex {

QString DisplayPath::forDisplay(const QString &path)
{
    return substitute(path, qEnvironmentVariable("MIRTEX_DISPLAY_ROOT"));
}

QString DisplayPath::substitute(const QString &path, const QString &rootSetting)
{
    const qsizetype eq = rootSetting.indexOf(u'=');
    if (eq < 0)
        return path;
    const QString prefix = rootSetting.left(eq);
    if (prefix.isEmpty() || !path.startsWith(prefix))
        return path;
    return rootSetting.mid(eq + 1) + path.mid(prefix.size());
}

} // namespace mirtex
