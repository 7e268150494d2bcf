// The program's icon: two tables side by side with the mark between them.
#pragma once

#include <QIcon>
#include <QImage>

namespace tavrel::app {

/// Edge lengths in pixels that desktops ask for.
inline constexpr int kIconSizes[] = {16, 24, 32, 48, 64, 128, 256};

/// The picture in one size.  Needs no screen.
QImage IconImage(int size);

QIcon AppIcon();

}  // namespace tavrel::app
