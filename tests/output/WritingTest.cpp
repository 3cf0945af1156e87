// Outputs on disk: written by the libraries, appended, or made by an external command.
#include "engine/output/ExternalCommand.h"
#include "tests/support/RunBench.h"
#include "tests/support/SmallDisk.h"

#include <limits>

using namespace folivex;
using namespace folivex::test;

namespace {

/// Two pages for 1001, one for 1002, two for 1001 again.
TextPdf fivePages() {
  return statements({QStringLiteral("Account: 1001"), QStringLiteral("more"),
                     QStringLiteral("Account: 1002"), QStringLiteral("Account: 1001"),
                     QStringLiteral("last")});
}

class Writing : public RunBench {
protected:
  Writing() { fivePages().write(source()); }

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

/// Room for the reports and the setup, in bytes, not for a page with tooMuch() on it.
constexpr int smallDisk = 24'000;
PdfText tooMuch() {
  QString noise;
  for (int i = 0; i < 40'000; ++i) {
    noise += QChar(0x4E00 + (i * 7919) % 20'000);
  }
  return {10, 10, noise, 0.01};
}

const QByteArray cutWithQpdf = "exec qpdf \"$1\" --pages . \"$3-$4\" -- \"$2\"";

} // namespace

TEST_F(Writing, TakenNamesGetNumbers) {
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(outputs(),
            (QStringList{"1001.pdf: Account: 1001 | more", "1001_part002.pdf: Account: 1001 | last",
                         "1002.pdf: Account: 1002"}));
  EXPECT_EQ(reportLines(), (QStringList{"1 ,2 ,1001 ,out/1001.pdf", "3 ,3 ,1002 ,out/1002.pdf",
                                        "4 ,5 ,1001 ,out/1001_part002.pdf", ",3, PDF file(s)"}));
  EXPECT_EQ(m_person.notes.back(), "5 page(s): 5 in 3 file(s).");
}

TEST_F(Writing, LaterOutputReplacesEarlierAndOld) {
  writeFile(at("out/1001.pdf"), "old");
  setup().alwaysOverwrite = true;
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: Account: 1001 | last", "1002.pdf: Account: 1002"}));
  EXPECT_EQ(m_person.notes.back(), "5 page(s): 3 in 2 file(s), 2 only in files that a later one "
                                   "of the same name replaced (1-2).");
  EXPECT_EQ(reportLines().back(), ",2, PDF file(s)");
}

TEST_F(Writing, AppendedOutputGrowsAndLeavesNothingBeside) {
  statements({QStringLiteral("of yesterday")}).write(at("out/1001.pdf"));
  for (const bool overwriteToo : {false, true}) {
    SCOPED_TRACE(overwriteToo);
    setup().alwaysAppend = true;
    setup().alwaysOverwrite = overwriteToo;
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(reportLines().back(), ",3, PDF file(s)");
    EXPECT_EQ(m_person.notes.back(), "5 page(s): 5 in 2 file(s).");
    EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "1002.pdf"}));
  }
  const QString run = QStringLiteral(" | Account: 1001 | more | Account: 1001 | last");
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: of yesterday" + run + run,
                                    "1002.pdf: Account: 1002 | Account: 1002"}));
}

TEST_F(Writing, FailedAppendLeavesTheOldFileAsItWas) {
  const QByteArray old = "%PDF-1.4 that is none";
  setup().alwaysAppend = true;
  struct Row {
    bool automation;
    bool commandLine;
    bool overwriteToo;  ///< then all outputs wait for the end of the source
    int files;          ///< left in the output folder
    qsizetype messages; ///< boxes for a person
  };
  for (const Row& row : {Row{false, false, false, 2, 1}, Row{true, false, false, 2, 0},
                         Row{true, true, false, 1, 0}, Row{true, true, true, 1, 0}}) {
    SCOPED_TRACE(row.commandLine);
    m_person.messages.clear();
    QDir(at("out")).removeRecursively();
    QDir(folder()).mkdir("out");
    writeFile(at("out/1001.pdf"), old);
    writeFile(at("out/1001.pdf.tmp"), "left by a run that was killed");
    setup().alwaysOverwrite = row.overwriteToo;
    driver().setAutomation(row.automation);
    driver().setCommandLine(row.commandLine);
    EXPECT_EQ(run(), RunError::Append);
    EXPECT_EQ(contentOf(at("out/1001.pdf")), old);
    // Started with arguments, the first failure ends the run; else the next outputs are made.
    EXPECT_EQ(filesBelow(at("out")).size(), row.files)
        << filesBelow(at("out")).join(' ').toStdString();
    EXPECT_EQ(m_person.messages.filter("problem appending to file: " + at("out/1001.pdf")).size(),
              row.messages)
        << m_person.messages.join('\n').toStdString();
    EXPECT_TRUE(m_person.notes.back().contains("FAILED (1-2"))
        << m_person.notes.back().toStdString();
  }
}

/// What a run that is stopped has taken on is written, as it would be at once, and no more.
TEST_F(Writing, StopLeavesWhatWasAppendedUntilThen) {
  statements({QStringLiteral("of yesterday")}).write(at("out/1001.pdf"));
  setup().alwaysAppend = true;
  m_person.onProgress = [this](const Progress& progress) {
    if (progress.text == "Processing page: 4") {
      driver().Stop();
    }
  };
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: of yesterday | Account: 1001 | more",
                                    "1002.pdf: Account: 1002"}));
  EXPECT_EQ(m_person.notes.back(),
            "5 page(s): 3 in 2 file(s), 2 not written, since the run was stopped (4-5).");
  EXPECT_EQ(reportLines().back(), ",2, PDF file(s)");
}

/// The files already in their last change are whole; those not begun are as they were.
TEST_F(Writing, StopWhileFilesGrowLeavesOutTheRest) {
  statements({QStringLiteral("of yesterday")}).write(at("out/1002.pdf"));
  setup().alwaysAppend = true;
  int told = 0;
  m_person.onProgress = [&](const Progress& progress) {
    // Told when the range is taken on, and again when its file is written.
    if (progress.text.endsWith("1001.pdf") && ++told == 3) {
      driver().Stop();
    }
  };
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: Account: 1001 | more | Account: 1001 | last",
                                    "1002.pdf: of yesterday"}));
  EXPECT_EQ(m_person.notes.back(),
            "5 page(s): 4 in 1 file(s), 1 not written, since the run was stopped (3).");
  EXPECT_EQ(reportLines(), (QStringList{"1 ,2 ,1001 ,out/1001.pdf", "4 ,5 ,1001 ,out/1001.pdf",
                                        ",2, PDF file(s)"}));
}

TEST_F(Writing, FileThatGrowsOverRangesOfOneTextIsOneFile) {
  statements({"Account: 1001", "more", "Account: 1001", "Account: 1001", "Account: 1002"})
      .write(source());
  const QStringList expected{"1001.pdf: Account: 1001 | more | Account: 1001 | Account: 1001",
                             "1002.pdf: Account: 1002"};
  struct Row {
    const char* fault;
    bool overwrite;
    bool append;
  };
  for (const Row& row :
       {Row{"number added to a file of the same run", false, false},
        Row{"shorter one left", true, false}, Row{"pages of the shorter one twice", false, true},
        Row{"pages of the shorter one twice at the end", true, true}}) {
    SCOPED_TRACE(row.fault);
    QDir(at("out")).removeRecursively();
    setup().pageExtract = splitMethodTexts()[1];
    setup().alwaysOverwrite = row.overwrite;
    setup().alwaysAppend = row.append;
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(outputs(), expected);
    EXPECT_TRUE(m_person.notes.back().startsWith("5 page(s): 5 in 2 file(s)"))
        << m_person.notes.back().toStdString();
  }
}

TEST_F(Writing, ExternalCommandGetsEachOutput) {
  const QString folder = at("a \"quoted\" folder");
  QDir().mkdir(folder);
  fivePages().write(folder + "/my source.pdf");
  setup().fileName = folder + "/my source.pdf";
  setup().outputDir = folder;
  useCommand(cutter(cutWithQpdf), "\"[IN]\" \"[OUT]\" [START] [END]");
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  const QByteArray in = (folder + "/my source.pdf").toUtf8();
  const QByteArray out = folder.toUtf8();
  EXPECT_EQ(contentOf(at("calls")), "[" + in + "][" + out + "/1001.pdf][1][2]\n[" + in + "][" +
                                        out + "/1002.pdf][3][3]\n[" + in + "][" + out +
                                        "/1001_part002.pdf][4][5]\n");
  EXPECT_EQ(pageTexts(folder + "/1001_part002.pdf"), (QStringList{"Account: 1001", "last"}));
  EXPECT_EQ(m_person.notes.back(), "5 page(s): 5 in 3 file(s).");
}

TEST_F(Writing, ExternalCommandThatFailsIsTold) {
  struct Row {
    QString program;
    const char* said;
  };
  const Row rows[] = {
      {cutter("echo no space >&2; exit 3"), "ended with 3 and left no file"},
      {at("no such program"), "could not be started"},
  };
  for (const Row& row : rows) {
    m_person.notes.clear();
    useCommand(row.program, "[IN]");
    EXPECT_EQ(run(), RunError::OutputFailed);
    EXPECT_EQ(m_person.notes.filter(row.said).size(), 3) << m_person.allNotes().toStdString();
    EXPECT_EQ(m_person.notes.back(), "5 page(s): 0 in 0 file(s), 5 FAILED (1-5).");
  }
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
  EXPECT_TRUE(m_person.messages.contains("Process Stopped!"));
  EXPECT_EQ(m_person.notes.back(),
            "5 page(s): 2 in 1 file(s), 3 not written, since the run was stopped (3-5).");
}

TEST_F(Writing, UnwritablePlaceLeavesNoPartOfAFile) {
  struct Row {
    const char* fault;
    std::function<void()> arrange;
  };
  const Row rows[] = {
      {"file where the folder should be",
       [this] {
         QDir(at("out")).removeRecursively();
         writeFile(at("out"), "in the way");
       }},
      {"folder where the files should be",
       [this] {
         QDir(folder()).mkpath("out/1001.pdf");
         QDir(folder()).mkpath("out/1002.pdf");
         setup().alwaysOverwrite = true;
       }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    row.arrange();
    m_person.notes.clear();
    EXPECT_EQ(run(), RunError::OutputFailed);
    EXPECT_TRUE(m_person.notes.back().contains("0 in 0 file(s)"))
        << m_person.notes.back().toStdString();
    EXPECT_TRUE(m_person.notes.back().contains("FAILED")) << m_person.notes.back().toStdString();
    EXPECT_EQ(reportLines(), QStringList{",0, PDF file(s)"});
    EXPECT_FALSE(
        m_person.notes.filter(at("out/1002.pdf") + ": pages 3-3 could not be written: ").isEmpty())
        << m_person.allNotes().toStdString();
    EXPECT_TRUE(filesBelow(at("out")).isEmpty());
    QFile::remove(at("out"));
  }
}

TEST_F(Writing, FullDiskLeavesNoPartOfAFile) {
  TextPdf pdf = fivePages();
  pdf.pages[0].texts.push_back(tooMuch());
  pdf.write(source());
  {
    const SmallDisk full(smallDisk);
    EXPECT_EQ(run(), RunError::OutputFailed);
  }
  EXPECT_EQ(outputs(),
            (QStringList{"1001_part002.pdf: Account: 1001 | last", "1002.pdf: Account: 1002"}));
  EXPECT_EQ(filesBelow(at("out")).size(), 2) << filesBelow(at("out")).join(' ').toStdString();
  EXPECT_EQ(m_person.notes.back(), "5 page(s): 3 in 2 file(s), 2 FAILED (1-2).");
  // What is told is what is there.
  EXPECT_EQ(m_person.questions.filter("Done! - 2 PDF file(s) output").size(), 1);
  EXPECT_EQ(reportLines(), (QStringList{"3 ,3 ,1002 ,out/1002.pdf",
                                        "4 ,5 ,1001 ,out/1001_part002.pdf", ",2, PDF file(s)"}));
}

TEST_F(Writing, APartThatCouldNotBeAppendedIsNotListed) {
  TextPdf pdf = statements({"Account: 1001", "Account: 1002", "Account: 1001"});
  pdf.pages[2].texts.push_back(tooMuch());
  pdf.write(source());
  setup().alwaysAppend = true;
  {
    const SmallDisk full(smallDisk);
    EXPECT_NE(run(), RunError::None);
  }
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: Account: 1001", "1002.pdf: Account: 1002"}));
  EXPECT_EQ(reportLines(), (QStringList{"1 ,1 ,1001 ,out/1001.pdf", "2 ,2 ,1002 ,out/1002.pdf",
                                        ",2, PDF file(s)"}));
}

TEST_F(Writing, ListInPlaceOfOutputs) {
  writeFile(at("out/1001.pdf"), "old");
  const QString list = at("out/a.pdf_filelist.txt");
  const QByteArray names = (source() + '|' + at("out/")).toUtf8();
  struct Row {
    bool overwrite;
    const char* lines;
  };
  for (const Row& row :
       {Row{false,
            "1001_part002.pdf|1|2|N\r\r\n#1002.pdf|3|3|N\r\r\n#1001_part003.pdf|4|5|N\r\r\n"},
        Row{true, "1002.pdf|3|3|Y\r\r\n#1001.pdf|4|5|Y\r\r\n"}}) {
    setup().createList = true;
    setup().alwaysOverwrite = row.overwrite;
    setup().keepBookmarks = row.overwrite;
    setup().prefixFileName = "[EXTRACTTEXTDIR]/";
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "a.pdf_filelist.txt"}));
    setup().prefixFileName.clear();
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(contentOf(list), "\xEF\xBB\xBF" + names + QByteArray(row.lines).replace("#", names));
    EXPECT_EQ(contentOf(at("out/1001.pdf")), "old");
    EXPECT_EQ(reportLines().size(), 4);
  }
  // What was there stays when nothing can be listed.
  const QByteArray before = contentOf(list);
  setup().findString = "nothing";
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(contentOf(list), before);
  setup().findString = "Account:";
  m_person.onProgress = [this](const Progress& progress) {
    if (progress.page == 4) {
      driver().Stop();
    }
  };
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(contentOf(list), before);
  EXPECT_EQ(filesBelow(at("out")).size(), 2);
}

TEST_F(Writing, PagesAreTakenOffTheFrontOnce) {
  setup().offsetFirst = 1;
  setup().extract = fileNameMethodTexts()[3];
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(outputs(), (QStringList{"1-2.pdf: more", "4-5.pdf: last"}));
  EXPECT_EQ(reportLines(),
            (QStringList{"2 ,2 ,1001 ,out/1-2.pdf", "5 ,5 ,1001 ,out/4-5.pdf", ",2, PDF file(s)"}));
  EXPECT_EQ(m_person.notes.back(), "5 page(s): 2 in 2 file(s), 3 in no range (1, 3-4).");
  EXPECT_EQ(m_person.notes.filter("pages 3-3 (1002): nothing is left").size(), 1);

  setup().offsetFirst = std::numeric_limits<int>::max();
  QDir(at("out")).removeRecursively();
  m_person.messages.clear();
  m_person.questions.clear();
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(outputs(), QStringList());
  EXPECT_TRUE((m_person.messages + m_person.questions).filter("no matches").isEmpty())
      << "there were matches";
}

/// The folders of a prefix are made, however deep.
TEST_F(Writing, APrefixMayNameFoldersInFolders) {
  setup().prefixFileName = "2026/03/x_";
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(filesBelow(at("out")), (QStringList{"2026/03/x_1001.pdf", "2026/03/x_1001_part002.pdf",
                                                "2026/03/x_1002.pdf"}));
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

TEST_F(Writing, EveryOutputIsRecordedForMail) {
  setup().emailEnable = true;
  setup().alwaysAppend = true;
  EXPECT_EQ(run(), RunError::None);
  const std::vector<EmailRecord>& records = driver().emails().all();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].outputPath, at("out/1001.pdf"));
  EXPECT_EQ(records[0].firstPage, 1);
  EXPECT_EQ(records[0].lastPage, 5);
  EXPECT_EQ(records[1].matchedText, "1002");
}
