// Any bytes as the file that holds a name a line. Read line by line or whole, it gives the same
// names.
#include "engine/naming/NameList.h"
#include "fuzz/Targets.h"

namespace fuzzing {

namespace {

QStringList namesOf(folivex::NameList& list) {
  QStringList names;
  while (true) {
    const QString name = list.take();
    if (list.state() != folivex::NameList::State::Line) {
      return names;
    }
    list.used(name.left(3), name);
    names += name;
  }
}

} // namespace

void runNameList(const QByteArray& input) {
  const QString path = workPath(QStringLiteral("names.txt"));
  writeWorkFile(path, input);
  folivex::NameList byLine(path);
  const QStringList names = namesOf(byLine);
  require(byLine.takeFindings().size() <= 11);
  folivex::NameList whole(path);
  whole.readWhole();
  require(namesOf(whole) == names);
}

} // namespace fuzzing
