// Any bytes as a batch list. Written again, it holds the same rows.
#include "batch/ListFile.h"
#include "fuzz/Targets.h"

namespace fuzzing {

void runBatchList(const QByteArray& input) {
  const folivex::ListFileContent content = folivex::parseListFile(input);
  const QString path = workPath(QStringLiteral("batch.lst"));
  const folivex::ListFileSaved saved = folivex::writeListFile(path, content.entries);
  require(saved.failure.isEmpty());
  const folivex::ListFileContent back = folivex::readListFile(path);
  require(back.failure.isEmpty());
  require(saved.notKept > 0 || (back.entries == content.entries && back.cutLine == 0));
}

} // namespace fuzzing
