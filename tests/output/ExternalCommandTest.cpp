// What an external command is started with.
#include "engine/output/ExternalCommand.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

TEST(ExternalCommand, Rows) {
  struct Row {
    const char* fault;
    QString program;
    QString parameters;
    QString source;
    QString target;
    const char* started; ///< program and arguments, each in brackets
  };
  const Row rows[] = {
      {"offered command", "c:\\splitpdf.exe", offeredExternalParams(), "c:\\in\\a.pdf",
       "c:\\out\\b.pdf", "[splitpdf.exe][c:\\in\\a.pdf][-oc:\\out\\b.pdf][-s3-5][-fxsa]"},
      {"mark of the offered command given to any other", "/opt/cut", "[START] [END]", "a", "b",
       "[/opt/cut][3][5]"},
      {"drive cut off another program's path", "c:\\tools\\splitpdf.exe", "[START]", "a", "b",
       "[c:\\tools\\splitpdf.exe][3]"},
      {"blank ends an argument that the operator did not quote", "/opt/cut", "[IN] [OUT]",
       "/in/my file.pdf", "b", "[/opt/cut][/in/my file.pdf][b]"},
      {"quote in a name adds an argument", "/opt/cut", "\"[IN]\" -o\"[OUT]\"", "a",
       "/out/x\" -rm \"y.pdf", "[/opt/cut][a][-o/out/x\" -rm \"y.pdf]"},
      {"placeholder in a name filled in", "/opt/cut", "\"[IN]\" [END]", "/in/[END][OUT].pdf", "b",
       "[/opt/cut][/in/[END][OUT].pdf][5]"},
      {"second occurrence left", "/opt/cut", "[START]-[START]", "a", "b", "[/opt/cut][3-3]"},
      {"no parameters", "/opt/cut", "", "a", "b", "[/opt/cut]"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    SplitSetup setup;
    setup.configExternalCommand = row.program;
    setup.configExternalParams = row.parameters;
    const ExternalCommand command = externalCommand(setup, row.source, row.target, 3, 5);
    const QString started = (QStringList(command.program) + command.arguments).join("][");
    EXPECT_EQ("[" + started + "]", row.started);
  }
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
