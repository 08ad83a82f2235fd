// An sRGB colour with alpha, as the core layer passes colours around without a GUI library.
#pragma once

#include <QString>

#include <cstdint>
#include <string_view>

namespace mirtex {

struct Rgba
{
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;

    // "#RRGGBB" with an alpha from 0 to 1 (rounded to the nearest byte). Evaluated at compile time
    // only, so a malformed literal fails the build instead of giving a wrong colour.
    static consteval Rgba fromHex(std::string_view hex, double alpha = 1.0)
    {
        if (hex.size() != 7 || hex[0] != '#' || alpha < 0.0 || alpha > 1.0)
            throw "colour literal must be #RRGGBB with an alpha in [0, 1]";
        return Rgba{
            byteAt(hex, 1), byteAt(hex, 3), byteAt(hex, 5), std::uint8_t(alpha * 255.0 + 0.5)};
    }

    // 0xAARRGGBB, the packing the GUI toolkit's colour type accepts.
    constexpr std::uint32_t argb() const
    {
        return std::uint32_t(a) << 24 | std::uint32_t(r) << 16 | std::uint32_t(g) << 8 | b;
    }

    constexpr double alphaF() const { return a / 255.0; }

    // "#RRGGBB", without the alpha.
    QString hexName() const
    {
        return QStringLiteral("#%1").arg(argb() & 0xFFFFFFu, 6, 16, QLatin1Char('0')).toUpper();
    }

    friend constexpr bool operator==(const Rgba &, const Rgba &) = default;

private:
    static consteval std::uint8_t nibble(char c)
    {
        if (c >= '0' && c <= '9')
            return std::uint8_t(c - '0');
        if (c >= 'A' && c <= 'F')
            return std::uint8_t(c - 'A' + 10);
        if (c >= 'a' && c <= 'f')
            return std::uint8_t(c - 'a' + 10);
        throw "not a hexadecimal digit";
    }

    static consteval std::uint8_t byteAt(std::string_view hex, std::size_t at)
    {
        return std::uint8_t(nibble(hex[at]) << 4 | nibble(hex[at + 1]));
    }
};

} // namespace mirtex
