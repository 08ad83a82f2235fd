#include "core/document/FileProblem.h"

#include <QCoreApplication>

#include <cerrno>

namespace mirtex {

FileProblem fileProblemFromErrno(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return FileProblem::notFound;
    case EACCES:
    case EPERM:
        return FileProblem::permissionDenied;
    case EISDIR:
        return FileProblem::isFolder;
    case ENOSPC:
        return FileProblem::noSpace;
    case EDQUOT:
        return FileProblem::quotaExceeded;
    case EROFS:
        return FileProblem::readOnlyFileSystem;
    case EFBIG:
        return FileProblem::fileTooLarge;
    case EEXIST:
    case ENOTEMPTY:
        return FileProblem::alreadyExists;
    case ENAMETOOLONG:
        return FileProblem::invalidName;
    case ENXIO:
    case ENODEV:
        return FileProblem::notRegularFile;
    default:
        return FileProblem::other;
    }
}

QString describe(FileProblem problem)
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("Document", text); };
    switch (problem) {
    case FileProblem::notFound:
        return tr("il file non esiste");
    case FileProblem::permissionDenied:
        return tr("permesso negato");
    case FileProblem::isFolder:
        return tr("è una cartella");
    case FileProblem::notRegularFile:
        return tr("non è un file normale");
    case FileProblem::noSpace:
        return tr("spazio esaurito sul disco");
    case FileProblem::quotaExceeded:
        return tr("quota del disco superata");
    case FileProblem::readOnlyFileSystem:
        return tr("il disco è di sola lettura");
    case FileProblem::fileTooLarge:
        return tr("il file supera la dimensione consentita");
    case FileProblem::shortWrite:
        return tr("la scrittura si è interrotta a metà");
    case FileProblem::alreadyExists:
        return tr("esiste già un file o una cartella con questo nome");
    case FileProblem::invalidName:
        return tr("il nome non è valido");
    case FileProblem::trashUnavailable:
        return tr("il cestino non è disponibile per questo percorso");
    case FileProblem::other:
        break;
    }
    return tr("errore del sistema");
}

} // namespace mirtex
