// Why the system refused to read or write a file, in words the user understands (Italian), never
// the system's own English text.
#pragma once

#include <QString>

namespace mirtex {

enum class FileProblem {
    notFound,
    permissionDenied,
    isFolder,
    notRegularFile, // a device, a pipe or a socket
    noSpace,
    quotaExceeded,
    readOnlyFileSystem,
    fileTooLarge,     // the process's or the file system's size limit
    shortWrite,       // fewer bytes reached the disk than were written
    alreadyExists,    // a new or renamed entry would take a name in use
    invalidName,      // empty, ".", "..", or holding a '/'
    trashUnavailable, // the desktop's trash cannot take the entry
    other
};

// The problem an errno value stands for (anything unlisted is `other`).
FileProblem fileProblemFromErrno(int error);

// A short lower-case reason, e.g. "permesso negato".
QString describe(FileProblem problem);

} // namespace mirtex
