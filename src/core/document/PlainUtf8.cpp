#include "core/document/PlainUtf8.h"

#include "core/document/TextCodec.h"
#include "core/document/Utf8Codec.h"

namespace mirtex::PlainUtf8 {

namespace {
bool startsWithMark(QByteArrayView data)
{
    // The five marks detection checks first. The UTF-16 and UTF-32 ones are not valid UTF-8
    // anyway; the UTF-8 one is, and would be dropped from the text.
    static constexpr QByteArrayView kMarks[] = {
        QByteArrayView("\xEF\xBB\xBF", 3),
        QByteArrayView("\xFF\xFE", 2),
        QByteArrayView("\xFE\xFF", 2),
        QByteArrayView("\x00\x00\xFE\xFF", 4),
    };
    for (QByteArrayView mark : kMarks) {
        if (data.startsWith(mark))
            return true;
    }
    return false;
}
} // namespace

std::optional<LineEnding> lineEnding(QByteArrayView data, LineEnding fallback)
{
    // Detection tries UTF-16 without a mark before UTF-8, and zero bytes are valid UTF-8: a
    // UTF-16-shaped file goes the long way even if its UTF-16 decoding would then fail.
    if (startsWithMark(data) || TextCodec::detectUTF16(data))
        return std::nullopt;
    bool containsCR = true;
    if (!Utf8Codec::isValid(data, &containsCR) || containsCR)
        return std::nullopt;
    return data.contains('\n') ? LineEnding::lf : fallback;
}

} // namespace mirtex::PlainUtf8
