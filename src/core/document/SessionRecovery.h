// The recovery folder of a session: backups that no session entry names any more, and the
// original bytes of backups that had to be repaired, kept for 30 days instead of being deleted.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace mirtex {

struct RecoveredText
{
    QString path;      // absolute path of the file in the recovery folder
    QString firstLine; // its first non-empty line, trimmed and cut to a readable length
    QDateTime modified;
};

namespace SessionRecovery {

constexpr int kKeepDays = 30;

// "<state folder>/recovery".
QString folderPath(const QString &stateFolder);
// Moves (or copies) a file into the recovery folder under a name of its own; false when it could
// not, and then the file is left where it was.
bool moveIn(const QString &stateFolder, const QString &path);
bool copyIn(const QString &stateFolder, const QString &path);
// Removes what has been there longer than kKeepDays at `now`. A file dated in the future (a clock
// that went backwards) is kept.
void expire(const QString &stateFolder, const QDateTime &now);
// What the folder holds, newest first.
QList<RecoveredText> list(const QString &stateFolder);

} // namespace SessionRecovery

} // namespace mirtex
