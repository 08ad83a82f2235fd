// Why reading or writing a document failed, with the message the user sees.
#pragma once

#include "core/document/FileProblem.h"
#include "core/document/TextEncoding.h"

#include <QString>

namespace mirtex {

struct DocumentError
{
    enum class Kind {
        unreadable,
        undecodable,
        unencodable,
        writeFailed
    };

    Kind kind = Kind::unreadable;
    QString path;          // the file, for unreadable / undecodable / writeFailed
    TextEncoding encoding; // the encoding tried, for undecodable / unencodable
    FileProblem problem = FileProblem::other; // why, for unreadable and writeFailed

    static DocumentError unreadable(const QString &path, FileProblem problem = FileProblem::other);
    static DocumentError undecodable(const QString &path, TextEncoding tried);
    static DocumentError unencodable(TextEncoding encoding);
    static DocumentError writeFailed(const QString &path, FileProblem problem);

    // The message of the alert.
    QString description() const;
    // Why, for the alert's informative text ("permesso negato"); empty when the message says it.
    QString reason() const;
};

} // namespace mirtex
