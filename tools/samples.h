// Pictures into the memory of a call, and back.
#pragma once

#include "tools/catalogue/image.h"
#include "tools/picture.h"

namespace zim::tool {

// Whether fill() can make this side of a picture without the library's help.
bool holdsColours(const catalogue::Side& side);

// Whether it is a mosaic of single colours, as mosaicOf() makes it.
bool isMosaic(const catalogue::Side& side);

// Of each pixel the one colour that a sensor with this grid sees there. Of a gray picture, which may be such a mosaic,
// that is the picture itself.
Picture mosaicOf(const Picture& picture, ZimBayerGrid grid);

// Integers take their whole range from black to white, floats 0 to 1. A picture without alpha is opaque.
void fill(catalogue::Image& image, const Picture& picture);

// Pixels between channels side by side.
inline constexpr int kChannelGap = 8;

// What a call with this source wrote: colours as a colour picture, other models as their channels side by side.
Picture show(const catalogue::Image& image, const catalogue::Side& source);

}  // namespace zim::tool
