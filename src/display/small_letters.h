#pragma once

#include "display/picture.h"

#include <string_view>

namespace tarvo {

// Lettering for pictures that are drawn without a toolkit: capitals 7 pixels high, 6 pixels from letter to letter.
inline constexpr int kLetterHeight = 9; // with what hangs below the line, and a row above

// Pixels that a text takes; scale: of each of the letters' pixels. text is UTF-8.
int lettering_width(std::string_view text, int scale);

// Draws a text whose top left corner is at (x, y), each pixel of a letter as a block of scale x scale. Letters with
// accents are drawn without them, what has no letter here as a box.
void draw_lettering(Picture& picture, std::string_view text, int x, int y, int scale, Colour colour);

} // namespace tarvo
