// The state folder holds unsaved text, which can be private: the folder and every file in it are
// the user's alone (0700 and 0600), whatever the umask.
#pragma once

#include <QString>

namespace mirtex::SessionFolder {

// Creates the folder (and its parents) if needed and makes it 0700; false when it cannot be
// created.
bool makePrivate(const QString &folder);
// Gives a file 0600; false when it cannot.
bool makePrivateFile(const QString &path);
// The folder, its "backup" and "recovery" subfolders 0700 and every file in them 0600: files
// written by earlier versions with the umask's modes are fixed once, at start.
void makeAllPrivate(const QString &folder);

} // namespace mirtex::SessionFolder
