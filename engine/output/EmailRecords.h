// EmailRecords: the outputs that a run made, for the e-mail list.
#pragma once

#include "engine/output/PageAddresses.h"
#include "platform/FileDigest.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <vector>

namespace folivex {

/// One output on its way to the e-mail list. Pages count from 1, inclusive.
struct EmailRecord {
  int firstPage = 0;
  int lastPage = 0;
  QString matchedText;            ///< at most 255 characters
  QString outputPath;             ///< whole: mail attaches what lies there
  AddressReader::Found addresses; ///< that its pages hold
  /// Of the file as the run left it: what is at the path later may be another one. Not known when
  /// it could not be read.
  platform::FileDigest identity = {};
  bool addressesDiffer = false;   ///< it grew by pages of somebody else
  bool holdsEarlierPages = false; ///< it was there before the run, which added to it
};

/// One record an output, in the order in which the outputs were first made.
class EmailRecords {
public:
  void clear();
  /// What a further range with the path of an earlier one does to its file.
  enum class Repeat {
    Grows,   ///< it holds the pages of both: mail goes to the address that was there first
    Replaced ///< it holds the later pages alone: mail goes to their address
  };

  /// Adds a record; of one that has the same output path only the last page is replaced, and the
  /// addresses as `repeat` says.
  void record(const EmailRecord& record, Repeat repeat);
  /// What is known only when the outputs are written goes into each of them.
  void complete(const std::function<void(EmailRecord&)>& change);
  /// Forgets the outputs with these paths: what was not written must not be mailed, nor what an
  /// earlier run left in its place.
  void drop(const QSet<QString>& paths);

  const std::vector<EmailRecord>& all() const { return m_records; }

private:
  std::vector<EmailRecord> m_records;
  QHash<QString, std::size_t> m_byPath;
};

} // namespace folivex
