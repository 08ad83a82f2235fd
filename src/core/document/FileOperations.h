// What the workspace sidebar does to files and folders: creating them, renaming them and moving
// them to the desktop's trash. Each returns the entry's new path, or why the system refused as a
// FileProblem (never an English system text). Never replaces or removes an entry it was not
// asked about.
#pragma once

#include "core/document/FileProblem.h"

#include <QString>

#include <expected>

namespace mirtex {

class FileOperations
{
public:
    // A name for one entry of a folder: not empty, not "." or "..", without '/' or NUL.
    static bool isValidName(const QString &name);

    // An empty file `name` in `folder`; alreadyExists when the name is taken.
    static std::expected<QString, FileProblem> createFile(const QString &folder,
                                                          const QString &name);
    static std::expected<QString, FileProblem> createFolder(const QString &folder,
                                                            const QString &name);
    // Gives `path` (a file or a folder) the name `newName` in the same folder; alreadyExists when
    // another entry has it. Renaming to the same name succeeds and changes nothing.
    static std::expected<QString, FileProblem> rename(const QString &path, const QString &newName);
    // Moves `path` to the desktop's trash (the freedesktop.org trash, where it can be restored).
    // Returns where it went.
    static std::expected<QString, FileProblem> moveToTrash(const QString &path);
};

} // namespace mirtex
