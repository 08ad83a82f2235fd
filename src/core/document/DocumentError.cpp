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

DocumentError DocumentError::unreadable(const QString &path)
{
    return {Kind::unreadable, path, {}, {}};
}

DocumentError DocumentError::undecodable(const QString &path, TextEncoding tried)
{
    return {Kind::undecodable, path, tried, {}};
}

DocumentError DocumentError::unencodable(TextEncoding encoding)
{
    return {Kind::unencodable, {}, encoding, {}};
}

DocumentError DocumentError::writeFailed(const QString &path, const QString &systemMessage)
{
    return {Kind::writeFailed, path, {}, systemMessage};
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
        return tr("Impossibile salvare “%1”: %2").arg(name, systemMessage);
    }
    return {};
}

} // namespace mirtex
