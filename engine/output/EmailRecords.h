// EmailRecords: the outputs that a run made, for the e-mail list.
#pragma once

#include <QHash>
#include <QString>

#include <vector>

namespace folivex {

/// One output on its way to the e-mail list. Pages count from 1, inclusive.
struct EmailRecord {
  int firstPage = 0;
  int lastPage = 0;
  QString matchedText; ///< at most 255 characters
  QString outputPath;  ///< at most 255 characters
};

/// One record an output, in the order in which the outputs were first made.
class EmailRecords {
public:
  void clear();
  /// Adds a record; of one that has the same output path only the last page is replaced.
  void record(const EmailRecord& record);

  const std::vector<EmailRecord>& all() const { return m_records; }

private:
  std::vector<EmailRecord> m_records;
  QHash<QString, std::size_t> m_byPath;
};

} // namespace folivex
