// The program as a process, without a display: what it splits, and how it ends.
#include "tests/app/ProgramBench.h"

#include <QRegularExpression>

#include <sys/stat.h>

using namespace folivex;
using namespace folivex::test;

namespace {

using Program = ProgramBench;

/// One document of the sample, found by another program's eyes.
struct Document {
  QString name;
  int first = 0;
  QStringList pages;
};

std::vector<Document> documentsOf(const QStringList& pages) {
  static const QRegularExpression account(QStringLiteral("Account: (\\S+)"));
  std::vector<Document> documents;
  for (qsizetype i = 0; i < pages.size(); ++i) {
    if (const auto match = account.match(pages[i]); match.hasMatch()) {
      documents.push_back({match.captured(1), static_cast<int>(i) + 1, {}});
    }
    documents.back().pages += pages[i];
  }
  return documents;
}

/// A report's bytes with its date and time made equal.
QByteArray undated(const QString& path) {
  QString text = QString::fromLatin1(contentOf(path)); // every byte stays what it is
  text.replace(QRegularExpression(QStringLiteral("\\d\\d/\\d\\d/\\d\\d([ ,])\\d\\d:\\d\\d:\\d\\d")),
               QStringLiteral("DATE\\1TIME"));
  return text.toLatin1();
}

QByteArray padded(const QString& text, int width) {
  return text.leftJustified(width).toUtf8();
}

} // namespace

TEST_F(Program, SampleIsSplitPageByPage) {
  const QString samples = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/");
  const QString source = place.at("statements.pdf");
  QFile::copy(samples + "statements.pdf", source);
  QFile::copy(samples + "example.fxs", place.at("example.fxs"));
  const ProgramRun run = place.run({"-uexample.fxs", "-f" + source, "-c"});
  EXPECT_TRUE(run.ended);
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_EQ(run.err, "Done! - 12 PDF file(s) output\n40 page(s): 40 in 12 file(s).\n");
  EXPECT_EQ(run.out, "");

  const std::vector<Document> documents = documentsOf(pageTexts(source));
  ASSERT_EQ(documents.size(), 12u);
  QStringList files{"example.fxs", "statements.pdf", "statements.pdf_report.csv",
                    "statements.pdf_report.txt"};
  const QByteArray end = "\r\r\n";
  QByteArray text = "\xEF\xBB\xBF\t\t\t\tFolivex v4.00 Report\t\t\tDATE TIME" + end + end +
                    "\tPDF Filename: " + padded(source, 30) + end + "\tFind: Account:" + end + end;
  QByteArray csv = "\xEF\xBB\xBF"
                   "Folivex v4.00 SA Report,,DATE,TIME" +
                   end + end + "PDF Filename:," + padded(source, 30) + end +
                   "Find:,Account:" + end + end + "Start Page,End Page,Matched,Output File" + end;
  for (const Document& document : documents) {
    const QString name = "statement_" + document.name + ".pdf";
    files += name;
    EXPECT_EQ(pageTexts(place.at(name)), document.pages) << name.toStdString();
    const QByteArray first = padded(QString::number(document.first), 2);
    const QByteArray last = padded(QString::number(document.first + document.pages.size() - 1), 2);
    const QByteArray matched = padded(document.name, 30);
    const QByteArray path = place.at(name).toUtf8();
    text += "Page: " + first + " - " + last + "\t" + matched + "\tOutput file:" + path + end;
    csv += first + "," + last + "," + matched + "," + path + end;
  }
  EXPECT_EQ(undated(source + "_report.txt"), text + end + "\t12 PDF file(s)" + end);
  EXPECT_EQ(undated(source + "_report.csv"), csv + end + ",12, PDF file(s)" + end);
  files.sort();
  EXPECT_EQ(filesBelow(place.work()), files);
  EXPECT_EQ(filesBelow(place.temporary()), QStringList{"Folivex.ini"});

  SetupStore saved;
  ASSERT_TRUE(saved.LoadSetup(place.temporary() + "/Folivex.ini").ok());
  EXPECT_EQ(saved.working().fileName, source);
  EXPECT_EQ(saved.working().prefixFileName, "statement_");
}

TEST_F(Program, EndsAsItsArgumentsDeserve) {
  source("a.pdf", {"A1", "A2"});
  source("b.pdf", {"B1"});
  source("my file.pdf", {"M1"});
  QDir(place.work()).mkpath("folder/sub");
  source("folder/2.PDF", {"F2"});
  source("folder/1.pdf", {"F1"});
  source("folder/sub/3.pdf", {"F3"});
  source("b[1].pdf", {"K1"});
  writeFile(place.at("folder/4.txt"), "no PDF");
  writeFile(place.at("folder/5.pdf.bak"), "no PDF");
  QDir(place.work()).mkpath("blocked.pdf_report.txt");
  source("blocked.pdf", {"X"});

  ASSERT_EQ(mkfifo(QFile::encodeName(place.at("pipe.pdf")).constData(), 0600), 0);

  // The default setup finds nothing, so that outputs prove which setup was used.
  setup.findString = "nothing";
  fxs("../tmp/Folivex.ini");
  const QByteArray defaults = contentOf(place.temporary() + "/Folivex.ini");
  setup.findString = "Account:";
  fxs("split.fxs");
  const QString linked = place.temporary() + "/linked.fxs";
  ASSERT_TRUE(QFile::link(place.at("split.fxs"), linked));
  writeFile(place.at("empty.fxs"), "UNICODEV4\r\n");

  struct Row {
    const char* fault;
    QStringList arguments;
    int exitCode;
    QStringList outputs;
    const char* said;
  };
  const Row rows[] = {
      {"settings of the last run in place of a refused setup",
       {"-u" + linked, "-fa.pdf", "-c"},
       shown(-2),
       {},
       "was not used: it is a link"},
      {"setup without a setting not told",
       {"-uempty.fxs", "-fa.pdf", "-c"},
       0,
       {},
       "empty.fxs: no setting was found"},
      {"setup without a file behind it not told",
       {"-usplit.fxs", "-c"},
       0,
       {},
       "\"-u\" counts for the \"-f\" behind it"},
      {"source missing", {"-fnone.pdf", "-fa.pdf", "-c"}, shown(-1), {}, "none.pdf: "},
      {"setup missing", {"-unone.fxs", "-fa.pdf", "-c"}, shown(-2), {}, "none.fxs: "},
      {"both missing, source asked first", {"-unone.fxs", "-fnone.pdf"}, shown(-1), {}, "none.pdf"},
      {"setup taken for a file before it",
       {"-fa.pdf", "-usplit.fxs", "-c"},
       0,
       {},
       "no matches we're found"},
      {"setup lost for a later file",
       {"-usplit.fxs", "-fa.pdf", "-fb.pdf", "-c"},
       0,
       {"A1.pdf", "A2.pdf", "B1.pdf"},
       "1 page(s): 1 in 1 file(s)."},
      {"files of a folder", {"-usplit.fxs", "-ffolder/*", "-c"}, 0, {"F1.pdf", "F2.pdf"}, ""},
      {"ending of another case left out",
       {"-usplit.fxs", "-ffolder/*.pdf", "-c"},
       0,
       {"F1.pdf", "F2.pdf"},
       ""},
      {"pattern taken for all files", {"-usplit.fxs", "-ffolder/1*.pdf", "-c"}, 0, {"F1.pdf"}, ""},
      {"folder that is not there",
       {"-usplit.fxs", "-fno/*.pdf", "-c"},
       shown(-1),
       {},
       "no such folder"},
      {"folder without a PDF", {"-usplit.fxs", "-ffolder/x*", "-c"}, 0, {}, "no PDF is there"},
      {"pattern of another case", {"-usplit.fxs", "-fA*", "-c"}, 0, {}, "no PDF is there"},
      {"brackets in a pattern", {"-usplit.fxs", "-fb[1]*", "-c"}, 0, {"K1.pdf"}, ""},
      {"values apart, not closed", {"-u", "split.fxs", "-f", "my file.pdf"}, 0, {"M1.pdf"}, ""},
      {"folder named as a source", {"-usplit.fxs", "-ffolder", "-c"}, shown(-1), {}, "folder: "},
      {"pipe named as a source", {"-usplit.fxs", "-fpipe.pdf", "-c"}, shown(-1), {}, "pipe.pdf: "},
      {"pipe named as a setup", {"-upipe.pdf", "-fa.pdf", "-c"}, shown(-2), {}, "pipe.pdf: "},
      {"report in the way, and the next file",
       {"-usplit.fxs", "-fblocked.pdf", "-fa.pdf", "-c"},
       shown(-3),
       {},
       "blocked.pdf_report.txt, try changing the report path"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    QDir(place.at("out")).removeRecursively();
    writeFile(place.temporary() + "/Folivex.ini", defaults);
    const ProgramRun run = place.run(row.arguments);
    EXPECT_TRUE(run.ended);
    EXPECT_EQ(run.exitCode, row.exitCode) << run.err.toStdString();
    EXPECT_EQ(outputs(), row.outputs);
    EXPECT_TRUE(run.err.contains(row.said)) << run.err.toStdString();
    EXPECT_EQ(run.out, "");
  }
}

TEST_F(Program, SettingsThatExcludeEachOtherEndWithTheirCode) {
  setup.findString = "two words";
  setup.pageExtract = splitMethodTexts()[2];
  const ProgramRun run = place.run({fxs(), source("a.pdf", {"A"}), "-c"});
  EXPECT_EQ(run.exitCode, shown(-6));
  EXPECT_TRUE(run.err.contains("only one word is allowed")) << run.err.toStdString();
}

TEST_F(Program, Password) {
  source("plain.pdf", {"S1"});
  const ProgramRun made = runProgram("qpdf", {"--encrypt", "s3cret word", "owner", "256", "--",
                                              place.at("plain.pdf"), place.at("locked.pdf")});
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  const QString setupArgument = fxs();
  struct Row {
    QStringList arguments;
    int exitCode;
  };
  const Row rows[] = {
      {{setupArgument, "-ps3cret word", "-flocked.pdf", "-c"}, 0},
      {{"-p", "s3cret word", setupArgument, "-flocked.pdf", "-c"}, 0},
      {{setupArgument, "-pS3cret word", "-flocked.pdf", "-c"}, shown(-12)},
      {{setupArgument, "-flocked.pdf", "-ps3cret word", "-c"}, shown(-12)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.arguments.join(' ').toStdString());
    QDir(place.at("out")).removeRecursively();
    QFile::remove(place.temporary() + "/Folivex.ini");
    const ProgramRun run = place.run(row.arguments);
    EXPECT_EQ(run.exitCode, row.exitCode) << run.err.toStdString();
    EXPECT_EQ(outputs(), row.exitCode == 0 ? QStringList{"S1.pdf"} : QStringList());
    EXPECT_EQ(run.err.contains("password"), row.exitCode != 0) << run.err.toStdString();
    EXPECT_FALSE(run.err.toLower().contains("s3cret"));
  }
}

TEST_F(Program, HelpAndVersionDoNothingElse) {
  source("a.pdf", {"A"});
  const ProgramRun help = place.run({"-fa.pdf", "--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_TRUE(help.out.contains("-uSETUP")) << help.out.toStdString();
  const ProgramRun version = place.run({"--version"});
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_TRUE(QRegularExpression("^Folivex \\d+\\.\\d+\\.\\d+\n$")
                  .match(QString::fromUtf8(version.out))
                  .hasMatch())
      << version.out.toStdString();
  EXPECT_EQ(filesBelow(place.all()), QStringList{"work/a.pdf"});
}

TEST_F(Program, ADisplayThatIsNotThereIsDoneWithout) {
  place.environment().insert("DISPLAY", ":4321");
  const ProgramRun idle = place.run({});
  EXPECT_TRUE(idle.ended && idle.exitCode == 1) << "a window was tried";
  EXPECT_TRUE(idle.err.contains("--help")) << idle.err.toStdString();
  const QStringList arguments{fxs(), source("a.pdf", {"A1"})};
  const ProgramRun planned = place.run(arguments + QStringList("--plan=csv"));
  EXPECT_EQ(planned.exitCode, 0) << planned.err.toStdString();
  EXPECT_TRUE(planned.out.contains("A1.pdf")) << planned.out.toStdString();
  const ProgramRun split = place.run(arguments);
  EXPECT_EQ(split.exitCode, 0) << split.err.toStdString();
  EXPECT_EQ(outputs(), QStringList("A1.pdf"));
}

TEST_F(Program, PlanWritesNothingAndTellsWhatTheRunDoes) {
  setup.alwaysOverwrite = true;
  const QStringList arguments{
      fxs(), source("a.pdf", {"A", "B, the \"second\"", QString::fromUtf8("Élodie"), "A"}), "-c"};
  // The default setup is made from the installed example at any start.
  ASSERT_EQ(place.run({"-c"}).exitCode, 0);
  const QStringList before = filesBelow(place.all());
  const QByteArray settings = contentOf(place.temporary() + "/Folivex.ini");

  const ProgramRun table = place.run(QStringList("--plan") + arguments);
  EXPECT_EQ(table.exitCode, 0) << table.err.toStdString();
  EXPECT_TRUE(table.out.endsWith("\n4 page(s): 3 in 3 file(s), 1 only in files that a later one of "
                                 "the same name replaced (1).\n"))
      << table.out.toStdString();
  const ProgramRun csv = place.run(QStringList("--plan=csv") + arguments);
  EXPECT_EQ(filesBelow(place.all()), before);
  EXPECT_EQ(contentOf(place.temporary() + "/Folivex.ini"), settings);

  const QString out = place.at("out/");
  EXPECT_EQ(QString::fromUtf8(csv.out), "Start Page,End Page,Matched,Output File,Note\n"
                                        "1,1,A," +
                                            out +
                                            "A.pdf,given up for a later one of the same name\n"
                                            "2,2,\"B,\",\"" +
                                            out +
                                            "B,.pdf\",\n"
                                            "3,3,Élodie," +
                                            out +
                                            "Élodie.pdf,\n"
                                            "4,4,A," +
                                            out + "A.pdf,\n");
  EXPECT_EQ(place.run(arguments).exitCode, 0);
  EXPECT_EQ(outputs(), (QStringList{"A.pdf", "B,.pdf", QString::fromUtf8("Élodie.pdf")}));
  EXPECT_EQ(pageTexts(out + "A.pdf"), QStringList{"Account: A"});
}

TEST_F(Program, NearMissesAreTold) {
  setup.findString = "account:";
  const ProgramRun run = place.run({fxs(), source("a.pdf", {"A", "B"}), "-c"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(run.err.contains("\"Account:\"")) << run.err.toStdString();
}
