// Recognised copies of sources, with the real OCR program: whose they are, and who may use them.
#include "engine/job/OcrFirst.h"
#include "tests/app/ProgramBench.h"
#include "tests/support/CompanionStop.h"
#include "tests/support/RecordingOperator.h"

#include <QDeadlineTimer>
#include <QThread>

#include <fcntl.h>
#include <sys/stat.h>

namespace folivex::test {
namespace {

class OcrFirst : public ProgramBench {
protected:
  OcrFirst() {
    setup.ocrFirst = true;
    for (const char* name : {"monday", "tuesday"}) {
      QDir(place.work()).mkdir(name);
    }
    qputenv("OMP_THREAD_LIMIT", "1"); // threads that spin take minutes on a busy machine
    place.environment().insert("OMP_THREAD_LIMIT", "1");
  }

  /// A scan of pages of the sample, from 1.
  QString scan(const QString& name, int page, int pages = 1) const {
    const QString part = place.at("part.pdf");
    const QString range = QStringLiteral("%1-%2").arg(page).arg(page + pages - 1);
    EXPECT_EQ(runProgram("qpdf", {FOLIVEX_SOURCE_DIR "/samples/statements.pdf", "--pages", ".",
                                  range, "--", part})
                  .exitCode,
              0);
    EXPECT_EQ(runProgram("/usr/bin/python3", {FOLIVEX_SOURCE_DIR "/tests/scanlite/make_scan.py",
                                              part, place.at(name), QString::number(pages)})
                  .exitCode,
              0);
    return place.at(name);
  }
};

const QString used = QStringLiteral("the OCR'd copy of an earlier run is used");

/// Nanoseconds, as the file system keeps them.
timespec changeOf(const QString& path) {
  struct stat status {};
  EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
  return status.st_mtim;
}

void setChange(const QString& path, timespec time) {
  const timespec both[] = {time, time};
  EXPECT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), both, 0), 0);
}

} // namespace

/// Else its pages would go to the customers of the day before.
TEST_F(OcrFirst, ScanOfTheNameOfYesterdaysIsRecognisedItself) {
  for (const auto& [name, page, account] :
       {std::tuple{"monday/scan.pdf", 1, "10472"}, std::tuple{"tuesday/scan.pdf", 4, "10518"}}) {
    const ProgramRun run = place.run({fxs(), "-f" + scan(name, page), "-c"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(outputs().contains(QString(account) + ".pdf"))
        << outputs().join(' ').toStdString() << run.err.toStdString();
  }
  EXPECT_EQ(outputs().size(), 2);
  EXPECT_EQ(filesBelow(place.temporary()),
            (QStringList{"Folivex.ini", "scan.pdf_fxs_ocr.pdf", "scan.pdf_fxs_ocr.pdf.source"}));
  EXPECT_EQ(modeOf(place.temporary() + "/scan.pdf_fxs_ocr.pdf.source"), 0600U);
}

TEST_F(OcrFirst, CopyIsUsedAgainForTheVerySameSourceOnly) {
  source("monday/a.pdf", {"A"});
  source("tuesday/a.pdf", {"A"});
  const QString monday = place.at("monday/a.pdf");
  const QString copy = place.temporary() + "/a.pdf_fxs_ocr.pdf";
  const timespec change = changeOf(monday);
  setChange(place.at("tuesday/a.pdf"), change);
  const auto isUsedAgain = [&](const QString& path) {
    const ProgramRun run = place.run({fxs(), "-f" + path, "-c"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    return run.err.contains(used.toUtf8());
  };
  EXPECT_FALSE(isUsedAgain(monday));
  EXPECT_TRUE(isUsedAgain(monday));
  EXPECT_FALSE(isUsedAgain(place.at("tuesday/a.pdf"))) << "another path";
  EXPECT_FALSE(isUsedAgain(monday));
  setChange(monday, {change.tv_sec, change.tv_nsec + 1});
  EXPECT_FALSE(isUsedAgain(monday)) << "written again";
  source("monday/a.pdf", {"B"});
  setChange(monday, {change.tv_sec, change.tv_nsec + 1});
  EXPECT_FALSE(isUsedAgain(monday)) << "other bytes at the same time";
  EXPECT_TRUE(isUsedAgain(monday));
  // A run that was killed while it made or noted the copy.
  writeFile(copy + ".source", contentOf(copy + ".source").chopped(5));
  EXPECT_FALSE(isUsedAgain(monday)) << "half a note";
  writeFile(copy, contentOf(copy).chopped(5));
  EXPECT_FALSE(isUsedAgain(monday)) << "half a copy";
}

/// Words are read from the copy to the end of a run, by its path.
TEST_F(OcrFirst, RunsAtOnceDoNotChangeEachOthersCopies) {
  qputenv("PATH", FOLIVEX_BIN_DIR ":" + qgetenv("PATH"));
  source("monday/a.pdf", {"Monday"});
  source("tuesday/a.pdf", {"Tuesday"});
  RecordingOperator person;
  RunState monday;
  RunState tuesday;
  const auto recognise = [&](const char* name, RunState& state) {
    EXPECT_TRUE(folivex::OcrFirst(place.at(name), place.temporary(), state, person))
        << person.allNotes().toStdString();
    return pageTexts(state.ocrFile).join(' ');
  };
  EXPECT_EQ(recognise("monday/a.pdf", monday), "Account: Monday");
  EXPECT_EQ(recognise("tuesday/a.pdf", tuesday), "Account: Tuesday");
  EXPECT_EQ(pageTexts(monday.ocrFile), QStringList{"Account: Monday"});
  RunState again;
  EXPECT_EQ(recognise("monday/a.pdf", again), "Account: Monday");
  tuesday = {};
  again = {};
  EXPECT_EQ(filesBelow(place.temporary()),
            (QStringList{"a.pdf_fxs_ocr.pdf", "a.pdf_fxs_ocr.pdf.source"}));
  monday = {};
  EXPECT_EQ(recognise("tuesday/a.pdf", tuesday), "Account: Tuesday");
  EXPECT_EQ(tuesday.ocrFile, place.temporary() + "/a.pdf_fxs_ocr.pdf");
}

/// The hour that it takes is spent once; when the other run dies, this one goes on by itself.
TEST_F(OcrFirst, RunsAtOnceOverOneScanRecogniseItOnce) {
  qputenv("PATH", FOLIVEX_BIN_DIR ":" + qgetenv("PATH"));
  const QString pdf = scan("monday/scan.pdf", 1, 3);
  for (const bool dies : {false, true}) {
    SCOPED_TRACE(dies);
    QFile::remove(place.temporary() + "/scan.pdf_fxs_ocr.pdf");
    QProcess other;
    other.setProcessEnvironment(place.environment());
    other.setWorkingDirectory(place.work());
    other.start(QStringLiteral(FOLIVEX_BIN_DIR "/folivex"), {fxs(), "-f" + pdf, "-c"});
    ASSERT_TRUE(other.waitForStarted(-1));
    while (programsAt(place.temporary() + "/.scanlite-").isEmpty()) {
      ASSERT_FALSE(other.waitForFinished(20)) << other.readAllStandardError().toStdString();
    }
    RecordingOperator person;
    person.onProgress = [&](const Progress& progress) {
      if (dies && progress.text.contains("another run")) {
        other.kill();
      }
    };
    RunState state;
    EXPECT_TRUE(folivex::OcrFirst(pdf, place.temporary(), state, person));
    EXPECT_TRUE(pageTexts(state.ocrFile).join(' ').contains("10472"));
    EXPECT_FALSE(person.statuses.filter("another run is OCR'ing").isEmpty());
    EXPECT_EQ(person.notes.filter(used).size(), dies ? 0 : 1) << person.allNotes().toStdString();
    EXPECT_TRUE(other.waitForFinished(hangLimit));
    EXPECT_TRUE(dies || other.exitCode() == 0) << other.readAllStandardError().toStdString();
  }
}

TEST_F(OcrFirst, KilledRunEndsTheOcrProgram) {
  const QStringList arguments{fxs(), "-f" + scan("monday/scan.pdf", 1, 12), "-c"};
  QProcess process;
  process.setProcessEnvironment(place.environment());
  process.setWorkingDirectory(place.work());
  process.start(QStringLiteral(FOLIVEX_BIN_DIR "/folivex"), arguments);
  ASSERT_TRUE(process.waitForStarted(-1));
  // Not before Scanlite has started programs of its own.
  while (programsAt(place.temporary() + "/.scanlite-").size() < 2) {
    ASSERT_FALSE(process.waitForFinished(20)) << process.readAllStandardError().toStdString();
  }
  process.kill();
  ASSERT_TRUE(process.waitForFinished(hangLimit));
  const QDeadlineTimer limit(hangLimit);
  while (!programsAt(place.temporary()).isEmpty() && !limit.hasExpired()) {
    QThread::msleep(1);
  }
  // Neither a copy of a program that went on to its end, nor what it worked in.
  EXPECT_EQ(QDir(place.temporary()).entryList({".*", "*.pdf"}, QDir::Files | QDir::Hidden),
            QStringList());
  EXPECT_EQ(QDir(place.temporary()).entryList({".scanlite-*"}, QDir::Dirs | QDir::Hidden),
            QStringList());
}

} // namespace folivex::test
