#include "scanlite/Tool.h"

namespace scanlite {

folivex::platform::ChildRun runTool(const QString& name, const QStringList& arguments,
                                    const QString& workFolder) {
  folivex::platform::ChildProgram program;
  program.name = name;
  program.arguments = arguments;
  program.environment.insert(QStringLiteral("TMPDIR"), workFolder);
  program.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
  return runChild(program);
}

} // namespace scanlite
