#include "core/document/LineEnding.h"

namespace mirtex {

QString toString(LineEnding ending)
{
    switch (ending) {
    case LineEnding::crlf:
        return QStringLiteral("crlf");
    case LineEnding::cr:
        return QStringLiteral("cr");
    case LineEnding::lf:
        break;
    }
    return QStringLiteral("lf");
}

std::optional<LineEnding> lineEndingFromString(QStringView id)
{
    if (id == u"lf")
        return LineEnding::lf;
    if (id == u"crlf")
        return LineEnding::crlf;
    if (id == u"cr")
        return LineEnding::cr;
    return std::nullopt;
}

LineEnding lineEndingFromPreference(QStringView id)
{
    return lineEndingFromString(id).value_or(LineEnding::lf);
}

QString lineBreak(LineEnding ending)
{
    switch (ending) {
    case LineEnding::crlf:
        return QStringLiteral("\r\n");
    case LineEnding::cr:
        return QStringLiteral("\r");
    case LineEnding::lf:
        break;
    }
    return QStringLiteral("\n");
}

} // namespace mirtex
