// GreyPicture: a page, or a part of one, in shades of grey.
#pragma once

#include <cstdint>
#include <vector>

namespace scanlite {

/// In pixels from the top left; right and bottom are just outside.
struct PixelBox {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int width() const { return right - left; }
  int height() const { return bottom - top; }
  bool meets(const PixelBox& other) const {
    return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
  }
  bool hasMiddleOf(const PixelBox& other) const {
    const int x = (other.left + other.right) / 2;
    const int y = (other.top + other.bottom) / 2;
    return left <= x && x < right && top <= y && y < bottom;
  }
  PixelBox grownBy(int margin) const {
    return {left - margin, top - margin, right + margin, bottom + margin};
  }
  PixelBox with(const PixelBox& other) const;
};

struct GreyPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels; ///< rows from the top, no gap between them; 0 is black

  GreyPicture part(const PixelBox& box) const; ///< as much of the box as is inside
  GreyPicture enlarged() const;                ///< to twice its width and height
};

/// Where something as dark and as large as a barcode stands apart from the rest, largest first.
/// Many barcodes are found only in the middle of a picture of their own.
std::vector<PixelBox> darkPatches(const GreyPicture& picture, double pixelsPerMillimetre);

} // namespace scanlite
