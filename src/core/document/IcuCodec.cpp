#include "core/document/IcuCodec.h"

#include "core/document/HugePageHint.h"

#include <unicode/ucnv.h>

#include <memory>

namespace mirtex::IcuCodec {

namespace {
struct ConverterCloser
{
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};

using Converter = std::unique_ptr<UConverter, ConverterCloser>;

// ICU's own stop callback lets default-ignorable characters (soft hyphen, zero-width spaces and
// joiners, direction marks, variation selectors) that a set cannot hold vanish silently. This one
// leaves the error in place for every unmappable character.
void stopAlways(const void *,
                UConverterFromUnicodeArgs *,
                const UChar *,
                int32_t,
                UChar32,
                UConverterCallbackReason,
                UErrorCode *)
{}

// Opens a converter that stops at the first bad sequence in both directions. Fallback mappings
// stay off (ICU's default), so encoding never picks a look-alike character.
Converter openStrict(const char *converterName)
{
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(converterName, &status));
    if (U_FAILURE(status))
        return nullptr;
    ucnv_setToUCallBack(
        converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter.get(), stopAlways, nullptr, nullptr, nullptr, &status);
    ucnv_setFallback(converter.get(), false);
    if (U_FAILURE(status))
        return nullptr;
    return converter;
}
} // namespace

std::optional<QString> decode(QByteArrayView bytes, const char *converterName)
{
    Converter converter = openStrict(converterName);
    if (!converter)
        return std::nullopt;
    // Every set here needs at least one byte per UTF-16 unit; the loop grows the buffer anyway
    // in case a converter does not.
    QString text(bytes.size() + 16, Qt::Uninitialized);
    adviseHugePages(text.data(), size_t(text.size()) * sizeof(QChar));
    const char *source = bytes.data();
    const char *const sourceEnd = source + bytes.size();
    qsizetype written = 0;
    for (;;) {
        auto *targetBegin = reinterpret_cast<UChar *>(text.data());
        UChar *target = targetBegin + written;
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(),
                       &target,
                       targetBegin + text.size(),
                       &source,
                       sourceEnd,
                       nullptr,
                       true,
                       &status);
        written = target - targetBegin;
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            text.resize(text.size() * 2);
            continue;
        }
        if (U_FAILURE(status))
            return std::nullopt;
        break;
    }
    text.resize(written);
    return text;
}

std::optional<QByteArray> encode(QStringView text, const char *converterName)
{
    Converter converter = openStrict(converterName);
    if (!converter)
        return std::nullopt;
    // Room for the worst case up front, plus slack for a stateful set's closing shift sequence.
    QByteArray bytes(text.size() * ucnv_getMaxCharSize(converter.get()) + 16, Qt::Uninitialized);
    adviseHugePages(bytes.data(), size_t(bytes.size()));
    const UChar *source = reinterpret_cast<const UChar *>(text.utf16());
    const UChar *const sourceEnd = source + text.size();
    qsizetype written = 0;
    for (;;) {
        char *targetBegin = bytes.data();
        char *target = targetBegin + written;
        UErrorCode status = U_ZERO_ERROR;
        ucnv_fromUnicode(converter.get(),
                         &target,
                         targetBegin + bytes.size(),
                         &source,
                         sourceEnd,
                         nullptr,
                         true,
                         &status);
        written = target - targetBegin;
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            bytes.resize(bytes.size() * 2);
            continue;
        }
        if (U_FAILURE(status))
            return std::nullopt;
        break;
    }
    bytes.resize(written);
    // Some tables still map a character one way only (a private-use character written as a
    // look-alike that reads back as another): only bytes that read back as the text will do.
    const std::optional<QString> back = decode(bytes, converterName);
    if (!back || *back != text)
        return std::nullopt;
    return bytes;
}

} // namespace mirtex::IcuCodec
