// How two texts are compared: which differences between lines do not count.
#pragma once

namespace mirtex {

struct DiffOptions
{
    bool ignoreWhitespace = false; // every horizontal white-space character is dropped
    bool ignoreCase = false;       // lines are compared lower-cased

    // The options as one small integer: bit 0 ignoreWhitespace, bit 8 ignoreCase; other bits are
    // never looked at.
    constexpr int toBits() const { return (ignoreWhitespace ? 1 : 0) | (ignoreCase ? 0x100 : 0); }

    static constexpr DiffOptions fromBits(int bits)
    {
        return DiffOptions{(bits & 1) != 0, (bits & 0x100) != 0};
    }

    friend constexpr bool operator==(const DiffOptions &, const DiffOptions &) = default;
};

} // namespace mirtex
