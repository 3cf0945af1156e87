#include "engine/output/EmailRecords.h"

#include "engine/base/Text.h"

#include <utility>

namespace folivex {

namespace {

constexpr qsizetype maxRecordText = 255;

/// Pages without an address are nobody else's.
bool isAnother(const QString& one, const QString& other) {
  return !one.isEmpty() && !other.isEmpty() && one.compare(other, Qt::CaseInsensitive) != 0;
}

} // namespace

void EmailRecords::clear() {
  m_records.clear();
  m_byPath.clear();
}

void EmailRecords::record(const EmailRecord& record, Repeat repeat) {
  const auto known = m_byPath.constFind(record.outputPath);
  if (known != m_byPath.constEnd()) {
    EmailRecord& earlier = m_records[*known];
    earlier.lastPage = record.lastPage;
    if (repeat == Repeat::Replaced) {
      earlier.addresses = record.addresses;
    } else {
      earlier.addressesDiffer |= isAnother(earlier.addresses.address, record.addresses.address);
      addFurther(earlier.addresses, record.addresses);
    }
    return;
  }
  m_byPath.insert(record.outputPath, m_records.size());
  EmailRecord kept = record;
  cutText(kept.matchedText, maxRecordText);
  m_records.push_back(kept);
}

void EmailRecords::complete(const std::function<void(EmailRecord&)>& change) {
  for (EmailRecord& record : m_records) {
    change(record);
  }
}

void EmailRecords::drop(const QSet<QString>& paths) {
  if (paths.isEmpty()) {
    return;
  }
  std::vector<EmailRecord> records;
  m_byPath.clear();
  for (EmailRecord& record : m_records) {
    if (!paths.contains(record.outputPath)) {
      m_byPath.insert(record.outputPath, records.size());
      records.push_back(std::move(record));
    }
  }
  m_records = std::move(records);
}

} // namespace folivex
