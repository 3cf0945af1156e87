// Scanlite as a process, with the real OCR programs behind it.
#include "platform/FileLocks.h"
#include "tests/support/CompanionStop.h"

#include <QTemporaryDir>

namespace folivex::test {
namespace {

const QString statements = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
const QString program = QStringLiteral(FOLIVEX_BIN_DIR "/Scanlite");

QProcessEnvironment environmentWith(const QString& name, const QString& value) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(name, value);
  return environment;
}

class Scanlite : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(QDir(folder.path()).mkdir("copies"));
    qputenv("OMP_THREAD_LIMIT", "1"); // threads that spin take minutes on a busy machine
  }

  QString path(const QString& name) const { return folder.filePath(name); }
  QString copy() const { return path("copies/scan_fxs_ocr.pdf"); }
  QStringList copies() const {
    return QDir(path("copies")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

  QString makeScan(int pages) const {
    const ProgramRun made =
        runProgram("/usr/bin/python3", {FOLIVEX_SOURCE_DIR "/tests/scanlite/make_scan.py",
                                        statements, path("scan.pdf"), QString::number(pages)});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    return path("scan.pdf");
  }

  QString encrypted(const QString& source, const QString& userPassword) const {
    const ProgramRun made = runProgram(
        "qpdf", {"--encrypt", userPassword, "owner", "256", "--", source, path("encrypted.pdf")});
    EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    return path("encrypted.pdf");
  }

  ProgramRun scanlite(const QString& source, const QProcessEnvironment& environment =
                                                 QProcessEnvironment::systemEnvironment()) const {
    return runProgram(program, {source, copy(), "0"}, environment);
  }

  QTemporaryDir folder;
};

TEST_F(Scanlite, MakesAScannedPageSearchableAndLeavesNothingElse) {
  const QString scan = makeScan(1);
  ASSERT_FALSE(pageTexts(scan)[0].contains("Account:"));
  const ProgramRun ended = scanlite(encrypted(scan, {}));
  ASSERT_EQ(ended.exitCode, 0) << ended.err.toStdString();
  const QString words = pageTexts(copy())[0];
  EXPECT_TRUE(words.contains("Account:") && words.contains("10472")) << words.toStdString();
  EXPECT_EQ(copies(), QStringList("scan_fxs_ocr.pdf"));
  EXPECT_FALSE(QFile::permissions(copy()) & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(Scanlite, LeavesPagesWithTextAsTheyAre) {
  // Beside what a killed one left, and what another one is working in.
  QFile lock;
  for (const char* name : {"copies/.scanlite-dead", "copies/.scanlite-alive"}) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(name));
    lock.close();
    ASSERT_EQ(platform::openForLock(lock, path(name) + "/lock", true), 0);
  }
  ASSERT_EQ(platform::lockFile(lock, platform::LockUse::Alone), platform::LockResult::Locked);
  EXPECT_EQ(scanlite(statements).exitCode, 0);
  EXPECT_EQ(pageTexts(copy()), pageTexts(statements));
  EXPECT_EQ(copies(), (QStringList{".scanlite-alive", "scan_fxs_ocr.pdf"}));
}

TEST_F(Scanlite, SaysWhatIsWrongAndLeavesNoCopy) {
  ASSERT_TRUE(QDir(folder.path()).mkdir("nothing"));
  const auto expectRefusal = [this](const ProgramRun& ended, int code, const char* said) {
    EXPECT_EQ(ended.exitCode, code) << said;
    EXPECT_TRUE(ended.err.contains(said)) << ended.err.toStdString();
    EXPECT_EQ(copies(), QStringList());
  };
  expectRefusal(scanlite(statements, environmentWith("PATH", path("nothing"))), 3, "ocrmypdf) is");
  expectRefusal(scanlite(statements, environmentWith("FOLIVEX_OCR_LANGUAGE", "tlh")), 4, "tlh");
  expectRefusal(scanlite(FOLIVEX_SOURCE_DIR "/samples/example.fxs"), 5, "no PDF");
  expectRefusal(scanlite(path("absent.pdf")), 5, "missing");
  expectRefusal(scanlite(encrypted(statements, "secret")), 6, "password is needed");
  expectRefusal(runProgram(program, {statements, path("absent/copy.pdf"), "0"}), 7, "be written");
  expectRefusal(runProgram(program, {statements, copy(), "1"}), 2, "usage:");
}

TEST_F(Scanlite, ToldToStopItEndsItsProgramsAndCleansUp) {
  // Not before the OCR program has started programs of its own: those are what could be left
  // behind.
  expectStopLeavesNothing(program, {makeScan(12), copy(), "0"}, path("copies"), 2);
}

} // namespace
} // namespace folivex::test
