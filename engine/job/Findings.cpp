#include "engine/job/Findings.h"

#include "engine/plan/PageSpans.h"

namespace folivex {

QStringList Findings::lines() const {
  QStringList lines;
  if (!m_damaged.empty()) {
    lines += QStringLiteral("%1 page(s) are damaged and could be read in part only: %2")
                 .arg(m_damaged.size())
                 .arg(pageSpans(m_damaged));
  }
  if (!m_unreadable.empty()) {
    lines += QStringLiteral("%1 page(s) have text that cannot be read as words (\"OCR First\" may "
                            "help): %2")
                 .arg(m_unreadable.size())
                 .arg(pageSpans(m_unreadable));
  }
  if (m_read > 0 && m_empty == m_read) {
    lines +=
        QStringLiteral("No page has any text: the file may be a scan that needs \"OCR First\"");
  }
  return lines;
}

} // namespace folivex
