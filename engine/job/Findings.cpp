#include "engine/job/Findings.h"

#include "engine/plan/PageSpans.h"

namespace folivex {

std::vector<Finding> Findings::all() const {
  std::vector<Finding> found;
  if (!m_damaged.empty()) {
    found.push_back({RunFinding::DamagedPages,
                     QStringLiteral("%1 page(s) are damaged and could be read in part only: %2")
                         .arg(m_damaged.size())
                         .arg(pageSpans(m_damaged)),
                     pageRuns(m_damaged)});
  }
  if (!m_unreadable.empty()) {
    found.push_back({RunFinding::IllegiblePages,
                     QStringLiteral("%1 page(s) have text that cannot be read as words (\"OCR "
                                    "First\" may help): %2")
                         .arg(m_unreadable.size())
                         .arg(pageSpans(m_unreadable)),
                     pageRuns(m_unreadable)});
  }
  if (m_read > 0 && m_empty == m_read) {
    found.push_back(
        {RunFinding::NoText,
         QStringLiteral("No page has any text: the file may be a scan that needs \"OCR First\"")});
  }
  return found;
}

} // namespace folivex
