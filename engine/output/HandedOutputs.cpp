#include "engine/output/HandedOutputs.h"

#include "engine/output/CSplitPdfInit.h"
#include "platform/Paths.h"

#include <algorithm>

namespace folivex {

bool HandedOutputs::holds(const QString& path) const {
  return std::any_of(m_files.begin(), m_files.end(),
                     [&path](const HandedFile& file) { return file.path == path; });
}

std::vector<HandedOutputs::Fate> HandedOutputs::settled(int milliseconds) {
  std::vector<Fate> fates;
  if (m_files.empty()) {
    return fates;
  }
  m_split.DrainRanges(milliseconds);
  CSplitPdfInit::FinishedRange finished{};
  while (!m_files.empty() && m_split.TakeFinishedRange(&finished) != 0) {
    HandedFile& file = m_files.front();
    // A run that was broken off may have left some of its own on the list.
    if (file.ranges.front().firstPage == finished.first &&
        platform::withoutTrailingBlanks(file.path) == QString::fromUtf16(finished.target)) {
      fates.push_back(
          {std::move(file), finished.code, QString::fromUtf16(finished.reason), finished.file});
      m_files.pop_front();
    }
  }
  return fates;
}

} // namespace folivex
