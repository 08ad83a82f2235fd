#include "core/app/RecentFiles.h"

#include "core/app/Preferences.h"

#include <QFileInfo>

namespace mirtex {

RecentFiles::RecentFiles(Preferences &prefs)
    : m_prefs(prefs)
{}

QStringList RecentFiles::paths() const
{
    return m_prefs.value(QLatin1String(kKey)).toStringList();
}

void RecentFiles::add(const QString &path)
{
    if (path.isEmpty())
        return;
    QStringList list = paths();
    list.removeAll(path);
    list.prepend(path);
    store(list.mid(0, kLimit));
}

QStringList RecentFiles::existing()
{
    const QStringList all = paths();
    QStringList kept;
    for (const QString &path : all) {
        if (QFileInfo(path).isFile())
            kept.append(path);
    }
    if (kept.size() != all.size())
        store(kept);
    return kept;
}

void RecentFiles::clear()
{
    store({});
}

void RecentFiles::store(const QStringList &paths)
{
    m_prefs.setValue(QLatin1String(kKey), paths);
}

} // namespace mirtex
