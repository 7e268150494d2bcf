// The window's type.
#pragma once

#include <QFont>

namespace tavrel::app {

/// A font that has Korean letters, in the size for which the window is designed: 9 points at 96 dpi, in
/// logical pixels, so that the texts keep their proportion to the places of the controls at any scaling.
QFont FormFont(int pixelSize = 12);

/// About 20 points.
inline constexpr int kMessageFieldPixels = 27;

}  // namespace tavrel::app
