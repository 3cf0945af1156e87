#include "engine/output/EmailRecords.h"

#include <utility>

namespace folivex {

namespace {

constexpr qsizetype maxRecordText = 255;

} // namespace

void EmailRecords::clear() {
  m_records.clear();
  m_paths.clear();
  m_byPath.clear();
}

void EmailRecords::record(const EmailRecord& record, Repeat repeat) {
  // By the whole path: two long ones may differ only behind what a record keeps.
  const auto known = m_byPath.constFind(record.outputPath);
  if (known != m_byPath.constEnd()) {
    EmailRecord& earlier = m_records[*known];
    earlier.lastPage = record.lastPage;
    if (repeat == Repeat::Replaced) {
      earlier.addresses = record.addresses;
    } else {
      addFurther(earlier.addresses, record.addresses);
    }
    return;
  }
  m_byPath.insert(record.outputPath, m_records.size());
  EmailRecord kept = record;
  kept.matchedText.truncate(maxRecordText);
  kept.outputPath.truncate(maxRecordText);
  m_records.push_back(kept);
  m_paths.push_back(record.outputPath);
}

void EmailRecords::drop(const QSet<QString>& paths) {
  if (paths.isEmpty()) {
    return;
  }
  std::vector<EmailRecord> records;
  std::vector<QString> recordPaths;
  m_byPath.clear();
  for (std::size_t i = 0; i < m_records.size(); ++i) {
    if (!paths.contains(m_paths[i])) {
      m_byPath.insert(m_paths[i], records.size());
      records.push_back(std::move(m_records[i]));
      recordPaths.push_back(std::move(m_paths[i]));
    }
  }
  m_records = std::move(records);
  m_paths = std::move(recordPaths);
}

} // namespace folivex
