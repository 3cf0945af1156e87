// The program as a process, without a display: what it splits, and how it ends.
#include "tests/app/ProgramBench.h"
#include "tests/support/Rows.h"

#include <QRegularExpression>

#include <sys/stat.h>

using namespace folivex;
using namespace folivex::test;

namespace {

using Program = ProgramBench;

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

  // Every page of the sample is in the file of its account, in order.
  QStringList files;
  QStringList pages;
  for (const QString& name : filesBelow(place.work()).filter("statement_")) {
    const QStringList document = pageTexts(place.at(name));
    EXPECT_TRUE(document[0].contains("Account: " + name.sliced(10).chopped(4)));
    files += name;
    pages += document;
  }
  EXPECT_EQ(files.size(), 12);
  EXPECT_EQ(pages, pageTexts(source));
  files += QStringList{"example.fxs", "statements.pdf", "statements.pdf_report.csv",
                       "statements.pdf_report.txt"};
  files.sort();
  EXPECT_EQ(filesBelow(place.work()), files);
  EXPECT_EQ(filesBelow(place.temporary()), QStringList{"Folivex.ini"});

  SetupStore saved;
  ASSERT_TRUE(saved.LoadSetup(place.temporary() + "/Folivex.ini").ok());
  EXPECT_EQ(saved.working().fileName, source);
  EXPECT_EQ(saved.working().prefixFileName, "statement_");
}

TEST_F(Program, EndsAsItsArgumentsDeserve) {
  QDir(place.work()).mkpath("folder/sub");
  source("a.pdf", {"A1", "A2"});
  for (const auto& [file, account] :
       {std::pair{"b.pdf", "B1"}, std::pair{"my file.pdf", "M1"}, std::pair{"folder/2.PDF", "F2"},
        std::pair{"folder/1.pdf", "F1"}, std::pair{"folder/sub/3.pdf", "F3"},
        std::pair{"b[1].pdf", "K1"}, std::pair{"blocked.pdf", "X"}}) {
    source(file, {account});
  }
  for (const char* file : {"folder/4.txt", "folder/5.pdf.bak"}) {
    writeFile(place.at(file), "no PDF");
  }
  QDir(place.work()).mkpath("blocked.pdf_report.txt");
  ASSERT_EQ(mkfifo(QFile::encodeName(place.at("pipe.pdf")).constData(), 0600), 0);

  // The default setup finds nothing, so that outputs prove which setup was used.
  setup.findString = "nothing";
  fxs("../tmp/Folivex.ini");
  const QByteArray defaults = contentOf(place.temporary() + "/Folivex.ini");
  setup.findString = "Account:";
  setup.otherSettingsRemoveFiles = true; // once a batch
  fxs("split.fxs");
  ASSERT_TRUE(QFile::link(place.at("split.fxs"), place.temporary() + "/link.fxs"));
  writeFile(place.at("empty.fxs"), "UNICODEV4\r\n");
  const QByteArray setupText = contentOf(place.at("split.fxs"));
  writeFile(place.at("cut.fxs"), setupText.left(setupText.indexOf("ALWAYSAPPEND") + 5));
  writeFile(place.at("part.fxs"), "FINDSTRING;Account:\nEXTRACT;Next word as filename");
  // What is read beyond the arguments is nothing that could be taken for one.
  place.environment().insert("MALLOC_PERTURB_", "165");

  forEachRow("app/ends.json", [&](const SplitSetup&, const QStringList& row) {
    QDir(place.at("out")).removeRecursively();
    writeFile(place.temporary() + "/Folivex.ini", defaults);
    const ProgramRun run = place.run(row[0].split(u'|'));
    EXPECT_TRUE(run.ended);
    EXPECT_EQ(run.exitCode, shown(row[1].toInt())) << run.err.toStdString();
    EXPECT_EQ(outputs().join(u' ').remove(".pdf"), row[2]);
    EXPECT_TRUE(run.err.contains(row[3].toUtf8())) << run.err.toStdString();
    EXPECT_EQ(run.out, "");
  });
}

TEST_F(Program, FilesThatASearchCannotTakeFailTheRun) {
  QDir(place.work()).mkpath("in/folder.pdf");
  source("in/a.pdf", {"A"});
  source("in/z.Pdf", {"Z"});
  QFile::copy(place.at("in/a.pdf"), place.at("b.pdf"));
  const QByteArray folder = QFile::encodeName(place.at("in/"));
  // The name of another system's code page.
  ASSERT_EQ(rename(QFile::encodeName(place.at("b.pdf")).constData(),
                   (folder + "r\xe9sum\xe9.pdf").constData()),
            0);
  ASSERT_EQ(mkfifo((folder + "pipe.pdf").constData(), 0600), 0);
  ASSERT_TRUE(QFile::link("nowhere", place.at("in/broken.pdf")));
  const ProgramRun run = place.run({fxs(), "-fin/*.pdf", "-c"});
  EXPECT_EQ(run.exitCode, shown(-1)) << run.err.toStdString();
  EXPECT_EQ(outputs(), QStringList{"A.pdf"});
  for (const char* told :
       {"in/broken.pdf: the file is not taken: it is a link that leads nowhere\n",
        "in/pipe.pdf: the file is not taken: it is no ordinary file\n",
        ".pdf: the file is not taken: its name is no valid text\n",
        "in/*.pdf: 3 file(s) are not taken\n", "left out: z.Pdf\n"}) {
    EXPECT_TRUE(run.err.contains(told)) << told << run.err.toStdString();
  }
  EXPECT_EQ(place.run({fxs(), "-fin/a*", "-c"}).exitCode, 0) << "what was not asked for";
  remove((folder + "r\xe9sum\xe9.pdf").constData()); // by its bytes: no text names it
}

TEST_F(Program, Password) {
  source("plain.pdf", {"S1"});
  const ProgramRun made = runProgram("qpdf", {"--encrypt", "s3cret word", "owner", "256", "--",
                                              place.at("plain.pdf"), place.at("locked.pdf")});
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  fxs();
  for (const char* arguments :
       {"-usplit.fxs|-ps3cret word|-flocked.pdf|-c", "-p|s3cret word|-usplit.fxs|-flocked.pdf|-c",
        "-usplit.fxs|-pS3cret word|-flocked.pdf|-c", "-usplit.fxs|-flocked.pdf|-ps3cret word|-c"}) {
    SCOPED_TRACE(arguments);
    const QString line(arguments);
    const bool isRight = line.contains("s3cret") && line.indexOf("s3cret") < line.indexOf("-f");
    QDir(place.at("out")).removeRecursively();
    QFile::remove(place.temporary() + "/Folivex.ini");
    const ProgramRun run = place.run(line.split(u'|'));
    EXPECT_EQ(run.exitCode, isRight ? 0 : shown(-12)) << run.err.toStdString();
    EXPECT_EQ(outputs(), isRight ? QStringList{"S1.pdf"} : QStringList());
    EXPECT_EQ(run.err.contains("password"), !isRight) << run.err.toStdString();
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
      fxs(), source("a.pdf", {"A", "B, the \"second\"", QString::fromUtf8("Élodie"), "A", "=2+3"}),
      "-c"};
  // The default setup is made from the installed example at any start.
  ASSERT_EQ(place.run({"-c"}).exitCode, 0);
  const QStringList before = filesBelow(place.all());
  const QByteArray settings = contentOf(place.temporary() + "/Folivex.ini");

  const ProgramRun table = place.run(QStringList("--plan") + arguments);
  EXPECT_EQ(table.exitCode, 0) << table.err.toStdString();
  EXPECT_TRUE(table.out.endsWith("\n5 page(s): 4 in 4 file(s), 1 only in files that a later one of "
                                 "the same name replaced (1).\n"))
      << table.out.toStdString();
  const ProgramRun csv = place.run(QStringList("--plan=csv") + arguments);
  EXPECT_EQ(filesBelow(place.all()), before);
  EXPECT_EQ(contentOf(place.temporary() + "/Folivex.ini"), settings);

  const QString out = place.at("out/");
  EXPECT_EQ(QString::fromUtf8(csv.out).remove(out),
            "Start Page,End Page,Matched,Output File,Note\n"
            "1,1,A,A.pdf,given up for a later one of the same name\n"
            "2,2,\"B,\",\"B,.pdf\",\n3,3,Élodie,Élodie.pdf,\n4,4,A,A.pdf,\n"
            "5,5,'=2+3,=2+3.pdf,\n")
      << "what a spreadsheet would take for a formula";
  EXPECT_EQ(place.run(arguments).exitCode, 0);
  EXPECT_EQ(outputs(),
            (QStringList{"=2+3.pdf", "A.pdf", "B,.pdf", QString::fromUtf8("Élodie.pdf")}));
  EXPECT_EQ(pageTexts(out + "A.pdf"), QStringList{"Account: A"});
}

TEST_F(Program, NearMissesAndSettingsThatExcludeEachOtherAreTold) {
  const QString file = source("a.pdf", {"A", "B"});
  setup.findString = "account:";
  const ProgramRun run = place.run({fxs(), file, "-c"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(run.err.contains("\"Account:\"")) << run.err.toStdString();
  setup.findString = "two words";
  setup.pageExtract = splitMethodTexts()[2];
  const ProgramRun refused = place.run({fxs(), file, "-c"});
  EXPECT_EQ(refused.exitCode, shown(-6));
  EXPECT_TRUE(refused.err.contains("only one word is allowed")) << refused.err.toStdString();
}
