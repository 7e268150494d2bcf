// What the comparison found out about a cell, and the one table of colours for what a cell then is: the
// window, the page and the terminal take theirs from here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavrel::grid {

/// Windows colour value, 0x00BBGGRR.
using Colour = std::uint32_t;

constexpr Colour Rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | green << 8 | blue << 16;
}
constexpr std::uint32_t RedOf(Colour colour) {
    return colour & 0xFFU;
}
constexpr std::uint32_t GreenOf(Colour colour) {
    return colour >> 8U & 0xFFU;
}
constexpr std::uint32_t BlueOf(Colour colour) {
    return colour >> 16U & 0xFFU;
}

/// A finding, set by the alignment.
enum class CellMark : std::uint8_t {
    None,
    Differs,  ///< not the text that the other side has in the same field
    OneSided  ///< the name of a field that the other side does not have
};

/// What a cell is to those who look at it.
enum class CellRole : std::uint8_t {
    Plain,
    Differs,
    OneSided,
    Compare  ///< a cell of the compare column
};

struct ColourPair {
    Colour back;
    Colour text;
};

struct RoleColours {
    ColourPair light;
    ColourPair dark;
};

/// By CellRole.  A plain cell takes the desktop's or the page's own colours where there are such.
inline constexpr std::array<RoleColours, 4> kRoleColours = {{
    {.light = {Rgb(255, 255, 255), Rgb(0, 0, 0)}, .dark = {Rgb(30, 30, 30), Rgb(230, 230, 230)}},
    {.light = {Rgb(255, 0, 0), Rgb(0, 0, 0)}, .dark = {Rgb(150, 20, 20), Rgb(255, 255, 255)}},
    {.light = {Rgb(192, 192, 255), Rgb(0, 0, 0)}, .dark = {Rgb(62, 62, 140), Rgb(255, 255, 255)}},
    {.light = {Rgb(128, 255, 255), Rgb(255, 0, 0)}, .dark = {Rgb(0, 64, 64), Rgb(255, 150, 150)}},
}};

constexpr const RoleColours& ColoursOf(CellRole role) {
    return kRoleColours[static_cast<std::size_t>(role)];
}

}  // namespace tavrel::grid
