// The program as a process when things are wrong: its libraries, its sources, the words on a page,
// and a person who will not wait.
#include "tests/app/ProgramBench.h"
#include "tests/support/Rows.h"

#include <QRegularExpression>

#include <csignal>

using namespace folivex;
using namespace folivex::test;

namespace {

class ProgramFaults : public ProgramBench {
protected:
  /// The program in a folder of its own, with links to its libraries.
  QString programCopy() {
    const QDir from(QStringLiteral(FOLIVEX_BIN_DIR));
    QDir(place.work()).mkdir("bin");
    EXPECT_TRUE(QFile::copy(from.filePath("folivex"), place.at("bin/folivex")));
    for (const QString& library : from.entryList({"lib*.so"}, QDir::Files)) {
      EXPECT_TRUE(QFile::link(from.filePath(library), place.at("bin/" + library)));
    }
    return place.at("bin/folivex");
  }
};

/// Pages whose only word behind "Account:" is the given one, whatever characters it has.
TextPdf wordsOf(const QStringList& words) {
  TextPdf pdf;
  for (const QString& word : words) {
    PdfPage page;
    page.texts.push_back({40, 60, QStringLiteral("Account:")});
    // So small that even a word of thousands of characters stays on the page.
    page.texts.push_back({150, 60, word, word.size() > 60 ? 0.1 : 8.0});
    pdf.pages.push_back(page);
  }
  return pdf;
}

} // namespace

TEST_F(ProgramFaults, LibraryThatIsMissingOrNotOurs) {
  const QString program = programCopy();
  const QStringList arguments{fxs(), source("a.pdf", {"A"}), "-c"};
  ASSERT_EQ(place.run(arguments, program).exitCode, 0);
  QDir(place.at("out")).removeRecursively();

  const struct {
    const char* library;
    const char* instead; ///< what stands in its place
    const char* detail;
  } rows[] = {
      {"GlyphrunU", "/no/such/file", ""},
      {"CleftorU", "/no/such/file", ""},
      {"MelderU", "/no/such/file", ""},
      {"GlyphrunU", FOLIVEX_SOURCE_DIR "/README.md", ""},
      {"GlyphrunU", REFUSED_LIBRARIES "/libold.so", "interface version 0, version 1 is needed"},
      {"GlyphrunU", REFUSED_LIBRARIES "/libforeign.so", "does not tell its interface version"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.library) + ' ' + row.instead);
    const QString library = place.at(QStringLiteral("bin/lib%1.so").arg(row.library));
    QFile::remove(library);
    QFile::link(row.instead, library);
    const ProgramRun run = place.run(arguments, program);
    EXPECT_TRUE(run.ended);
    EXPECT_NE(run.exitCode, 0);
    const QByteArray name = row.library;
    for (const QByteArray& told :
         {"Unable to open " + name + ".dll - error: ",
          "Error initilizing, dll missing or unable to load " + name + ".dll\n",
          QByteArray(row.detail)}) {
      EXPECT_TRUE(run.err.contains(told)) << run.err.toStdString();
    }
    EXPECT_TRUE(outputs().isEmpty());
    QFile::remove(library);
    QFile::link(QStringLiteral(FOLIVEX_BIN_DIR "/lib%1.so").arg(row.library), library);
  }
}

TEST_F(ProgramFaults, SourcesThatCannotBeReadDoNotHinderTheNext) {
  source("good.pdf", {"G1", "G2"});
  const QByteArray good = contentOf(place.at("good.pdf"));
  const QByteArray kids = "/Kids[7 0 R 9 0 R ]";
  ASSERT_TRUE(good.contains(kids));
  writeFile(place.at("empty.pdf"), "");
  writeFile(place.at("garbage.pdf"), QByteArray("\0\xFF%PDF", 6).repeated(5'000));
  writeFile(place.at("header only.pdf"), good.left(9));
  writeFile(place.at("no pages.pdf"), QByteArray(good).replace(kids, "/Kids[               ]"));
  writeFile(place.at("self.pdf"), QByteArray(good).replace(kids, "/Kids[2 0 R 2 0 R ]"));
  ASSERT_EQ(runProgram("qpdf", {"--encrypt", "x", "y", "256", "--", place.at("good.pdf"),
                                place.at("locked.pdf")})
                .exitCode,
            0);
  const QStringList bad{"empty.pdf",    "garbage.pdf", "header only.pdf",
                        "no pages.pdf", "self.pdf",    "locked.pdf"};
  const QStringList arguments =
      QStringList(fxs()) + QStringList(bad).replaceInStrings(QRegularExpression("^"), "-f");
  const ProgramRun run = place.run(arguments + QStringList{"-fgood.pdf", "-c"});
  EXPECT_TRUE(run.ended);
  EXPECT_EQ(run.exitCode, shown(-12)) << run.err.toStdString();
  for (const QString& name : bad) {
    EXPECT_EQ(run.err.count(name.toUtf8() + ": cannot be opened"), 1) << name.toStdString() << '\n'
                                                                      << run.err.toStdString();
    EXPECT_TRUE(contentOf(place.at(name) + "_report.txt").endsWith("\t0 PDF file(s)\r\r\n"));
  }
  EXPECT_EQ(outputs(), (QStringList{"G1.pdf", "G2.pdf"}));
}

TEST_F(ProgramFaults, DamageThatCanBeRepairedLosesNoPage) {
  source("good.pdf", {"G1", "G2", "G3"});
  const QByteArray good = contentOf(place.at("good.pdf"));
  const qsizetype table = good.lastIndexOf("xref\n0 ");
  const struct {
    const char* name;
    QByteArray bytes;
  } files[] = {
      {"no table.pdf", good.left(table) + good.mid(good.lastIndexOf("trailer"))},
      {"cut off at the end.pdf", good.left(good.lastIndexOf("startxref"))},
      {"wrong table.pdf", QByteArray(good).replace("startxref\n", "startxref\n9")},
      {"lying count.pdf", QByteArray(good).replace("/Count 3", "/Count 9")},
      {"junk in front.pdf", "junk\n" + good},
  };
  for (const auto& file : files) {
    SCOPED_TRACE(file.name);
    QDir(place.at("out")).removeRecursively();
    writeFile(place.at(file.name), file.bytes);
    const ProgramRun run = place.run({fxs(), "-f" + place.at(file.name), "-c"});
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("3 page(s): 3 in 3 file(s).")) << run.err.toStdString();
    EXPECT_EQ(outputs(), (QStringList{"G1.pdf", "G2.pdf", "G3.pdf"}));
  }
}

TEST_F(ProgramFaults, WordsOfAPageStayInsideTheOutputFolder) {
  QStringList words{QString(4000, u'w'), QString(4000, QChar(0x6771)), QString(QChar(0xD800))};
  forEachRow("app/hostile-words.json",
             [&](const SplitSetup&, const QStringList& row) { words += row[0]; });
  wordsOf(words).write(place.at("a.pdf"));
  for (const char* prefix : {"", "[EXTRACTTEXTDIR]/", "[EXTRACTTEXT]/[POS150,60]_"}) {
    SCOPED_TRACE(prefix);
    QDir(place.work()).mkdir("deep");
    setup.outputDir = place.at("deep/out");
    setup.prefixFileName = QString::fromUtf8(prefix);
    const ProgramRun run = place.run({fxs(), "-f" + place.at("a.pdf"), "-c"});
    EXPECT_TRUE(run.ended);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(
        QStringLiteral("%1 page(s): %1 in %1 file(s).").arg(words.size()).toUtf8()))
        << run.err.toStdString();
    EXPECT_FALSE(run.err.contains('\x1b'));
    const QStringList inside = filesBelow(place.at("deep/out"));
    EXPECT_EQ(inside.size(), words.size());
    EXPECT_EQ(filesBelow(place.all()).size(), inside.size() + 5) << "a file went elsewhere";
    // One line a range: no word ends a line of the report or begins another.
    EXPECT_EQ(contentOf(place.at("a.pdf_report.txt")).count("\r\r\nPage: "), words.size());
    QDir(place.at("deep")).removeRecursively();
  }
}

TEST_F(ProgramFaults, InterruptLeavesWholeFilesAndClosedReports) {
  QStringList accounts;
  for (int i = 1; i <= 4000; ++i) {
    accounts += QString::number(i);
  }
  const QStringList arguments{fxs(), source("a.pdf", accounts), source("b.pdf", {"B"}), "-c"};
  QProcess process;
  process.setProcessEnvironment(place.environment());
  process.setWorkingDirectory(place.work());
  process.start(QStringLiteral(FOLIVEX_BIN_DIR "/folivex"), arguments);
  ASSERT_TRUE(process.waitForStarted());
  while (process.state() == QProcess::Running && !QFile::exists(place.at("out/3.pdf"))) {
    process.waitForFinished(1);
  }
  ::kill(static_cast<pid_t>(process.processId()), SIGINT);
  ASSERT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(hangLimit));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process.exitCode(), 1);
  const QByteArray said = process.readAllStandardError();
  EXPECT_TRUE(said.contains("Process Stopped!")) << said.toStdString();

  const QStringList files = outputs();
  EXPECT_GE(files.size(), 3);
  EXPECT_LT(files.size(), 4000);
  EXPECT_FALSE(files.contains("B.pdf"));
  EXPECT_TRUE(contentOf(place.at("a.pdf_report.csv"))
                  .endsWith("\r\r\n," + QByteArray::number(files.size()) + ", PDF file(s)\r\r\n"));
  // The file that was on its way when the signal came is the one most likely to be half.
  for (const QString& file : {QString("1.pdf"), QString::number(files.size()) + ".pdf"}) {
    EXPECT_EQ(pageTexts(place.at("out/" + file)).size(), 1);
  }
}

TEST_F(ProgramFaults, LastStepsOfAFullDisk) {
  // No temporary folder can be written: the settings are lost, and the program says so.
  QDir(place.temporary()).mkdir("Folivex.ini");
  const ProgramRun run = place.run({fxs(), source("a.pdf", {"A"}), "-c"});
  EXPECT_EQ(run.exitCode, shown(-5)) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains(
      "file error! can't write parameters file: " + place.temporary().toUtf8() + "/Folivex.ini"))
      << run.err.toStdString();
}
