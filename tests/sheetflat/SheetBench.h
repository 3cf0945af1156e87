// SheetBench: spreadsheets made on the spot, and Sheetflat run over them.
#pragma once

#include "tests/support/Programs.h"

#include <QTemporaryDir>

namespace folivex::test {

class SheetBench : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(folder.isValid()); }

  QString path(const QString& name) const { return folder.filePath(name); }

  /// `rows` is JSON; see make_sheet.py.
  QString makeSheet(const QString& name, const QByteArray& rows) const {
    const ProgramRun made =
        runProgram("/usr/bin/python3",
                   {FOLIVEX_SOURCE_DIR "/tests/sheetflat/make_sheet.py", path(name), rows});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    return path(name);
  }
  QString makeFile(const QString& name, const QByteArray& content) const {
    writeFile(path(name), content);
    return path(name);
  }

  static inline const QString program = QStringLiteral(FOLIVEX_BIN_DIR "/Sheetflat");
  QTemporaryDir folder;
};

} // namespace folivex::test
