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
  // By the whole path: two long ones may differ only behind what a record keeps.
  const auto known = m_byPath.constFind(record.outputPath);
  if (known != m_byPath.constEnd()) {
    m_records[*known].lastPage = record.lastPage;
    return;
  }
  m_byPath.insert(record.outputPath, m_records.size());
  EmailRecord kept = record;
  kept.matchedText.truncate(maxRecordText);
  kept.outputPath.truncate(maxRecordText);
  m_records.push_back(kept);
}

} // namespace folivex
