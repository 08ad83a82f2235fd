// Table-driven conversion for character sets of one byte per character (Windows, ISO, DOS, Mac).
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace mirtex {

// The byte <-> UTF-16 mapping of one single-byte character set, read once from its ICU converter.
// Immutable after construction, so one instance is shared by all threads.
class SingleByteCodec
{
public:
    // The shared codec for an ICU converter name; nullptr when ICU has no such converter or it is
    // not a single-byte set. Thread-safe; a table is built on first use and kept.
    static std::shared_ptr<const SingleByteCodec> forConverter(const char *converterName);

    // Strict: a byte the character set leaves undefined gives nothing.
    std::optional<QString> decode(QByteArrayView bytes) const;

    // Strict: a character without a byte of its own gives nothing (no best-fit substitutes).
    std::optional<QByteArray> encode(QStringView text) const;

    // Bytes 00..7F are ASCII (CR and LF included), which the two UTF-8 paths below require.
    bool isAsciiCompatible() const { return asciiCompatible_; }

    // Straight into UTF-8 (the editor's own form), every CR LF and lone CR turned into LF in the
    // same pass. Strict like decode().
    std::optional<QByteArray> decodeToUtf8(QByteArrayView bytes) const;

    // From UTF-8 with LF breaks, each LF written as `lineBreak`, in one pass. Ill-formed UTF-8
    // (decode()'s rules) or a character without a byte of its own gives nothing.
    std::optional<QByteArray> encodeFromUtf8(QByteArrayView utf8, QByteArrayView lineBreak) const;

private:
    static constexpr char16_t kUndefined = 0xFFFF;

    explicit SingleByteCodec(const char *converterName);

    // Marks `byte` undefined in both directions, for sets whose ICU table is more generous than
    // the character set's definition (Windows-1252's five holes). Only before sharing.
    void undefine(uchar byte);

    bool valid_ = false;
    // Bytes 00..7F map to themselves, which enables the 16-unit ASCII path of encode().
    bool asciiCompatible_ = false;
    std::array<char16_t, 256> toUnicode_{};
    // The UTF-8 form of each byte's character: up to three bytes, low byte first, and the length
    // in the top byte (0: undefined).
    std::array<quint32, 256> toUtf8_{};
    // Indexed by UTF-16 code unit: the byte, or -1. Derived from toUnicode_ so that encoding is
    // exactly the inverse of decoding.
    std::vector<qint16> fromUnicode_;
};

} // namespace mirtex
