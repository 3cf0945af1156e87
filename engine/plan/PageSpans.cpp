#include "engine/plan/PageSpans.h"

#include <QStringList>

namespace folivex {

QString pageSpans(const std::vector<int>& pages) {
  constexpr qsizetype shownSpans = 8;
  QStringList spans;
  qsizetype spanCount = 0;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const int first = pages[i];
    while (i + 1 < pages.size() && pages[i + 1] == pages[i] + 1) {
      ++i;
    }
    if (++spanCount <= shownSpans) {
      spans += first == pages[i] ? QString::number(first)
                                 : QStringLiteral("%1-%2").arg(first).arg(pages[i]);
    }
  }
  QString text = spans.join(QStringLiteral(", "));
  if (spanCount > shownSpans) {
    text += QStringLiteral(" and %1 more").arg(spanCount - shownSpans);
  }
  return text;
}

} // namespace folivex
