#include "engine/job/PageWindow.h"

#include <algorithm>

namespace folivex {

PageWindow pageWindow(int startFromPage, int startEndPage, int pageCount) {
  PageWindow window{startFromPage > 0 ? startFromPage - 1 : 0, pageCount};
  if (startEndPage > 0) {
    window.end = std::min(startEndPage, pageCount);
  } else if (startEndPage < 0 && startEndPage > -pageCount) {
    window.end = pageCount + startEndPage;
  }
  return window;
}

} // namespace folivex
