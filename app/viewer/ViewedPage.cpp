#include "app/viewer/ViewedPage.h"

#include <algorithm>
#include <cmath>

namespace folivex {

namespace {

constexpr double unitsAtFullZoom = 96.0 / 72.0;
/// A picture takes 4 bytes a pixel.
constexpr double mostPixels = 40e6;
/// Beyond this a window's coordinates become slow, far before they end.
constexpr double longestSheet = 100'000;

double fittingZoom(QSizeF pageSize, const PageSizing& sizing) {
  const double acrossRoom = std::max(sizing.room.width() - 2 * sheetMargin, 1);
  const double downRoom = std::max(sizing.room.height() - 2 * sheetMargin, 1);
  const double across = acrossRoom / (pageSize.width() * unitsAtFullZoom);
  const double down = downRoom / (pageSize.height() * unitsAtFullZoom);
  return sizing.fit == PageSizing::Fit::Width ? across : std::min(across, down);
}

} // namespace

qint64 ViewedPage::bytes() const {
  constexpr std::size_t wordBytes = sizeof(ViewedWord) + 48; // its text is somewhere else
  return image.sizeInBytes() + static_cast<qint64>(words.size() * wordBytes);
}

double zoomOf(QSizeF pageSize, const PageSizing& sizing) {
  const double wished =
      sizing.fit == PageSizing::Fit::Zoom ? sizing.zoom : fittingZoom(pageSize, sizing);
  const double longest = std::max(pageSize.width(), pageSize.height()) * unitsAtFullZoom;
  return std::min(std::min(wished, mostZoom), longestSheet / longest);
}

double unitsPerPoint(QSizeF pageSize, const PageSizing& sizing) {
  return zoomOf(pageSize, sizing) * unitsAtFullZoom;
}

double pixelsPerPoint(QSizeF pageSize, const PageSizing& sizing) {
  const double affordable = std::sqrt(mostPixels / (pageSize.width() * pageSize.height()));
  return std::min(unitsPerPoint(pageSize, sizing) * sizing.devicePixels, affordable);
}

} // namespace folivex
