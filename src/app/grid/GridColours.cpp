#include "app/grid/GridColours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavrel::app {

namespace {

/// By role: the sign beside the colour.
constexpr std::array<CellSign, grid::kRoleColours.size()> kSigns = {CellSign::None, CellSign::Corner,
                                                                    CellSign::Bar, CellSign::Bold};

QColor FromWindows(grid::Colour colour) {
    return {static_cast<int>(grid::RedOf(colour)), static_cast<int>(grid::GreenOf(colour)),
            static_cast<int>(grid::BlueOf(colour))};
}

double Luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor Mix(const QColor& a, const QColor& b, double shareOfB) {
    const auto part = [shareOfB](int x, int y) {
        return static_cast<int>(std::lround(x + (y - x) * shareOfB));
    };
    return {part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue())};
}

QColor BlackOrWhite(const QColor& back) {
    return Contrast(back, Qt::black) >= Contrast(back, Qt::white) ? Qt::black : Qt::white;
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
    const double first = Luminance(a) + 0.05;
    const double second = Luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < 128;
}

CellSign SignOf(grid::CellRole role) {
    return kSigns[static_cast<std::size_t>(role)];
}

CellLook LookOf(grid::CellRole role, const QPalette& palette) {
    if (role == grid::CellRole::Plain) {
        return {palette.color(QPalette::Base), palette.color(QPalette::Text), CellSign::None};
    }
    const grid::RoleColours& colours = grid::ColoursOf(role);
    const grid::ColourPair& pair = IsDark(palette) ? colours.dark : colours.light;
    return {FromWindows(pair.back), FromWindows(pair.text), SignOf(role)};
}

CellLook LookOf(const grid::ResultGrid& grid, int column, int row, const QPalette& palette) {
    const grid::CellRole role = grid.Role(column, row);
    CellLook look = LookOf(role, palette);
    if (const grid::Colour back = grid.BackColor(column, row); back != grid::ColoursOf(role).light.back) {
        look.back = FromWindows(back);
        look.text = BlackOrWhite(look.back);
    }
    return look;
}

CellLook Selected(const CellLook& look, const QPalette& palette) {
    const QColor highlight = palette.color(QPalette::Highlight);
    if (look.sign == CellSign::None) {
        return {highlight, palette.color(QPalette::HighlightedText), look.sign};
    }
    const QColor back = Mix(look.back, highlight, 0.5);
    return {back, BlackOrWhite(back), look.sign};
}

QColor GridLineColour(const QPalette& palette) {
    return Mix(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.18);
}

}  // namespace tavrel::app
