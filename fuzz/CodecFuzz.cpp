// Any bytes: detection fails only after a broken mark, the one-pass UTF-8 paths agree with the
// UTF-16 ones, and text that encodes in its detected encoding reads back exactly (strict in both
// directions).
#include "FuzzMain.h"
#include "core/document/EncodingHint.h"
#include "core/document/LineEndingCount.h"
#include "core/document/TextCodec.h"

#include <cstdlib>

using namespace mirtex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ensureApplication();
    const QByteArrayView bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto decoded = TextCodec::decode(bytes, std::nullopt, LineEnding::lf);
    const auto direct = TextCodec::decodeToUtf8(bytes, std::nullopt, LineEnding::lf);
    // Only a byte-order mark followed by what its encoding cannot read fails detection.
    if (!decoded) {
        if (direct)
            std::abort();
        return 0;
    }
    if (!direct || direct->utf8 != decoded->text.toUtf8() || direct->encoding != decoded->encoding
        || direct->lineEnding != decoded->lineEnding)
        std::abort();
    (void)countLineEndings(bytes, decoded->encoding);
    (void)EncodingHint::suggest(bytes, decoded->encoding);

    const auto encoded = TextCodec::encode(decoded->text, decoded->encoding, LineEnding::lf);
    const auto encodedDirect
        = TextCodec::encodeFromUtf8(direct->utf8, decoded->encoding, LineEnding::lf);
    if (encoded != encodedDirect)
        std::abort();
    if (encoded) {
        const auto back = TextCodec::decodeText(*encoded, decoded->encoding);
        if (!back || back->text != decoded->text)
            std::abort();
    }
    return 0;
}
