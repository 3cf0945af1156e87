// What an external command is started with.
#include "engine/output/ExternalCommand.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

namespace {

struct Row {
  const char* fault;
  const char* program;
  const char* parameters;
  const char* source;
  const char* target;
  const char* started; ///< program and arguments, each in brackets
};

} // namespace

TEST(ExternalCommand, Rows) {
  const std::string offered = offeredExternalParams().toStdString();
  const Row rows[] = {
      {"offered command", "c:\\splitpdf.exe", offered.c_str(), "c:\\in\\a.pdf", "c:\\out\\b.pdf",
       "[splitpdf.exe][c:\\in\\a.pdf][-oc:\\out\\b.pdf][-s3-5][-fxsa]"},
      {"mark of the offered command given to any other", "/opt/cut", "[START] [END]", "a", "b",
       "[/opt/cut][3][5]"},
      {"drive cut off another program's path", "c:\\tools\\splitpdf.exe", "[START]", "a", "b",
       "[c:\\tools\\splitpdf.exe][3]"},
      {"blank ends an argument", "/opt/cut", "\"[IN]\" \"[OUT]\"", "/in/my file.pdf",
       "/out/Élodie B.pdf", "[/opt/cut][/in/my file.pdf][/out/Élodie B.pdf]"},
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
    setup.configExternalCommand = QString::fromUtf8(row.program);
    setup.configExternalParams = QString::fromUtf8(row.parameters);
    const ExternalCommand command =
        externalCommand(setup, QString::fromUtf8(row.source), QString::fromUtf8(row.target), 3, 5);
    const QString started =
        QLatin1Char('[') +
        (QStringList(command.program) + command.arguments).join(QStringLiteral("][")) +
        QLatin1Char(']');
    EXPECT_EQ(started, QString::fromUtf8(row.started));
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
