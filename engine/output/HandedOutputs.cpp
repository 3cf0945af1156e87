#include "engine/output/HandedOutputs.h"

#include "engine/output/CSplitPdfInit.h"
#include "platform/Paths.h"

#include <algorithm>
#include <utility>

namespace folivex {

bool HandedOutputs::holds(const QString& path) const {
  return std::any_of(m_entries.begin(), m_entries.end(),
                     [&path](const Fate& entry) { return entry.file.path == path; });
}

void HandedOutputs::takeFailures() {
  CSplitPdfInit::FailedRange failed{};
  while (m_split.TakeFailedRange(&failed) != CSplitPdfInit::ok) {
    const QString target = QString::fromUtf16(failed.target);
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [&](const Fate& e) {
      return !e.failed && e.file.ranges.front().firstPage == failed.first &&
             platform::withoutTrailingBlanks(e.file.path) == target;
    });
    if (entry != m_entries.end()) {
      entry->failed = true;
      entry->problem = QString::fromUtf16(failed.reason);
    }
  }
}

std::vector<HandedOutputs::Fate> HandedOutputs::settled(int milliseconds) {
  if (m_entries.empty()) {
    return {};
  }
  // The count comes first: whatever fails after it is among the ones that are left.
  const auto left = static_cast<std::size_t>(std::max(m_split.DrainRanges(milliseconds), 0));
  takeFailures();
  const std::size_t done = m_entries.size() - std::min(left, m_entries.size());
  const auto end = m_entries.begin() + static_cast<std::ptrdiff_t>(done);
  std::vector<Fate> fates(std::make_move_iterator(m_entries.begin()), std::make_move_iterator(end));
  m_entries.erase(m_entries.begin(), end);
  return fates;
}

} // namespace folivex
