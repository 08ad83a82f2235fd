#include "core/tools/DateTimeText.h"

#include <unicode/udat.h>

namespace mirtex {

QString formatDateTime(const QDateTime &moment, DateTimeStyle style, const QLocale &locale)
{
    const bool isLong = style == DateTimeStyle::longForm;
    const QByteArray localeId = locale.name().toLatin1();
    UErrorCode status = U_ZERO_ERROR;
    // The default time zone: the system's, as the moment is shown on the clock.
    UDateFormat *format = udat_open(isLong ? UDAT_MEDIUM : UDAT_SHORT,
                                    isLong ? UDAT_FULL : UDAT_SHORT,
                                    localeId.constData(),
                                    nullptr,
                                    -1,
                                    nullptr,
                                    -1,
                                    &status);
    if (U_FAILURE(status))
        return locale.toString(moment, isLong ? QLocale::LongFormat : QLocale::ShortFormat);
    QString out(64, Qt::Uninitialized);
    const auto when = UDate(moment.toMSecsSinceEpoch());
    int32_t size = udat_format(
        format, when, reinterpret_cast<UChar *>(out.data()), int32_t(out.size()), nullptr, &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
        out.resize(size);
        status = U_ZERO_ERROR;
        size = udat_format(format,
                           when,
                           reinterpret_cast<UChar *>(out.data()),
                           int32_t(out.size()),
                           nullptr,
                           &status);
    }
    udat_close(format);
    if (U_FAILURE(status))
        return locale.toString(moment, isLong ? QLocale::LongFormat : QLocale::ShortFormat);
    out.truncate(size);
    return out;
}

} // namespace mirtex
