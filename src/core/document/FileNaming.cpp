#include "core/document/FileNaming.h"

#include <QCoreApplication>
#include <QLocale>

#include <array>

namespace mirtex {

QString nextUntitledName(const QStringList &inUse)
{
    const QString base = QCoreApplication::translate("Document", "nuovo");
    for (int n = 1;; ++n) {
        const QString candidate = base + u' ' + QString::number(n);
        if (!inUse.contains(candidate))
            return candidate;
    }
}

QString formatFileSize(qint64 bytes)
{
    if (bytes < 1000)
        return QCoreApplication::translate("Document", "%n byte", nullptr, int(bytes));
    static constexpr std::array<const char *, 5> kUnits = {"kB", "MB", "GB", "TB", "PB"};
    double value = double(bytes);
    std::size_t unit = 0;
    value /= 1000.0;
    while (value >= 999.5 && unit + 1 < kUnits.size()) {
        value /= 1000.0;
        ++unit;
    }
    // Three significant digits at most, as file sizes are usually shown.
    const int decimals = value < 10 ? 1 : 0;
    const QLocale locale;
    QString number = locale.toString(value, 'f', decimals);
    const QString zeroDecimal = QString(locale.decimalPoint()) + u'0';
    if (number.endsWith(zeroDecimal))
        number.chop(zeroDecimal.size());
    return number + u' ' + QLatin1String(kUnits[unit]);
}

} // namespace mirtex
