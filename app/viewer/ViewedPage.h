// ViewedPage: one page as the viewer shows it.
#pragma once

#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>

#include <vector>

namespace folivex {

/// What is looked at.
struct ViewedFile {
  QString path;
  QString password = {};     ///< of the file; empty for none
  bool swapAxes = false;     ///< h and v are exchanged, as in a run over pages in landscape layout
  double wordSpacing = 1.02; ///< joining tolerance of words, as in a run

  bool operator==(const ViewedFile&) const = default;
};

/// What came of opening a file.
struct OpenedFile {
  int pageCount = 0;          ///< 0 when there is a problem
  QString problem;            ///< in plain words; empty when all is well
  bool needsPassword = false; ///< another password may open it
};

/// One word of a page.
struct ViewedWord {
  QString text;
  int h = 0; ///< where the search counts it as standing
  int v = 0;
  int lookupH = 0; ///< where a look-up by position finds it; differs from h where words run from
  int lookupV = 0; ///< right to left, or stand upon each other
  int line = 0;    ///< equal for the words of one visible line, growing downwards
  QRectF box;      ///< points from the top left of the page as shown
};

/// A page as it was read and drawn.
struct ViewedPage {
  int page = 0;                  ///< from 1
  QSizeF size;                   ///< points
  std::vector<ViewedWord> words; ///< in reading order
  QImage image;                  ///< null when the page could not be drawn
  double pixelsPerPoint = 0;     ///< the scale of `image`
  QString problem;               ///< what is wrong with the page, in plain words; may be empty

  qint64 bytes() const;
};

/// How large a page is to be shown. The room is what the window has for it, in window units, of
/// which one is `devicePixels` pixels.
struct PageSizing {
  enum class Fit { Width, Page, Zoom };

  Fit fit = Fit::Width;
  double zoom = 1; ///< for Fit::Zoom; 1 shows 72 points as 96 window units
  QSize room;
  double devicePixels = 1;

  bool operator==(const PageSizing&) const = default;
};

inline constexpr double leastZoom = 0.1;
inline constexpr double mostZoom = 4;
/// Left free around the sheet, window units.
inline constexpr int sheetMargin = 8;

/// The zoom that the sizing comes to for a page of this size in points.
double zoomOf(QSizeF pageSize, const PageSizing& sizing);
/// Window units a point.
double unitsPerPoint(QSizeF pageSize, const PageSizing& sizing);
/// Pixels a point to draw with: sharp, but for pictures that would take too much memory.
double pixelsPerPoint(QSizeF pageSize, const PageSizing& sizing);

} // namespace folivex
