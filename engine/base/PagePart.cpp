#include "engine/base/PagePart.h"

namespace folivex {

PagePart PagePart::of(QStringView text) {
  const qsizetype dash = text.indexOf(u'-');
  const PagePart none{0, 0};
  if (dash < 0) {
    return none;
  }
  bool isFirst = false;
  bool isLast = false;
  const PagePart part{text.first(dash).toInt(&isFirst), text.sliced(dash + 1).toInt(&isLast)};
  return isFirst && isLast ? part : none;
}

} // namespace folivex
