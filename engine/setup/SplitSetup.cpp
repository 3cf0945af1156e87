#include "engine/setup/SplitSetup.h"

#include "platform/Paths.h"

namespace folivex {

SplitSetup defaultSetup() {
  SplitSetup setup;
  setup.outputDir = platform::defaultOutputFolder();
  return setup;
}

} // namespace folivex
