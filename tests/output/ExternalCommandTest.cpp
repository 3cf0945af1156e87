// What an external command is started with.
#include "engine/output/ExternalCommand.h"
#include "tests/support/Rows.h"

using namespace folivex;
using namespace folivex::test;

/// A row: source, target, and the program and its arguments, each in brackets.
TEST(ExternalCommand, Rows) {
  forEachRow("output/external-commands.json", [](SplitSetup setup, const QStringList& row) {
    if (setup.configExternalParams == "offered") {
      setup.configExternalParams = offeredExternalParams();
    }
    const ExternalCommand command = externalCommand(setup, row[0], row[1], 3, 5);
    const QString started = (QStringList(command.program) + command.arguments).join("][");
    EXPECT_EQ("[" + started + "]", row[2]);
  });
}

TEST(ExternalCommand, UsedOnlyWhenItCanBe) {
  for (int bits = 0; bits < 8; ++bits) {
    SplitSetup setup;
    setup.configUseExternal = (bits & 1) != 0;
    setup.configExternalCommand = (bits & 2) != 0 ? QStringLiteral("/opt/cut") : QString();
    setup.alwaysAppend = (bits & 4) != 0;
    EXPECT_EQ(usesExternalCommand(setup), bits == 3) << bits;
  }
}
