#include "engine/plan/PageSpans.h"

#include <QStringList>

#include <algorithm>

namespace folivex {

std::vector<IntRange> pageRuns(const std::vector<int>& pages) {
  std::vector<IntRange> runs;
  for (const int page : pages) {
    if (runs.empty() || runs.back().high + 1 != page) {
      runs.push_back({page, page});
    } else {
      runs.back().high = page;
    }
  }
  return runs;
}

QString pageSpans(const std::vector<int>& pages) {
  constexpr std::size_t shownSpans = 8;
  const std::vector<IntRange> runs = pageRuns(pages);
  QStringList spans;
  for (std::size_t i = 0; i < std::min(runs.size(), shownSpans); ++i) {
    const auto& [first, last] = runs[i];
    spans += first == last ? QString::number(first) : QStringLiteral("%1-%2").arg(first).arg(last);
  }
  QString text = spans.join(QStringLiteral(", "));
  if (runs.size() > shownSpans) {
    text += QStringLiteral(" and %1 more").arg(runs.size() - shownSpans);
  }
  return text;
}

} // namespace folivex
