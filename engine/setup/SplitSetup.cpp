#include "engine/setup/SplitSetup.h"

#include "engine/setup/SplitMethod.h"
#include "platform/Paths.h"

namespace folivex {

SplitSetup defaultSetup() {
  SplitSetup setup;
  setup.outputDir = platform::defaultOutputFolder();
  return setup;
}

QString outputFolderOf(const SplitSetup& setup, const QString& source) {
  if (setup.splitToSource) {
    return platform::folderOf(source);
  }
  const QString folder = platform::withoutTrailingBlanks(setup.outputDir);
  return folder.isEmpty() ? platform::defaultOutputFolder() : folder;
}

SplitSetup runSetup(SplitSetup setup) {
  setup.fileName = platform::withoutTrailingBlanks(setup.fileName);
  setup.outputDir = outputFolderOf(setup, setup.fileName);
  return setup;
}

QString contradictionIn(const SplitSetup& setup) {
  const SplitMethodTraits& method = splitTraitsOf(setup.pageExtract);
  if (method.atPosition && !method.untilWord && setup.findString.contains(QLatin1Char(' '))) {
    return QStringLiteral("When using h,v position only one word is allowed in search, that word "
                          "is the position");
  }
  return {};
}

} // namespace folivex
