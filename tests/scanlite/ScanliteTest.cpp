// Scanlite as a process, with the real OCR programs behind it.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

constexpr int patienceMilliseconds = 240'000;

struct Ended {
  int exitCode = -1;
  QString output;
};

Ended run(const QString& program, const QStringList& arguments,
          const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) {
  QProcess process;
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  if (!process.waitForFinished(patienceMilliseconds) ||
      process.exitStatus() != QProcess::NormalExit) {
    return {-1, process.errorString()};
  }
  return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

QProcessEnvironment environmentWith(const QString& name, const QString& value) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(name, value);
  return environment;
}

QString wordsOf(const QString& pdf) {
  return run(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")}).output;
}

// Programs that still run with a text in their command line.
QStringList processesNaming(const QString& text) {
  QStringList found;
  const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
  for (const QString& entry : entries) {
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(entry));
    if (commandLine.open(QFile::ReadOnly) && commandLine.readAll().contains(text.toUtf8())) {
      found.append(entry);
    }
  }
  return found;
}

class Scanlite : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(folder.isValid()); }

  QString path(const QString& name) const { return folder.filePath(name); }

  QString makeScan(int pages) const {
    QString scan = path(QStringLiteral("scan.pdf"));
    const Ended made = run(QStringLiteral("/usr/bin/python3"),
                           {QStringLiteral(FOLIVEX_SOURCE_DIR "/tests/scanlite/make_scan.py"),
                            QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf"), scan,
                            QString::number(pages)});
    EXPECT_EQ(made.exitCode, 0) << qPrintable(made.output);
    return scan;
  }

  QString encrypted(const QString& source, const QString& userPassword) const {
    QString target = path(QStringLiteral("encrypted.pdf"));
    const Ended made = run(QStringLiteral("qpdf"),
                           {QStringLiteral("--encrypt"), userPassword, QStringLiteral("owner"),
                            QStringLiteral("256"), QStringLiteral("--"), source, target});
    EXPECT_EQ(made.exitCode, 0) << qPrintable(made.output);
    return target;
  }

  Ended scanlite(const QString& source, const QProcessEnvironment& environment =
                                            QProcessEnvironment::systemEnvironment()) const {
    return run(program, {source, copy(), QStringLiteral("0")}, environment);
  }

  QString copy() const { return path(QStringLiteral("copies/scan_fxs_ocr.pdf")); }

  QStringList copies() const {
    return QDir(path(QStringLiteral("copies")))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }

  void makeCopiesFolder() const {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("copies")));
  }

  const QString program = QStringLiteral(FOLIVEX_BIN_DIR "/Scanlite");
  QTemporaryDir folder;
};

TEST_F(Scanlite, MakesAScannedPageSearchableAndLeavesNothingElse) {
  makeCopiesFolder();
  const QString scan = makeScan(1);
  ASSERT_FALSE(wordsOf(scan).contains(QStringLiteral("Account:")));

  const Ended ended = scanlite(encrypted(scan, QString()));
  EXPECT_EQ(ended.exitCode, 0) << qPrintable(ended.output);
  const QString words = wordsOf(copy());
  EXPECT_TRUE(words.contains(QStringLiteral("Account:"))) << qPrintable(words);
  EXPECT_TRUE(words.contains(QStringLiteral("10472"))) << qPrintable(words);
  EXPECT_EQ(copies(), QStringList{QStringLiteral("scan_fxs_ocr.pdf")});
  EXPECT_FALSE(QFile::permissions(copy()) & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(Scanlite, LeavesPagesWithTextAsTheyAre) {
  makeCopiesFolder();
  const QString source = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
  const Ended ended = scanlite(source);
  EXPECT_EQ(ended.exitCode, 0) << qPrintable(ended.output);
  EXPECT_EQ(wordsOf(copy()), wordsOf(source));
}

TEST_F(Scanlite, SaysWhatIsWrongAndLeavesNoCopy) {
  makeCopiesFolder();
  const QString good = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
  const QString noPdf = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/example.fxs");
  const QString locked = encrypted(good, QStringLiteral("secret"));
  const QString emptyFolder = path(QStringLiteral("nothing"));
  ASSERT_TRUE(QDir().mkdir(emptyFolder));

  const auto expectRefusal = [this](const char* row, const Ended& ended, int code,
                                    const char* said) {
    SCOPED_TRACE(row);
    EXPECT_EQ(ended.exitCode, code);
    EXPECT_TRUE(ended.output.contains(QLatin1String(said))) << qPrintable(ended.output);
    EXPECT_EQ(copies(), QStringList());
  };
  expectRefusal("no OCR program",
                scanlite(good, environmentWith(QStringLiteral("PATH"), emptyFolder)), 3,
                "ocrmypdf) is not installed");
  expectRefusal("language not installed",
                scanlite(good, environmentWith(QStringLiteral("FOLIVEX_OCR_LANGUAGE"),
                                               QStringLiteral("tlh"))),
                4, "language tlh");
  expectRefusal("no PDF", scanlite(noPdf), 5, "no PDF");
  expectRefusal("missing source", scanlite(path(QStringLiteral("absent.pdf"))), 5, "missing");
  expectRefusal("locked source", scanlite(locked), 6, "password is needed");
  expectRefusal("copy's folder missing",
                run(program, {good, path(QStringLiteral("absent/copy.pdf")), QStringLiteral("0")}),
                7, "cannot be written");
  expectRefusal("unknown mode", run(program, {good, copy(), QStringLiteral("1")}), 2, "usage:");
}

TEST_F(Scanlite, ToldToStopItEndsItsProgramsAndCleansUp) {
  makeCopiesFolder();
  QProcess process;
  process.start(program, {makeScan(12), copy(), QStringLiteral("0")});
  ASSERT_TRUE(process.waitForStarted(-1));
  // Not before the OCR program has started programs of its own: those are what could be left
  // behind.
  const auto workFolders = [this] { return copies().filter(QStringLiteral(".scanlite-")); };
  QString workFolder;
  while (workFolder.isEmpty() || processesNaming(workFolder).size() < 2) {
    ASSERT_FALSE(process.waitForFinished(20)) << "it ended before it could be stopped";
    workFolder = workFolders().value(0);
  }
  process.terminate();
  ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
  EXPECT_EQ(process.exitCode(), 143);
  EXPECT_EQ(copies(), QStringList());
  EXPECT_EQ(processesNaming(workFolder), QStringList());
}

} // namespace
