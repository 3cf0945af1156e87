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
    QString target = path(name);
    const ProgramRun made =
        runProgram(QStringLiteral("/usr/bin/python3"),
                   {QStringLiteral(FOLIVEX_SOURCE_DIR "/tests/sheetflat/make_sheet.py"), target,
                    QString::fromUtf8(rows)});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    return target;
  }

  QString makeFile(const QString& name, const QByteArray& content) const {
    QString target = path(name);
    QFile file(target);
    EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
    return target;
  }

  static QByteArray contentOf(const QString& file) {
    QFile opened(file);
    return opened.open(QFile::ReadOnly) ? opened.readAll() : QByteArray("(missing)");
  }

  static inline const QString program = QStringLiteral(FOLIVEX_BIN_DIR "/Sheetflat");
  QTemporaryDir folder;
};

} // namespace folivex::test
