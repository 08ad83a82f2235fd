#include "core/document/DocumentError.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace mirtex {

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("Document", text);
}
} // namespace

DocumentError DocumentError::unreadable(const QString &path, FileProblem problem)
{
    return {Kind::unreadable, path, {}, problem};
}

DocumentError DocumentError::undecodable(const QString &path, TextEncoding tried)
{
    return {Kind::undecodable, path, tried, FileProblem::other};
}

DocumentError DocumentError::unencodable(TextEncoding encoding)
{
    return {Kind::unencodable, {}, encoding, FileProblem::other};
}

DocumentError DocumentError::writeFailed(const QString &path, FileProblem problem)
{
    return {Kind::writeFailed, path, {}, problem};
}

QString DocumentError::description() const
{
    const QString name = QFileInfo(path).fileName();
    switch (kind) {
    case Kind::unreadable:
        return tr("Impossibile leggere “%1”.").arg(name);
    case Kind::undecodable:
        return tr("“%1” non si può leggere come %2.").arg(name, encoding.label());
    case Kind::unencodable:
        return tr("Alcuni caratteri non si possono scrivere in %1.").arg(encoding.label());
    case Kind::writeFailed:
        return tr("Impossibile salvare “%1”: %2").arg(name, describe(problem));
    }
    return {};
}

QString DocumentError::reason() const
{
    if (kind != Kind::unreadable)
        return {};
    QString why = describe(problem);
    if (!why.isEmpty())
        why[0] = why[0].toUpper();
    return why + u'.';
}

} // namespace mirtex
