// Makes test failures show QStrings as quoted UTF-8 text instead of lists of 2-byte objects.
#pragma once

#include <QString>

#include <ostream>

// In the global namespace, QString's own, so that GoogleTest finds it by argument lookup.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
