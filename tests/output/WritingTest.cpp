// Outputs on disk: written by the libraries, appended, or made by an external command.
#include "engine/output/ExternalCommand.h"
#include "tests/support/RunBench.h"
#include "tests/support/SmallDisk.h"

#include <QRegularExpression>

#include <limits>

using namespace folivex;
using namespace folivex::test;

namespace {

/// Two pages for 1001, one for 1002, two for 1001 again.
TextPdf fivePages() {
  return statements({"Account: 1001", "more", "Account: 1002", "Account: 1001", "last"});
}

class Writing : public RunBench {
protected:
  Writing() { fivePages().write(source()); }

  /// Where the pages went.
  QString account() const { return m_person.notes.back(); }

  /// There is room for the reports and the setup, not for a page with tooMuch() on it.
  RunError runOnSmallDisk() {
    const SmallDisk full(24'000);
    return run();
  }

  void stopWhen(const std::function<bool(const Progress&)>& isTime) {
    m_person.onProgress = [this, isTime](const Progress& progress) {
      if (isTime(progress)) {
        driver().Stop();
      }
    };
  }

  void useCommand(const QString& program, const QString& parameters) {
    setup().configUseExternal = true;
    setup().configExternalCommand = program;
    setup().configExternalParams = parameters;
  }

  /// A script that writes down its arguments and lets qpdf do the work.
  QString cutter(const QByteArray& lastLine) {
    QString path = at("cut it.sh");
    writeFile(path, "#!/bin/sh\nprintf '[%s]' \"$@\" >>'" + at("calls").toUtf8() + "'\necho >>'" +
                        at("calls").toUtf8() + "'\n" + lastLine + "\n");
    QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
  }
};

/// Fills a small disk.
PdfText tooMuch() {
  QString noise;
  for (int i = 0; i < 40'000; ++i) {
    noise += QChar(0x4E00 + (i * 7919) % 20'000);
  }
  return {10, 10, noise, 0.01};
}

const QByteArray cutWithQpdf = "exec qpdf \"$1\" --pages . \"$3-$4\" -- \"$2\"";

} // namespace

/// What a run that is stopped has taken on is written, as it would be at once, and no more.
TEST_F(Writing, StopLeavesWhatWasAppendedOrOverwrittenUntilThen) {
  stopWhen([](const Progress& progress) { return progress.text == "Processing page: 4"; });
  for (const bool appends : {true, false}) {
    statements({"of yesterday"}).write(at("out/1001.pdf"));
    setup().alwaysAppend = appends;
    setup().alwaysOverwrite = !appends;
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    const QString grown = appends ? "of yesterday | " : "";
    EXPECT_EQ(outputs(), (QStringList{"1001.pdf: " + grown + "Account: 1001 | more",
                                      "1002.pdf: Account: 1002"}));
    EXPECT_EQ(account(),
              "5 page(s): 3 in 2 file(s), 2 not written, since the run was stopped (4-5).");
    QFile::remove(at("out/1002.pdf"));
  }
}

/// The files already in their last change are whole; those not begun are as they were.
TEST_F(Writing, StopWhileFilesGrowLeavesOutTheRest) {
  statements({"of yesterday"}).write(at("out/1002.pdf"));
  setup().alwaysAppend = true;
  int told = 0;
  // Told when the range is taken on, and again when its file is written.
  stopWhen(
      [&](const Progress& progress) { return progress.text.endsWith("1001.pdf") && ++told == 3; });
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: Account: 1001 | more | Account: 1001 | last",
                                    "1002.pdf: of yesterday"}));
  EXPECT_EQ(account(), "5 page(s): 4 in 1 file(s), 1 not written, since the run was stopped (3).");
  EXPECT_EQ(reportLines(), (QStringList{"1 ,2 ,1001 ,out/1001.pdf", "4 ,5 ,1001 ,out/1001.pdf",
                                        ",2, PDF file(s)"}));
}

TEST_F(Writing, ExternalCommandGetsEachOutput) {
  const QString folder = at("a \"quoted\" folder");
  QDir().mkdir(folder);
  fivePages().write(folder + "/my source.pdf");
  setup().fileName = folder + "/my source.pdf";
  setup().outputDir = folder;
  useCommand(cutter(cutWithQpdf), "\"[IN]\" \"[OUT]\" [START] [END]");
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(contentOf(at("calls")).replace(folder.toUtf8(), "~"),
            "[~/my source.pdf][~/1001.pdf][1][2]\n[~/my source.pdf][~/1002.pdf][3][3]\n"
            "[~/my source.pdf][~/1001_part002.pdf][4][5]\n");
  EXPECT_EQ(pageTexts(folder + "/1001_part002.pdf"), (QStringList{"Account: 1001", "last"}));
  EXPECT_EQ(account(), "5 page(s): 5 in 3 file(s).");
}

TEST_F(Writing, WhatACommandCameToIsToldAndOnlySoundFilesAreMailed) {
  const char* const pages = "5 page(s): 5 in 3 file(s).";
  const char* const nowhere = "5 page(s): 0 in 0 file(s), 5 FAILED (1-5).";
  const char* const handed = "5 page(s): 0 in 0 file(s), 5 handed to the command (1-5).";
  const QByteArray cut = QByteArray(cutWithQpdf).mid(5); // without "exec"
  const struct {
    const char* fault;
    QByteArray lastLine;
    RunError error;
    const char* account;
    qsizetype mailed;
    const char* said;
  } rows[] = {
      {"failure not told", "echo no space >&2; exit 3", RunError::OutputFailed, nowhere, 0,
       "ended with 3 and left no file: no space"},
      {"hand-over taken for a failure", "exit 0", RunError::None, handed, 0, ""},
      {"folder taken for an output", "mkdir \"$2\"", RunError::None, handed, 0, ""},
      {"failure not told beside its file", cut + "; exit 3", RunError::OutputFailed, pages, 3,
       "ended with 3"},
      {"half a file mailed", cut + "; truncate -s -100 \"$2\"; exit 3", RunError::OutputFailed,
       nowhere, 0, "ended with 3"},
      {"file of too many pages mailed", "cp \"$1\" \"$2\"; exit 3", RunError::OutputFailed, nowhere,
       0, "ended with 3"},
      {"warning not shown", cut + "; echo one font is missing >&2", RunError::None, pages, 3,
       "ended with 0: one font is missing"},
      {"crash not told", cut + "; kill -SEGV $$", RunError::OutputFailed, pages, 3, "crashed"},
  };
  setup().emailEnable = true;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    QDir(at("out")).removeRecursively();
    m_person.notes.clear();
    useCommand(cutter(row.lastLine), "\"[IN]\" \"[OUT]\" [START] [END]");
    EXPECT_EQ(run(), row.error);
    EXPECT_EQ(account(), row.account);
    EXPECT_EQ(m_person.notes.filter("the external command").filter(row.said).size(),
              *row.said == '\0' ? 0 : 3)
        << m_person.allNotes().toStdString();
    EXPECT_EQ(reportLines(), (QStringList{"1 ,2 ,1001 ,out/1001.pdf", "3 ,3 ,1002 ,out/1002.pdf",
                                          "4 ,5 ,1001 ,out/1001_part002.pdf", ",3, PDF file(s)"}));
    EXPECT_EQ(driver().emails().all().size(), static_cast<std::size_t>(row.mailed));
  }
  m_person.notes.clear();
  useCommand(at("no such program"), "[IN]");
  EXPECT_EQ(run(), RunError::OutputFailed);
  EXPECT_EQ(m_person.notes.filter("could not be started").size(), 3);
  EXPECT_EQ(account(), nowhere);
  EXPECT_EQ(reportLines(), QStringList{",0, PDF file(s)"});
}

/// The command would write over it.
TEST_F(Writing, FileThatCameAfterItsNameWasTakenIsNoOutput) {
  useCommand(cutter(cutWithQpdf), "\"[IN]\" \"[OUT]\" [START] [END]");
  for (const bool external : {true, false}) {
    setup().configUseExternal = external;
    m_person.onProgress = [this](const Progress& progress) {
      if (progress.text.endsWith("out/1002.pdf")) {
        EXPECT_NE(filesBelow(at("out")).filter(".part").size(), 0) << "the name is not taken";
        writeFile(at("out/1002.pdf"), "somebody's own");
      }
    };
    EXPECT_EQ(run(), RunError::OutputFailed);
    EXPECT_EQ(contentOf(at("out/1002.pdf")), "somebody's own");
    EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "1001_part002.pdf", "1002.pdf"}));
    EXPECT_EQ(account(), "5 page(s): 4 in 2 file(s), 1 FAILED (3).");
    EXPECT_EQ(m_person.notes.filter("another program has put a file there").size(), 1);
    m_person.notes.clear();
    QDir(at("out")).removeRecursively();
    QDir(folder()).mkdir("out");
  }
}

TEST_F(Writing, NothingIsAddedToTheFileBehindALink) {
  statements({"somebody else's"}).write(at("elsewhere.pdf"));
  ASSERT_TRUE(QFile::link(at("elsewhere.pdf"), at("out/1001.pdf")));
  setup().alwaysAppend = true;
  EXPECT_EQ(run(), RunError::Append);
  EXPECT_EQ(pageTexts(at("elsewhere.pdf")), QStringList("somebody else's"));
  EXPECT_EQ(m_person.notes.filter("1001.pdf\": it is a link, which is not followed").size(), 2)
      << m_person.allNotes().toStdString();
  EXPECT_EQ(account(), "5 page(s): 1 in 1 file(s), 4 FAILED (1-2, 4-5).");
}

TEST_F(Writing, StopWhileACommandRunsWaitsForItAndWritesNoMore) {
  // The script goes on only when Stop was pressed, so that the run is in its wait at that time.
  useCommand(cutter("touch '" + at("running").toUtf8() + "'\nwhile ! test -e '" +
                    at("go on").toUtf8() + "'; do sleep 0.02; done\n" + cutWithQpdf),
             "\"[IN]\" \"[OUT]\" [START] [END]");
  m_person.onEvents = [this] {
    if (QFile::exists(at("running"))) {
      driver().Stop();
      writeFile(at("go on"), "");
    }
  };
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(outputs(), QStringList{"1001.pdf: Account: 1001 | more"});
  EXPECT_EQ(contentOf(at("calls")).count('\n'), 1);
  EXPECT_EQ(account(),
            "5 page(s): 2 in 1 file(s), 3 not written, since the run was stopped (3-5).");
}

TEST_F(Writing, FullDiskLeavesNoPartOfAFile) {
  TextPdf pdf = fivePages();
  pdf.pages[0].texts.push_back(tooMuch());
  pdf.write(source());
  EXPECT_EQ(runOnSmallDisk(), RunError::OutputFailed);
  EXPECT_EQ(outputs(),
            (QStringList{"1001_part002.pdf: Account: 1001 | last", "1002.pdf: Account: 1002"}));
  EXPECT_EQ(filesBelow(at("out")).size(), 2) << filesBelow(at("out")).join(' ').toStdString();
  EXPECT_EQ(account(), "5 page(s): 3 in 2 file(s), 2 FAILED (1-2).");
  EXPECT_EQ(reportLines(), (QStringList{"3 ,3 ,1002 ,out/1002.pdf",
                                        "4 ,5 ,1001 ,out/1001_part002.pdf", ",2, PDF file(s)"}));
}

TEST_F(Writing, APartThatCouldNotBeAppendedIsNotListed) {
  TextPdf pdf = statements({"Account: 1001", "Account: 1002", "Account: 1001"});
  pdf.pages[2].texts.push_back(tooMuch());
  pdf.write(source());
  setup().alwaysAppend = true;
  EXPECT_NE(runOnSmallDisk(), RunError::None);
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: Account: 1001", "1002.pdf: Account: 1002"}));
  EXPECT_EQ(reportLines(), (QStringList{"1 ,1 ,1001 ,out/1001.pdf", "2 ,2 ,1002 ,out/1002.pdf",
                                        ",2, PDF file(s)"}));
}

TEST_F(Writing, ListInPlaceOfOutputs) {
  writeFile(at("out/1001.pdf"), "old");
  const QString list = at("out/a.pdf_filelist.txt");
  const QByteArray names = (source() + '|' + at("out/")).toUtf8();
  const char* const numbered =
      "1001_part002.pdf|1|2|N\r\r\n#1002.pdf|3|3|N\r\r\n#1001_part003.pdf|4|5|N\r\r\n";
  const char* const last = "1002.pdf|3|3|Y\r\r\n#1001.pdf|4|5|Y\r\r\n";
  setup().createList = true;
  for (const bool overwrite : {false, true}) {
    setup().alwaysOverwrite = setup().keepBookmarks = overwrite;
    setup().prefixFileName = "[EXTRACTTEXTDIR]/";
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "a.pdf_filelist.txt"}));
    setup().prefixFileName.clear();
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(contentOf(list),
              "\xEF\xBB\xBF" + names + QByteArray(overwrite ? last : numbered).replace("#", names));
    EXPECT_EQ(contentOf(at("out/1001.pdf")), "old");
    EXPECT_EQ(reportLines().size(), 4);
  }
  // What was there stays when nothing can be listed.
  const QByteArray before = contentOf(list);
  setup().findString = "nothing";
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(contentOf(list), before);
  setup().findString = "Account:";
  stopWhen([](const Progress& progress) { return progress.page == 4; });
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(contentOf(list), before);
  EXPECT_EQ(filesBelow(at("out")).size(), 2);
}

TEST_F(Writing, ANameListThatIsMissingOrTooShortIsTold) {
  setup().extract = fileNameMethodTexts()[9];
  m_store.working().reportUseFileList = at("names.txt");
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(m_person.notes.filter("names.txt: this list of names cannot be opened").size(), 1);
  writeFile(at("names.txt"), "one\n");
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(m_person.notes.filter("names.txt: this list has fewer names").size(), 1);
}

TEST_F(Writing, FailedAppendLeavesTheOldFileAsItWas) {
  const QByteArray old = "%PDF-1.4 that is none";
  setup().alwaysAppend = true;
  for (const auto& [automation, commandLine] :
       {std::pair(false, false), {true, false}, {true, true}}) {
    m_person.messages.clear();
    QDir(at("out")).removeRecursively();
    QDir(folder()).mkdir("out");
    writeFile(at("out/1001.pdf"), old);
    writeFile(at("out/1001.pdf.tmp"), "somebody's own");
    ASSERT_TRUE(QFile::link(at("in/a.pdf"), at("out/.folivex-addition.part")));
    driver().setAutomation(automation);
    driver().setCommandLine(commandLine);
    EXPECT_EQ(run(), RunError::Append);
    EXPECT_EQ(contentOf(at("out/1001.pdf")), old);
    // Started with arguments, the first failure ends the run; else the next outputs are made.
    EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "1001.pdf.tmp"} +
                                      QStringList(commandLine ? 0 : 1, "1002.pdf")));
    EXPECT_EQ(contentOf(at("out/1001.pdf.tmp")), "somebody's own");
    EXPECT_EQ(pageTexts(source()).size(), 5);
    EXPECT_EQ(m_person.messages.filter("problem appending to file: " + at("out/1001.pdf")).size(),
              automation ? 0 : 1);
    EXPECT_TRUE(account().contains("FAILED (1-2")) << m_person.allNotes().toStdString();
  }
}

TEST_F(Writing, UnwritablePlaceLeavesNoPartOfAFile) {
  QDir(folder()).mkpath("out/1001.pdf");
  QDir(folder()).mkpath("out/1002.pdf");
  writeFile(at("no folder"), "in the way");
  setup().alwaysOverwrite = true;
  for (const QString place : {"out", "no folder"}) {
    setup().outputDir = at(place);
    EXPECT_EQ(run(), RunError::OutputFailed);
    EXPECT_TRUE(account().contains(QRegularExpression("0 in 0 file.*FAILED")));
    EXPECT_EQ(reportLines(), QStringList{",0, PDF file(s)"});
    const QString problem = at(place) + "/1002.pdf: pages 3-3 could not be written: ";
    EXPECT_EQ(m_person.notes.filter(problem).size(), 1) << m_person.allNotes().toStdString();
    EXPECT_EQ(filesBelow(at("out")), QStringList());
  }
}

TEST_F(Writing, PagesAreTakenOffTheFrontAndNoMore) {
  setup().extract = fileNameMethodTexts()[3];
  setup().offsetFirst = std::numeric_limits<int>::max();
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(outputs(), QStringList());
  EXPECT_TRUE((m_person.messages + m_person.questions).filter("no matches").isEmpty());
  m_person.notes.clear();
  setup().offsetFirst = 1;
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(reportLines(),
            (QStringList{"2 ,2 ,1001 ,out/1-2.pdf", "5 ,5 ,1001 ,out/4-5.pdf", ",2, PDF file(s)"}));
  EXPECT_EQ(m_person.notes.filter("pages 3-3 (1002): nothing is left").size(), 1);
}

/// In folders of any depth, which are made; what an earlier run wrote is forgotten.
TEST_F(Writing, EveryOutputIsRecordedForMail) {
  setup().emailEnable = true;
  setup().alwaysAppend = true;
  for (const QString prefix : {"", "2026/03/x_"}) {
    setup().prefixFileName = prefix;
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    const std::vector<EmailRecord>& records = driver().emails().all();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].outputPath, at("out/" + prefix + "1001.pdf"));
    EXPECT_EQ(records[0].firstPage, 1);
    EXPECT_EQ(records[0].lastPage, 5);
    EXPECT_EQ(records[1].matchedText, "1002");
    EXPECT_EQ(pageTexts(records[1].outputPath), QStringList("Account: 1002"));
    EXPECT_EQ(records[0].identity, platform::FileDigest::of(records[0].outputPath));
    EXPECT_TRUE(records[0].identity.isKnown());
    EXPECT_FALSE(records[0].holdsEarlierPages);
  }
  setup().prefixFileName.clear();
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  const EmailRecord& grown = driver().emails().all()[0];
  EXPECT_TRUE(grown.holdsEarlierPages);
  EXPECT_EQ(grown.identity, platform::FileDigest::of(grown.outputPath));
}
