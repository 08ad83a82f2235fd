// Strict conversion through an ICU converter, for the multi-byte and stateful character sets.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace mirtex::IcuCodec {

// Any illegal, truncated or unmappable sequence gives nothing, as does an unknown converter.
// Each call opens its own converter, so calls are thread-safe.
std::optional<QString> decode(QByteArrayView bytes, const char *converterName);

// Any character the set cannot represent gives nothing (invisible ones included); no substitutes
// or best fits are used, and the bytes must read back as exactly `text`.
std::optional<QByteArray> encode(QStringView text, const char *converterName);

} // namespace mirtex::IcuCodec
