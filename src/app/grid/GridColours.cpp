#include "app/grid/GridColours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavrel::app {

namespace {

namespace colours = grid::colours;

struct DarkForm {
    grid::Colour back;  ///< as the grid has it
    QRgb dark;
    QRgb text;
    CellSign sign;
};
constexpr std::array<DarkForm, 3> kPainted = {{
    {colours::kRed, qRgb(150, 20, 20), qRgb(255, 255, 255), CellSign::Corner},
    {colours::kOneSided, qRgb(62, 62, 140), qRgb(255, 255, 255), CellSign::Bar},
    {colours::kCompareBack, qRgb(0, 64, 64), qRgb(255, 150, 150), CellSign::Bold},
}};

QColor FromWindows(grid::Colour colour) {
    return {static_cast<int>(colour & 0xFFU), static_cast<int>(colour >> 8U & 0xFFU),
            static_cast<int>(colour >> 16U & 0xFFU)};
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

const DarkForm* PaintedForm(grid::Colour back) {
    const auto found = std::ranges::find(kPainted, back, &DarkForm::back);
    return found == kPainted.end() ? nullptr : &*found;
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

CellSign SignOf(grid::Colour back) {
    if (back == colours::kWhite) {
        return CellSign::None;
    }
    const DarkForm* form = PaintedForm(back);
    return form != nullptr ? form->sign : CellSign::Bold;
}

CellLook LookOf(grid::Colour back, grid::Colour text, const QPalette& palette) {
    if (back == colours::kWhite) {
        return {palette.color(QPalette::Base), palette.color(QPalette::Text), CellSign::None};
    }
    const DarkForm* form = PaintedForm(back);
    const CellSign sign = SignOf(back);
    if (form != nullptr && IsDark(palette)) {
        return {QColor(form->dark), QColor(form->text), sign};
    }
    return {FromWindows(back), FromWindows(text), sign};
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
