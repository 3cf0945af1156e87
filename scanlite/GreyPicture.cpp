#include "scanlite/GreyPicture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace scanlite {

namespace {

// Millimetres. The largest gap inside a symbol is four modules of a coarse one; lines of text are
// farther apart than the cells are wide.
constexpr double cellSize = 0.5;
constexpr int cellsOfAGap = 3;
constexpr double smallestSymbol = 3.0;
constexpr double quietZone = 1.5;
// Symbols are black for nearly half of their area, text for a tenth; one that stands askew in its
// box still has a quarter.
constexpr double darkShare = 0.2;
// What is as low and long as a line of text must be darker than one.
constexpr double heightOfALine = 4.5;
constexpr int lengthOfALine = 3; // of its height
constexpr double darkShareOfALine = 0.3;
constexpr size_t mostPatches = 48;

int median(const GreyPicture& picture) {
  std::array<size_t, 256> counts{};
  for (const std::uint8_t pixel : picture.pixels) {
    ++counts[pixel];
  }
  size_t left = picture.pixels.size() / 2;
  int value = 0;
  while (value < 255 && counts[static_cast<size_t>(value)] <= left) {
    left -= counts[static_cast<size_t>(value++)];
  }
  return value;
}

/// The picture in cells: how many dark pixels each has.
struct Cells {
  int size;
  int columns;
  int rows;
  std::vector<int> dark;

  Cells(const GreyPicture& picture, double pixelsPerMillimetre)
      : size(std::max(2, static_cast<int>(std::lround(cellSize * pixelsPerMillimetre)))),
        columns((picture.width + size - 1) / size), rows((picture.height + size - 1) / size),
        dark(static_cast<size_t>(columns) * static_cast<size_t>(rows)) {
    const int limit = median(picture) * 6 / 10;
    auto pixel = picture.pixels.begin();
    for (int y = 0; y < picture.height; ++y) {
      for (int column = 0; column < columns; ++column) {
        const auto end = pixel + std::min(size, picture.width - column * size);
        at(column, y / size) += static_cast<int>(
            std::count_if(pixel, end, [&](std::uint8_t value) { return value < limit; }));
        pixel = end;
      }
    }
  }

  int& at(int column, int row) {
    return dark[static_cast<size_t>(row) * static_cast<size_t>(columns) +
                static_cast<size_t>(column)];
  }
  bool isMarked(int column, int row) { return at(column, row) * 8 > size * size; }
};

struct Patch {
  PixelBox cells;
  long darkPixels = 0;

  bool mayBeSymbol(int sizeOfCell) const {
    const auto [low, high] = std::minmax({cells.width(), cells.height()});
    const bool isLine = low * cellSize < heightOfALine && high >= lengthOfALine * low;
    const double area = 1.0 * cells.width() * cells.height() * sizeOfCell * sizeOfCell;
    return low * cellSize >= smallestSymbol &&
           static_cast<double>(darkPixels) >= (isLine ? darkShareOfALine : darkShare) * area;
  }
};

/// Takes a marked cell and all that hang together with it out of the cells.
Patch takePatch(Cells& cells, int column, int row) {
  Patch patch{{column, row, column + 1, row + 1}, 0};
  std::vector<std::pair<int, int>> waiting;
  const auto take = [&](int x, int y) {
    patch.cells = patch.cells.with({x, y, x + 1, y + 1});
    patch.darkPixels += cells.at(x, y);
    cells.at(x, y) = 0;
    waiting.emplace_back(x, y);
  };
  take(column, row);
  while (!waiting.empty()) {
    const auto [x, y] = waiting.back();
    waiting.pop_back();
    for (int ny = std::max(0, y - cellsOfAGap); ny <= std::min(cells.rows - 1, y + cellsOfAGap);
         ++ny) {
      for (int nx = std::max(0, x - cellsOfAGap);
           nx <= std::min(cells.columns - 1, x + cellsOfAGap); ++nx) {
        if (cells.isMarked(nx, ny)) {
          take(nx, ny);
        }
      }
    }
  }
  return patch;
}

} // namespace

PixelBox PixelBox::with(const PixelBox& other) const {
  return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
          std::max(bottom, other.bottom)};
}

GreyPicture GreyPicture::part(const PixelBox& box) const {
  const PixelBox inside{std::max(0, box.left), std::max(0, box.top), std::min(width, box.right),
                        std::min(height, box.bottom)};
  GreyPicture part;
  part.width = std::max(0, inside.width());
  part.height = std::max(0, inside.height());
  part.pixels.reserve(static_cast<size_t>(part.width) * static_cast<size_t>(part.height));
  for (int y = inside.top; y < inside.bottom; ++y) {
    const auto row = pixels.begin() + static_cast<std::ptrdiff_t>(y) * width;
    part.pixels.insert(part.pixels.end(), row + inside.left, row + inside.right);
  }
  return part;
}

GreyPicture GreyPicture::enlarged() const {
  GreyPicture large;
  large.width = 2 * width;
  large.height = 2 * height;
  large.pixels.reserve(4 * pixels.size());
  // Each new pixel lies a quarter of an old one off the middle of the nearest old one.
  for (int y = 0; y < large.height; ++y) {
    const int near = y / 2;
    const int far = std::clamp(near + (y % 2 == 0 ? -1 : 1), 0, height - 1);
    const std::uint8_t* const rows[] = {
        &pixels[static_cast<size_t>(near) * static_cast<size_t>(width)],
        &pixels[static_cast<size_t>(far) * static_cast<size_t>(width)]};
    for (int x = 0; x < large.width; ++x) {
      const int column = x / 2;
      const int beside = std::clamp(column + (x % 2 == 0 ? -1 : 1), 0, width - 1);
      large.pixels.push_back(static_cast<std::uint8_t>(
          (9 * rows[0][column] + 3 * rows[0][beside] + 3 * rows[1][column] + rows[1][beside] + 8) /
          16));
    }
  }
  return large;
}

std::vector<PixelBox> darkPatches(const GreyPicture& picture, double pixelsPerMillimetre) {
  Cells cells(picture, pixelsPerMillimetre);
  std::vector<PixelBox> patches;
  const int margin = static_cast<int>(std::lround(quietZone * pixelsPerMillimetre));
  for (int row = 0; row < cells.rows; ++row) {
    for (int column = 0; column < cells.columns; ++column) {
      if (!cells.isMarked(column, row)) {
        continue;
      }
      const Patch patch = takePatch(cells, column, row);
      const PixelBox box{patch.cells.left * cells.size, patch.cells.top * cells.size,
                         patch.cells.right * cells.size, patch.cells.bottom * cells.size};
      if (patch.mayBeSymbol(cells.size)) {
        patches.push_back(box.grownBy(margin));
      }
    }
  }
  const auto area = [](const PixelBox& box) {
    return static_cast<long>(box.width()) * box.height();
  };
  std::stable_sort(patches.begin(), patches.end(),
                   [&](const PixelBox& a, const PixelBox& b) { return area(a) > area(b); });
  if (patches.size() > mostPatches) {
    patches.resize(mostPatches);
  }
  return patches;
}

} // namespace scanlite
