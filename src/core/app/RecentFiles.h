// The files the user opened or saved last, newest first and at most kLimit, kept in the
// preferences store under kKey (a string list) so that every window and the next run share them.
#pragma once

#include <QStringList>

namespace mirtex {

class Preferences;

class RecentFiles
{
public:
    static constexpr qsizetype kLimit = 10;
    static constexpr auto kKey = "recentFiles";

    // `prefs` must outlive this object.
    explicit RecentFiles(Preferences &prefs);

    // Newest first, as stored.
    QStringList paths() const;
    // Moves `path` to the front (adding it when new) and forgets the oldest beyond the limit.
    void add(const QString &path);
    // Forgets the files that no longer exist and returns the others, newest first.
    QStringList existing();
    void clear();

private:
    void store(const QStringList &paths);

    Preferences &m_prefs;
};

} // namespace mirtex
