#include "engine/output/EmailRecords.h"

namespace folivex {

namespace {

constexpr qsizetype maxRecordText = 255;

} // namespace

void EmailRecords::clear() {
  m_records.clear();
  m_byPath.clear();
}

void EmailRecords::record(const EmailRecord& record) {
  EmailRecord kept = record;
  kept.matchedText.truncate(maxRecordText);
  kept.outputPath.truncate(maxRecordText);
  const auto known = m_byPath.constFind(kept.outputPath);
  if (known != m_byPath.constEnd()) {
    m_records[*known].lastPage = kept.lastPage;
    return;
  }
  m_byPath.insert(kept.outputPath, m_records.size());
  m_records.push_back(kept);
}

} // namespace folivex
