// The current date and time as the user's locale writes them (ICU's date formats), for the
// command that inserts them.
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace mirtex {

enum class DateTimeStyle {
    longForm,  // full date (weekday, day, month name, year), medium time (with seconds)
    shortForm, // short date, short time
};

QString formatDateTime(const QDateTime &moment, DateTimeStyle style, const QLocale &locale);

} // namespace mirtex
