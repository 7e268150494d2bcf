#include "app/AppIcon.h"

#include <QPainter>
#include <QPixmap>

namespace tavrel::app {

namespace {

/// All measures are in a square of 64; packaging/kr.ardel.Tavrel.svg is the same drawing.
constexpr double kSquare = 64;

struct Block {
    QRectF place;
    QRgb colour;
    double radius;
};
const Block kBlocks[] = {
    {{2, 8, 60, 48}, qRgb(58, 74, 120), 6},      // the board
    {{6, 12, 22, 40}, qRgb(255, 255, 255), 2},   // sheet of side A
    {{36, 12, 22, 40}, qRgb(255, 255, 255), 2},  // sheet of side B
    {{6, 12, 22, 8}, qRgb(192, 192, 255), 2},    // their headers
    {{36, 12, 22, 8}, qRgb(192, 192, 255), 2},
    {{9, 24, 16, 4}, qRgb(150, 158, 180), 1},  // rows
    {{39, 24, 16, 4}, qRgb(150, 158, 180), 1},
    {{9, 32, 16, 6}, qRgb(224, 32, 32), 1},  // the row that differs
    {{39, 32, 16, 6}, qRgb(224, 32, 32), 1},
    {{9, 42, 16, 4}, qRgb(150, 158, 180), 1},
    {{39, 42, 16, 4}, qRgb(150, 158, 180), 1},
    {{30, 22, 4, 16}, qRgb(128, 255, 255), 1},  // the mark
    {{30, 42, 4, 4}, qRgb(128, 255, 255), 1},
};

}  // namespace

QImage IconImage(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kSquare, size / kSquare);
    painter.setPen(Qt::NoPen);
    for (const Block& block : kBlocks) {
        painter.setBrush(QColor(block.colour));
        painter.drawRoundedRect(block.place, block.radius, block.radius);
    }
    return image;
}

QIcon AppIcon() {
    QIcon icon;
    for (const int size : kIconSizes) {
        icon.addPixmap(QPixmap::fromImage(IconImage(size)));
    }
    return icon;
}

}  // namespace tavrel::app
