// Any lines as the arguments of a start.
#include "app/CommandLine.h"
#include "fuzz/Targets.h"

#include <algorithm>

namespace fuzzing {

void runCommandLine(const QByteArray& input) {
  using Kind = folivex::CommandAction::Kind;
  QStringList arguments{QStringLiteral("folivex")};
  arguments += QString::fromUtf8(input).split(u'\n');
  const folivex::CommandLine line = folivex::parseCommandLine(arguments);
  require(line.error.isEmpty() == (line.errorCode == 0));
  require(line.error.isEmpty() || line.actions.empty());
  for (const folivex::CommandAction& action : line.actions) {
    require(action.kind != Kind::Close || &action == &line.actions.back());
    require(action.value.size() <= folivex::CommandLine::maxArgument + 1);
    require(action.kind != Kind::ProcessFile ||
            (!action.value.isEmpty() && !action.value.contains(u'*')));
  }
  // Without quotes of its own every argument stays one, blanks or not.
  if (std::ranges::none_of(arguments, [](const QString& a) { return a.contains(u'"'); })) {
    require(folivex::splitCommandLine(folivex::rebuildCommandLine(arguments)).size() ==
            arguments.size());
  }
}

} // namespace fuzzing
