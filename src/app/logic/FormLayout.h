// Where the controls go when the window has some size.
#pragma once

#include <vector>

#include "app/logic/ControlTable.h"

namespace tavrel::app {

/// Least outer width and height of the window, in twips.
inline constexpr int kSmallestWindow = 5000;
/// The path fields never get narrower than this: about ten characters can be read.
inline constexpr int kNarrowestPath = 1200;

/// Places in the order of ControlTable() for a client area of that size (twips).
std::vector<TwipRect> FormLayout(int clientWidth, int clientHeight);

/// Twips as logical pixels, to the nearest.
int Pixels(int twips);

}  // namespace tavrel::app
