// Whole runs: what is prepared, refused, told and left behind.
#include "engine/job/OcrCopy.h"
#include "engine/match/MatchObserver.h"
#include "tests/support/RunBench.h"

#include <QRegularExpression>

#include <sys/stat.h>

using namespace folivex;
using namespace folivex::test;

namespace {

const QStringList threePages{QStringLiteral("Account: 1001"), QStringLiteral("more"),
                             QStringLiteral("Account: 1002")};
const QString noMatches =
    QStringLiteral("please note: word searching is case sensitive & must contain the full word");

class Job : public RunBench {
protected:
  Job() { statements(threePages).write(source()); }

  void stopAt(int page) {
    m_person.onProgress = [this, page](const Progress& progress) {
      if (progress.page == page && progress.text.startsWith("Processing page")) {
        driver().Stop();
      }
    };
  }

  /// Keeps a copy as if the OCR program had found these texts in the source.
  void recogniseAs(const QStringList& texts) {
    OcrCopy copy(source(), at("tmp/a.pdf_fxs_ocr.pdf"), {});
    EXPECT_FALSE(copy.isThere([] { return false; }));
    statements(texts).write(copy.placeToMake());
    EXPECT_TRUE(copy.takeMade());
  }

  void encrypt(const QStringList& options) {
    const ProgramRun made = runProgram("qpdf", QStringList{"--encrypt"} + options +
                                                   QStringList{"--", source(), at("in/e.pdf")});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
    setup().fileName = at("in/e.pdf");
  }
};

/// Keeps the matches that were shown.
class Shown : public MatchObserver {
public:
  bool onMatch(int page, const QString& word, int, int) override {
    matches += QString::number(page) + ' ' + word;
    return true;
  }
  QStringList matches;
};

/// Any word with an "@".
class AtSigns : public AddressReader {
public:
  Found read(WordSource& words) override {
    Found found;
    for (int i = 0; i < words.numWords(); ++i) {
      if (const PageWord word = words.word(i); word.text.contains(u'@')) {
        found.address = word.text.toString();
      }
    }
    return found;
  }
};

} // namespace

TEST_F(Job, ReportsAreOpenedFirstAndEndMessageAsksForThem) {
  m_person.answer = Answer::Yes;
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(m_person.questions,
            QStringList{"Done! - 2 PDF file(s) output\r\n\r\nReport files have been generated, do "
                        "you want to view text report ?"});
  EXPECT_EQ(m_person.opened, QStringList{source() + "_report.txt"});
  EXPECT_TRUE(contentOf(source() + "_report.txt").endsWith("\t2 PDF file(s)\r\r\n"));
  // The settings of the run are those of the next start.
  SetupStore next;
  ASSERT_TRUE(next.LoadSetup(at("tmp/Folivex.ini")).ok());
  EXPECT_EQ(next.working().fileName, source());
}

TEST_F(Job, RunWithoutMatchSaysSo) {
  setup().findString = "ACCOUNT:";
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(m_person.messages, QStringList{"Done! and no matches we're found!,\r\n" + noMatches});
  m_person.notes.clear();
  driver().explainNoMatch();
  EXPECT_FALSE(m_person.notes.isEmpty());
}

TEST_F(Job, UnwritableReportsEndTheRunBeforeItsFirstOutput) {
  const QString hint = ", try changing the report path in report options";
  for (const bool text : {true, false}) {
    const QString inTheWay = source() + (text ? "_report.txt" : "_report.csv");
    QDir().mkdir(inTheWay);
    EXPECT_EQ(run(), text ? RunError::TextReport : RunError::CsvReport);
    EXPECT_EQ(m_person.messages.takeLast(),
              "file error! can't write to report file: " + inTheWay + (text ? hint : ""));
    EXPECT_TRUE(filesBelow(at("out")).isEmpty());
    QDir().rmdir(inTheWay);
  }
}

TEST_F(Job, ReportFolderThatIsTheOutputFolderNeedNotExist) {
  setup().outputDir = at("new");
  m_store.working().reportOptionsCurrent = false;
  m_store.working().reportOptionsOutputFolder = at("new");
  EXPECT_EQ(run(), RunError::None) << m_person.messages.join('\n').toStdString();
  EXPECT_EQ(filesBelow(at("new")),
            (QStringList{"1001.pdf", "1002.pdf", "a.pdf_report.csv", "a.pdf_report.txt"}));
}

TEST_F(Job, SettingsThatExcludeEachOtherAreRefusedBeforeAnythingIsTouched) {
  writeFile(at("out/old.pdf"), "old");
  setup().otherSettingsRemoveFiles = true;
  setup().findString = "Invoice No";
  for (const int method : {2, 3}) {
    setup().pageExtract = splitMethodTexts()[method];
    EXPECT_EQ(run(), RunError::Contradiction);
  }
  EXPECT_EQ(m_person.messages.back(), "When using h,v position only one word is allowed in search, "
                                      "that word is the position");
  EXPECT_EQ(filesBelow(folder()), (QStringList{"in/a.pdf", "out/old.pdf"}));
}

TEST_F(Job, OutputFolderIsClearedOnlyWhenItIsTheOutputFolder) {
  const QStringList made{"1001.pdf", "1002.pdf"};
  const QStringList besides{"a.pdf", "a.pdf_report.csv", "a.pdf_report.txt"};
  const auto left = [this](const char* outputs, bool splitToSource) {
    writeFile(at(outputs) + "/old.pdf", "old");
    setup().otherSettingsRemoveFiles = true;
    setup().splitToSource = splitToSource;
    setup().outputDir = at(splitToSource ? "out" : outputs);
    EXPECT_EQ(run(), RunError::None);
    return filesBelow(at(outputs));
  };
  EXPECT_EQ(left("out", false), made);
  EXPECT_EQ(left("in", false), made + besides) << "the source removed";
  QDir(at("in")).remove("1001.pdf");
  QDir(at("in")).remove("1002.pdf");
  EXPECT_EQ(left("in", true), made + besides + QStringList{"old.pdf"}) << "the source's folder";
}

TEST_F(Job, BatchClearsTheOutputFolderOnceAndNoneOfItsSources) {
  ASSERT_TRUE(QFile::copy(at("in/a.pdf"), at("in/b.pdf")));
  writeFile(at("in/old.pdf"), "old");
  setup().otherSettingsRemoveFiles = true;
  setup().outputDir = at("in");
  setup().prefixFileName = "[FILETITLE]_";
  driver().beginBatch({at("in/a.pdf"), at("in/b.pdf")});
  for (const char* source : {"in/a.pdf", "in/b.pdf"}) {
    setup().fileName = at(source);
    EXPECT_EQ(driver().StartProcessing(), RunError::None);
  }
  driver().endBatch();
  EXPECT_EQ(
      filesBelow(at("in")).filter(".pdf").filter(QRegularExpression("pdf$")),
      (QStringList{"a.pdf", "a_1001.pdf", "a_1002.pdf", "b.pdf", "b_1001.pdf", "b_1002.pdf"}));
}

TEST_F(Job, NothingIsClearedForASourceThatCannotBeSplitNorForAFolderOfBlanks) {
  const QByteArray home = qgetenv("HOME");
  qputenv("HOME", QFile::encodeName(folder()));
  setup().otherSettingsRemoveFiles = true;
  for (const char* name : {"out/old.pdf", "splitoutput/old.pdf"}) {
    QDir().mkpath(at("splitoutput"));
    writeFile(at(name), "old");
  }
  setup().outputDir = "  ";
  EXPECT_EQ(run(), RunError::None);
  EXPECT_TRUE(QFile::exists(at("splitoutput/old.pdf")));
  qputenv("HOME", home);

  setup().outputDir = at("out");
  writeFile(at("in/bad.pdf"), "no PDF");
  driver().beginBatch({at("in/bad.pdf"), source()});
  setup().fileName = at("in/bad.pdf");
  EXPECT_EQ(run(), RunError::Unreadable);
  EXPECT_EQ(filesBelow(at("out")).filter("pdf"), QStringList("old.pdf"));
  setup().fileName = source();
  EXPECT_EQ(run(), RunError::None);
  EXPECT_TRUE(QFile::exists(at("out/.folivex.lock"))) << "another run may come between the sources";
  driver().endBatch();
  EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "1002.pdf"}));
}

TEST_F(Job, ListOfNamesInAFolderThatIsClearedIsReadBefore) {
  writeFile(at("out/names.txt"), "one\na?b\n");
  setup().otherSettingsRemoveFiles = true;
  setup().extract = fileNameMethodTexts()[9];
  m_store.working().reportUseFileList = at("out/names.txt");
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(outputs(), (QStringList{"ab.pdf: Account: 1002", "one.pdf: Account: 1001 | more"}));
  EXPECT_EQ(m_person.notes.filter("names.txt: line 2 cannot be a name").size(), 1)
      << m_person.allNotes().toStdString();
}

TEST_F(Job, PageCountsThatDifferAreRefused) {
  // The content of a page listed among the pages: one library takes it for a page.
  QByteArray bytes = statements(threePages).bytes();
  ASSERT_TRUE(bytes.contains("/Kids[7 0 R 9 0 R 11 0 R ]"));
  writeFile(source(), bytes.replace("/Kids[7 0 R 9 0 R 11 0 R ]", "/Kids[7 0 R 8 0 R 9 0 R  ]"));
  EXPECT_EQ(run(), RunError::Unreadable);
  EXPECT_EQ(m_person.messages, QStringList{source() + ": is damaged: one reading finds 3 page(s), "
                                                      "another 2; it is not split, since pages "
                                                      "could be lost"});
  EXPECT_TRUE(filesBelow(at("out")).isEmpty());
  EXPECT_EQ(reportLines(), QStringList{",0, PDF file(s)"});
}

TEST_F(Job, ProtectedSourceIsToldOnceAndOutputsAreNot) {
  encrypt({"", "owner", "256", "--extract=n"});
  EXPECT_EQ(run(), RunError::None) << m_person.messages.join('\n').toStdString();
  EXPECT_EQ(m_person.notes.filter("protected"),
            QStringList{at("in/e.pdf") +
                        ": the file's permissions forbid taking its text out; it is processed, and "
                        "the outputs are written unprotected"});
  encrypt({"user", "owner", "256"});
  setup().pdfPassword = "wrong";
  EXPECT_EQ(run(), RunError::Unreadable);
  EXPECT_TRUE(m_person.messages.back().contains("password"));
  EXPECT_FALSE(m_person.messages.back().contains("wrong\""));

  setup().pdfPassword = "user";
  setup().alwaysOverwrite = true;
  m_person.notes.clear();
  EXPECT_EQ(run(), RunError::None) << m_person.messages.join('\n').toStdString();
  EXPECT_EQ(
      m_person.notes.filter("protected"),
      QStringList{at("in/e.pdf") + ": the file is protected; the outputs are written unprotected"});
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: Account: 1001 | more", "1002.pdf: Account: 1002"}));
}

TEST_F(Job, OcrCopyOfAnEarlierRunIsReadButNotSplit) {
  statements({"scan", "scan", "scan"}).write(source());
  recogniseAs(threePages);
  setup().ocrFirst = true;
  EXPECT_EQ(run(), RunError::None) << m_person.messages.join('\n').toStdString();
  EXPECT_EQ(outputs(), (QStringList{"1001.pdf: scan | scan", "1002.pdf: scan"}));
  EXPECT_EQ(m_person.notes.filter("the OCR'd copy of an earlier run is used").size(), 1);

  // Who looks for positions sees the words that a run would see.
  driver().ListPagePositions(1);
  EXPECT_TRUE(contentOf(at("tmp/page_positions.txt")).contains("\n1001 "))
      << contentOf(at("tmp/page_positions.txt")).toStdString();
}

TEST_F(Job, OcrCopyThatCannotBeTheSourcesIsRefused) {
  const QString copy = at("tmp/a.pdf_fxs_ocr.pdf");
  setup().ocrFirst = true;
  recogniseAs({"Account: 1001"});
  EXPECT_EQ(run(), RunError::Unreadable);
  EXPECT_TRUE(m_person.messages.back().contains("has 1 page(s), its source 3"))
      << m_person.messages.back().toStdString();
  EXPECT_EQ(m_person.notes.filter("remove it and run again").size(), 1);
  EXPECT_TRUE(filesBelow(at("out")).isEmpty());

  // Copies that nobody vouches for, and a link to somebody's file, would choose the names.
  const TextPdf others = statements({"Account: x", "Account: y", "Account: z"});
  const auto readsTheSource = [this] {
    QDir(at("out")).removeRecursively();
    EXPECT_EQ(run(), RunError::None);
    return filesBelow(at("out")) == QStringList{"1001.pdf", "1002.pdf"};
  };
  others.write(copy);
  EXPECT_TRUE(readsTheSource()) << "a copy that was changed";
  QFile::remove(copy + ".source");
  EXPECT_TRUE(readsTheSource()) << "a copy of nobody knows what";
  for (const char* name : {"", ".source"}) {
    QFile::remove(copy + name);
    others.write(at("elsewhere.pdf"));
    ASSERT_TRUE(QFile::link(at("elsewhere.pdf"), copy + name));
    m_person.notes.clear();
    EXPECT_TRUE(readsTheSource()) << name;
    EXPECT_EQ(m_person.notes.filter("is a link").size(), 1) << name;
    QFile::remove(copy + name);
  }
}

TEST_F(Job, WithoutTheOcrProgramTheSourceIsRead) {
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", QFile::encodeName(at("tmp")));
  setup().ocrFirst = true;
  const RunError error = run();
  qputenv("PATH", path);
  EXPECT_EQ(error, RunError::None);
  EXPECT_EQ(filesBelow(at("out")), (QStringList{"1001.pdf", "1002.pdf"}));
  EXPECT_EQ(m_person.notes.filter("the OCR program Scanlite was not found").size(), 1)
      << m_person.allNotes().toStdString();
}

TEST_F(Job, BookmarksNeedNoOcrAndAreKeptOnlyWhenAsked) {
  TextPdf pdf = statements(threePages);
  pdf.bookmarks = {{0, 1, "One: 1/2"}, {0, 1, "also"}, {1, 2, "inside"}, {0, 3, "Three"}};
  pdf.write(source());
  setup().ocrFirst = true;
  setup().pageExtract = splitMethodTexts()[8];
  setup().extract = bookmarkFileNameMethodText();
  setup().alwaysOverwrite = true;
  for (const bool keep : {true, false}) {
    setup().keepBookmarks = keep;
    EXPECT_EQ(run(), RunError::None);
    EXPECT_EQ(filesBelow(at("out")), (QStringList{"One 12.pdf", "Three.pdf"}));
    const ProgramRun shown = runProgram("mutool", {"show", at("out/One 12.pdf"), "outline"});
    for (const char* bookmark : {"One: 1/2", "also", "inside"}) {
      EXPECT_EQ(shown.out.contains(bookmark), keep) << shown.out.toStdString();
    }
    EXPECT_FALSE(shown.out.contains("Three"));
  }
  EXPECT_TRUE(m_person.statuses.filter("OCR").isEmpty());
}

TEST_F(Job, StopBetweenPagesLeavesWholeFilesAndClosedReports) {
  statements({"Account: 1", "Account: 2", "more", "Account: 3", "Account: 4"}).write(source());
  stopAt(4);
  EXPECT_EQ(run(), RunError::None);
  EXPECT_EQ(m_person.messages.back(), "Process Stopped!");
  EXPECT_EQ(outputs(), QStringList{"1.pdf: Account: 1"});
  const QString told = "5 page(s): 1 in 1 file(s), 4 not written, since the run was stopped (2-5).";
  EXPECT_EQ(m_person.notes.back(), told);
  EXPECT_EQ(reportLines(), (QStringList{"1 ,1 ,1 ,out/1.pdf", ",1, PDF file(s)"}));
  EXPECT_TRUE(contentOf(source() + "_report.txt").endsWith(told.toUtf8() + "\r\r\n"));

  // Outputs that may give way to later ones wait for the end: those that were whole are kept too.
  for (const bool append : {false, true}) {
    setup().alwaysOverwrite = true;
    setup().alwaysAppend = append;
    QDir(at("out")).removeRecursively();
    EXPECT_EQ(run(), RunError::None);
    EXPECT_EQ(outputs(), QStringList{"1.pdf: Account: 1"});
    EXPECT_EQ(m_person.notes.back(), told);
    EXPECT_EQ(reportLines(), (QStringList{"1 ,1 ,1 ,out/1.pdf", ",1, PDF file(s)"}));
  }
}

TEST_F(Job, AWayOfNamingThatIsNoneIsTold) {
  for (const auto& [text, said] : {std::pair{"", "no filename method is chosen"},
                                   std::pair{"next word as filename", "\"next word as filename\""},
                                   std::pair{"Next word as filename", ""}}) {
    setup().extract = text;
    m_person.notes.clear();
    run();
    const QStringList plan = textsOf(driver().Plan().notes);
    EXPECT_EQ(m_person.notes.filter("(EXTRACT)").size(), *said == '\0' ? 0 : 1) << text;
    EXPECT_EQ(plan.filter("(EXTRACT)").filter(said).size(), *said == '\0' ? 0 : 1) << text;
  }
}

/// Nobody mails the outputs of a stopped run: without a word they would pass for sent.
TEST_F(Job, AStoppedRunTellsOfTheMailsThatNobodySent) {
  statements({"Account: 1 a@x.example", "Account: 2", "Account: 3 c@x.example", "Account: 4",
              "Account: 5"})
      .write(source());
  driver().setAddressReaderMaker([](const SplitSetup&) { return std::make_unique<AtSigns>(); });
  const auto tells = [this](bool enabled, int page) {
    setup().emailEnable = enabled;
    m_person.notes.clear();
    stopAt(page);
    run();
    return m_person.notes.contains("2 output(s) with an e-mail address were written before the "
                                   "stop; none of them was mailed.");
  };
  EXPECT_TRUE(tells(true, 5)) << m_person.allNotes().toStdString();
  EXPECT_FALSE(tells(true, 99));
  EXPECT_FALSE(tells(false, 5));
}

TEST_F(Job, NoAddressIsLookedForOnAPageOfTooManyWords) {
  constexpr int mostWords = 32768;
  TextPdf pdf;
  for (const int words : {mostWords, mostWords + 1, mostWords + 1}) {
    pdf.page({"Account: " + QString::number(pdf.pages.size()), "a@x.example"});
    int left = words - 3; // of the two lines
    for (int v = 200; left > 0; ++v) {
      const int inLine = std::min(left, 1500);
      pdf.pages.back().texts.push_back({60, v, QStringLiteral("x ").repeated(inLine), 0.2});
      left -= inLine;
    }
  }
  pdf.write(source());
  driver().setAddressReaderMaker([](const SplitSetup&) { return std::make_unique<AtSigns>(); });
  setup().emailEnable = true;
  run();
  QStringList found;
  for (const EmailRecord& record : driver().emails().all()) {
    found += record.addresses.address;
  }
  EXPECT_EQ(found, QStringList({"a@x.example", "", ""}));
  EXPECT_EQ(m_person.messages.count("Too many words on the page!"), 1)
      << m_person.messages.join('\n').toStdString();
}

TEST_F(Job, ShowOnlyRun) {
  const auto shown = [this](const char* search) {
    setup().findString = search;
    Shown observer;
    driver().ShowMatches(observer);
    return observer.matches.join('|');
  };
  EXPECT_EQ(shown("Account:"), "0 Account:|2 Account:");
  EXPECT_EQ(m_person.messages.takeLast(), "No more matches found.");
  EXPECT_EQ(shown("account:"), "");
  EXPECT_EQ(m_person.messages.takeLast(), "No matches found,\r\n" + noMatches);
  m_person.onEvents = [this] { driver().Stop(); };
  shown("Account:");
  EXPECT_TRUE(m_person.messages.isEmpty()) << m_person.messages.join('\n').toStdString();
  EXPECT_EQ(filesBelow(folder()), QStringList{"in/a.pdf"});

  m_person.onEvents = nullptr;
  setup().pageExtract = splitMethodTexts()[7];
  shown("Account:");
  EXPECT_EQ(m_person.messages, QStringList{"Sorry can't show with bookmarks, can extract only"});
}

TEST_F(Job, PagePositionsOfOnePage) {
  const auto listed = [this] { return contentOf(at("tmp/page_positions.txt")); };
  TextPdf().page().page({"first line", "second"}).write(source());
  driver().ListPagePositions(2);
  EXPECT_TRUE(listed().contains("Source PDF File: " + source().toUtf8() + ", Page no: 2\r\r\n"));
  EXPECT_TRUE(listed().contains("\nfirst               \t60 \t60 \r\r\n"
                                "line                \t96 \t60 \r\r\n"
                                "second              \t60 \t80 \r\r\n"))
      << listed().toStdString();
  EXPECT_EQ(m_person.opened, QStringList{at("tmp/page_positions.txt")});

  driver().ListPagePositions(1);
  EXPECT_EQ(m_person.questions.size(), 1);
  EXPECT_TRUE(listed().contains("No text found!!!"));

  // No listing of a page that is not there, and the last one stays.
  for (const int page : {0, 3, -5}) {
    driver().ListPagePositions(page);
    EXPECT_EQ(m_person.messages.takeLast(),
              QStringLiteral("%1: has 2 page(s), there is no page %2").arg(source()).arg(page));
  }
  setup().fileName = at("in/none.pdf");
  driver().ListPagePositions(1);
  EXPECT_EQ(m_person.messages, QStringList{"Unable to open file: " + at("in/none.pdf")});
  EXPECT_EQ(filesBelow(folder()), (QStringList{"in/a.pdf", "tmp/page_positions.txt"}));
}

TEST_F(Job, PipeIsNeverWaitedFor) {
  QFile::remove(source());
  ASSERT_EQ(mkfifo(QFile::encodeName(source()).constData(), 0600), 0);
  EXPECT_EQ(run(), RunError::Unreadable);
  driver().ListPagePositions(1);
  EXPECT_EQ(m_person.messages,
            (QStringList{source() + ": is no ordinary file", "Unable to open file: " + source()}));
}

TEST_F(Job, NamesOfPagesBeyondTheSourceAreNeverReserved) {
  for (const int start : {7, 2}) {
    setup().startFromPage = start;
    setup().startEndPage = start == 2 ? -1 : 0;
    EXPECT_EQ(run(), RunError::None);
    EXPECT_TRUE(filesBelow(at("out")).isEmpty());
  }
}
