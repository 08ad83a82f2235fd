// Why reading or writing a document failed, with the message the user sees.
#pragma once

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
    QString systemMessage; // the system's own words, for writeFailed

    static DocumentError unreadable(const QString &path);
    static DocumentError undecodable(const QString &path, TextEncoding tried);
    static DocumentError unencodable(TextEncoding encoding);
    static DocumentError writeFailed(const QString &path, const QString &systemMessage);

    QString description() const;
};

} // namespace mirtex
