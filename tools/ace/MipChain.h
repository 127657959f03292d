// Mip-maps: the ever smaller copies of a texture that the renderer uses at a distance.
#pragma once

#include <vector>

#include "ace/Image.h"

namespace railwright::ace {

// The reader refuses mip-maps on anything but a square whose side is a power of two.
bool TakesMipMaps(const Image& image);

// The image at half the size in each direction (which must both be even or 1): each pixel the
// mean of the 2×2 pixels it covers, rounded. When the image has alpha, colours are weighted by
// their alpha so that the colour under transparent pixels does not bleed into visible ones.
Image HalveImage(const Image& image);

// The levels below `top`, each half the size of the one before, down to 1×1. `top` must take
// mip-maps.
std::vector<Image> MipLevelsBelow(const Image& top);

}  // namespace railwright::ace
