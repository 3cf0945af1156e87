// Any bytes as an e-mail list and as the journal beside it (behind a line of "----"). Written
// again, the list holds the same rows, unless the person is told otherwise.
#include "fuzz/Targets.h"
#include "mail/EmailListFile.h"

#include <QFile>

#include <algorithm>

namespace fuzzing {

namespace {

bool readsAlike(const folivex::EmailRow& a, const folivex::EmailRow& b) {
  return a.entry.address == b.entry.address && a.entry.file == b.entry.file &&
         a.shownPageStart == b.shownPageStart && a.shownPageEnd == b.shownPageEnd;
}

} // namespace

void runEmailList(const QByteArray& input) {
  const QByteArrayList parts = partsOf(input, 2);
  const QString path = workPath(QStringLiteral("emails.lst"));
  const QString journal = folivex::SendJournal::pathBeside(path);
  writeWorkFile(path, parts[0]);
  writeWorkFile(journal, parts[1]);
  folivex::EmailList list;
  if (!folivex::loadEmailList(list, path).ok || list.isEmpty()) {
    return;
  }
  const folivex::EmailListResult saved = folivex::saveEmailList(list, path);
  require(saved.ok);
  folivex::EmailList back;
  require(folivex::loadEmailList(back, path).ok);
  require(!saved.note.isEmpty() || std::ranges::equal(list.rows(), back.rows(), readsAlike));
}

} // namespace fuzzing
