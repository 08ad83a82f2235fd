// Walking the editor's UTF-8 text while reporting positions in UTF-16 units, the program's unit:
// code point decoding both ways, and counting the UTF-16 length of a run of bytes a vector at a
// time. The text must be valid UTF-8 (as the editor holds it).
#pragma once

#include <QtGlobal>

#include <cstdint>
#include <string_view>

namespace mirtex {

// UTF-16 units of the valid UTF-8 bytes [begin, end): one per character, two for the four-byte
// ones.
qsizetype utf16LengthOfUtf8(const char *begin, const char *end);

inline qsizetype utf16LengthOfUtf8(std::string_view utf8)
{
    return utf16LengthOfUtf8(utf8.data(), utf8.data() + utf8.size());
}

// The byte at which the UTF-16 offset `utf16Offset` of `utf8` falls (the end when past it; the
// start of a four-byte character when the offset is inside its pair).
qsizetype utf8PositionOfUtf16(std::string_view utf8, qsizetype utf16Offset);

// The code point starting at byte `at` (< text.size()); `length` gets its byte count.
char32_t decodeUtf8At(std::string_view text, qsizetype at, int &length);

// The code point ending just before byte `at` (> 0).
char32_t decodeUtf8Before(std::string_view text, qsizetype at);

// Converts increasing byte positions of one text to UTF-16 offsets, counting only the bytes
// between one question and the next.
class Utf16Counter
{
public:
    explicit Utf16Counter(std::string_view utf8)
        : m_text(utf8)
    {}

    // `bytePosition` must not be less than the one asked before.
    qsizetype offsetOf(qsizetype bytePosition)
    {
        m_units += utf16LengthOfUtf8(m_text.data() + m_byte, m_text.data() + bytePosition);
        m_byte = bytePosition;
        return m_units;
    }

private:
    std::string_view m_text;
    qsizetype m_byte = 0;
    qsizetype m_units = 0;
};

} // namespace mirtex
