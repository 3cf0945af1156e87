// The setup file's text, line by line and whole.
#include "engine/setup/SetupFile.h"
#include "tests/support/StoredInputs.h"

#include <gtest/gtest.h>

#include <limits>

using namespace folivex;

namespace {

/// A record in which every field differs from its default and from its neighbours, and its text.
struct OddSetup {
  OddSetup() {
    line("USECURRENT;1", &SplitSetup::useCurrent, true);
    line("SPLITTOSOURCE;1", &SplitSetup::splitToSource, true);
    line("ROTATED;1", &SplitSetup::rotated, true);
    line("CREATELIST;1", &SplitSetup::createList, true);
    line("KEEPBOOKMARKS;1", &SplitSetup::keepBookmarks, true);
    line("USESOURCEFILENAME;1", &SplitSetup::useSourceFileName, true);
    line("USESOURCEFILENAMEPOST;1", &SplitSetup::useSourceFileNamePost, true);
    line("ALWAYSOVERWRITE;1", &SplitSetup::alwaysOverwrite, true);
    line("ALWAYSAPPEND;1", &SplitSetup::alwaysAppend, true);
    line("IGNORECASE;1", &SplitSetup::ignoreCase, true);
    line("OCRFIRST;1", &SplitSetup::ocrFirst, true);
    line("ADDBWORDS; ", &SplitSetup::addBWords, " ");
    line("FILENAME;/in/März 2026.pdf", &SplitSetup::fileName, "/in/März 2026.pdf");
    line("EXTRACT;Next word as filename", &SplitSetup::extract, "Next word as filename");
    line("TAKENWORDSFORFILENAME;3", &SplitSetup::takenWordsForFileName, 3);
    line("UNTILHHPOSLESSTHAN;450", &SplitSetup::untilHHPosLessThan, 450);
    line("FIRSTCHAROFWORD;#", &SplitSetup::firstCharOfWord, "#");
    line("ANYCHAROFWORD;€", &SplitSetup::anyCharOfWord, "€");
    line("STARTFROMPAGE;2", &SplitSetup::startFromPage, 2);
    line("STARTENDPAGE;90", &SplitSetup::startEndPage, 90);
    line("OFFSETFIRST;-1", &SplitSetup::offsetFirst, -1);
    line("PAGEEXTRACT;From match to until match", &SplitSetup::pageExtract,
         "From match to until match");
    line("FINDSTRING;Invoice No:", &SplitSetup::findString, "Invoice No:");
    line("PREFIXFILENAME;[YYYY]_", &SplitSetup::prefixFileName, "[YYYY]_");
    line("POSTFIXFILENAME;_x", &SplitSetup::postfixFileName, "_x");
    line("OUTPUTDIR;c:\\out", &SplitSetup::outputDir, "c:\\out");
    line("EXTRACTUNTIL;Total", &SplitSetup::extractUntil, "Total");
    line("EXTRACTFILENAME;Customer", &SplitSetup::extractFileName, "Customer");
    line("MATCHPOSH;10-20", &SplitSetup::matchPosH, "10-20");
    line("MATCHPOSV;33", &SplitSetup::matchPosV, "33");
    line("UNTILMATCHPOSH;4", &SplitSetup::untilMatchPosH, 4);
    line("UNTILMATCHPOSV;5", &SplitSetup::untilMatchPosV, 5);
    line("STRIPEND;6", &SplitSetup::stripEnd, 6);
    line("OFFSETFIRST;-1", &SplitSetup::offsetFirst, -1);
    line("REPORTOPTIONSTXT;0", &SplitSetup::reportOptionsTxt, false);
    line("REPORTOPTIONSCSV;0", &SplitSetup::reportOptionsCsv, false);
    line("REPORTOPTIONSCURRENT;0", &SplitSetup::reportOptionsCurrent, false);
    line("REPORTOPTIONSOUTPUTFOLDER;/reports", &SplitSetup::reportOptionsOutputFolder, "/reports");
    line("REPORTUSEFILELIST;/names.txt", &SplitSetup::reportUseFileList, "/names.txt");
    line("REPORTREMOVECHARS;()", &SplitSetup::reportRemoveChars, "()");
    line("HORIZWORDSPACING;1.500000", &SplitSetup::horizWordSpacing, 1.5);
    line("PDFPASSWORD;pass word ", &SplitSetup::pdfPassword, "pass word ");
    line("CONFIGUSEEXTERNAL;1", &SplitSetup::configUseExternal, true);
    line("CONFIGEXTERNALCOMMAND;split", &SplitSetup::configExternalCommand, "split");
    line("CONFIGEXTERNALPARAMS;[IN] [OUT]", &SplitSetup::configExternalParams, "[IN] [OUT]");
    line("EMAILSMTP;ssl:mail.example:465", &SplitSetup::emailSmtp, "ssl:mail.example:465");
    line("EMAILFROM;a@example.org", &SplitSetup::emailFrom, "a@example.org");
    line("EMAILINVOICECC;cc@example.org", &SplitSetup::emailInvoiceCc, "cc@example.org");
    line("EMAILFROMNAME;Café", &SplitSetup::emailFromName, "Café");
    line("EMAILSUBJECT;Your invoice", &SplitSetup::emailSubject, "Your invoice");
    line("EMAILLOGIN;login", &SplitSetup::emailLogin, "login");
    line("EMAILPASSWORD;secret", &SplitSetup::emailPassword, "secret");
    line("EMAILLOGFILE;/mail.log", &SplitSetup::emailLogFile, "/mail.log");
    line("EMAILMSG;Hello(return)(newline)(return)(newline)Bye", &SplitSetup::emailMsg,
         "Hello\r\n\r\nBye");
    line("EMAILHTML;1", &SplitSetup::emailHtml, true);
    line("EMAILENABLE;1", &SplitSetup::emailEnable, true);
    line("EMAILCONFIRM;0", &SplitSetup::emailConfirm, false);
    line("EMAILTEST;0", &SplitSetup::emailTest, false);
    line("EMAILPAUSE;250", &SplitSetup::emailPause, 250);
    line("EMAILMATCHVERT;-1", &SplitSetup::emailMatchVert, -1);
    line("EMAILMATCHVERTTO;700", &SplitSetup::emailMatchVertTo, 700);
    line("EMAILMATCHHORIZFROM;8", &SplitSetup::emailMatchHorizFrom, 8);
    line("EMAILMATCHHORIZTO;900", &SplitSetup::emailMatchHorizTo, 900);
    line("USEOUTLOOK;1", &SplitSetup::useOutlook, true);
    line("USEOUTLOOKAUTO;1", &SplitSetup::useOutlookAuto, true);
    line("EMAILHORIZAFTERTEXT;E-mail:", &SplitSetup::emailHorizAfterText, "E-mail:");
    line("EMAILHORIZBEFORETEXT;Phone", &SplitSetup::emailHorizBeforeText, "Phone");
    line("OTHERSETTINGSREMOVEFILES;1", &SplitSetup::otherSettingsRemoveFiles, true);
    line("OTHERSETTINGSREMOVETEXT;Ltd|Inc", &SplitSetup::otherSettingsRemoveText, "Ltd|Inc");
  }

  template <typename Value>
  void line(const char* spelled, Value SplitSetup::*member, const Value& value) {
    setup.*member = value;
    text += QString::fromUtf8(spelled) + QStringLiteral(" \r\n");
  }
  void line(const char* spelled, QString SplitSetup::*member, const char* value) {
    line(spelled, member, QString::fromUtf8(value));
  }

  SplitSetup setup;
  QString text = QStringLiteral("UNICODEV4\r\n");
};

struct Loaded {
  SplitSetup edited;
  SplitSetup working;
  bool automation = false;
};

Loaded read(const QString& text) {
  Loaded loaded;
  SetupTarget target{loaded.edited, loaded.working, loaded.automation};
  for (const QString& line : text.split(QLatin1Char('\n'))) {
    readSetupLine(line, target);
  }
  return loaded;
}

} // namespace

TEST(SetupFile, EveryFieldInItsLine) {
  const OddSetup odd;
  EXPECT_EQ(setupFileText(odd.setup).toStdString(), odd.text.toStdString());
}

TEST(SetupFile, EveryFieldComesBackToItsCopy) {
  const Loaded loaded = read(setupFileText(OddSetup().setup));
  const SplitSetup odd = OddSetup().setup;
  SplitSetup edited = odd;
  SplitSetup working;
  edited.useOutlookAuto = false;
  const auto swapBack = [&](auto member) {
    edited.*member = SplitSetup().*member;
    working.*member = odd.*member;
  };
  swapBack(&SplitSetup::stripEnd);
  swapBack(&SplitSetup::reportOptionsTxt);
  swapBack(&SplitSetup::reportOptionsCsv);
  swapBack(&SplitSetup::reportOptionsCurrent);
  swapBack(&SplitSetup::reportOptionsOutputFolder);
  swapBack(&SplitSetup::reportUseFileList);
  swapBack(&SplitSetup::reportRemoveChars);
  swapBack(&SplitSetup::horizWordSpacing);
  EXPECT_EQ(setupFileText(loaded.edited).toStdString(), setupFileText(edited).toStdString());
  EXPECT_TRUE(loaded.edited == edited);
  EXPECT_TRUE(loaded.working == working);
  EXPECT_FALSE(loaded.automation);
}

TEST(SetupFile, OddLines) {
  struct Row {
    const char* fault;
    QString text;
    void (*expect)(Loaded&);
  };
  const QString nines(30, QLatin1Char('9'));
  const Row rows[] = {
      {"number with a tail", "STARTENDPAGE;12abc ", [](Loaded& l) { l.edited.startEndPage = 12; }},
      {"blanks and a sign", "STARTENDPAGE; \t+7", [](Loaded& l) { l.edited.startEndPage = 7; }},
      {"no digits", "TAKENWORDSFORFILENAME;x",
       [](Loaded& l) { l.edited.takenWordsForFileName = 0; }},
      {"overflow wraps round", "STARTENDPAGE;" + nines,
       [](Loaded& l) { l.edited.startEndPage = std::numeric_limits<int>::max(); }},
      {"underflow wraps round", "STARTENDPAGE;-" + nines,
       [](Loaded& l) { l.edited.startEndPage = std::numeric_limits<int>::min(); }},
      {"a truth of 5", "IGNORECASE;5", [](Loaded& l) { l.edited.ignoreCase = true; }},
      {"a real ends where it stops being one", "HORIZWORDSPACING;1.25,5",
       [](Loaded& l) { l.working.horizWordSpacing = 1.25; }},
      {"a real that is no number", "HORIZWORDSPACING;nan",
       [](Loaded& l) { l.working.horizWordSpacing = 0; }},
      {"a real beyond all bounds", "HORIZWORDSPACING;-1e999",
       [](Loaded& l) { l.working.horizWordSpacing = -std::numeric_limits<double>::max(); }},
      {"more than one blank cut", "ADDBWORDS;   ", [](Loaded& l) { l.edited.addBWords = "  "; }},
      {"an empty value", "FINDSTRING; ", [](Loaded& l) { l.edited.findString = ""; }},
      {"a blank cut by an editor", "FINDSTRING;", [](Loaded& l) { l.edited.findString = ""; }},
      {"a key alone", "FINDSTRING", [](Loaded&) {}},
      {"a value after a run of separators", "FINDSTRING;;;a",
       [](Loaded& l) { l.edited.findString = "a"; }},
      {"a value with the separator", "FINDSTRING;a;b ",
       [](Loaded& l) { l.edited.findString = "a"; }},
      {"lower-case key", "findstring;a", [](Loaded&) {}},
      {"key with a blank", "FINDSTRING ;a", [](Loaded&) {}},
      {"chain of keys", "FINDSTRING;PREFIXFILENAME;POSTFIXFILENAME;p ",
       [](Loaded& l) {
         l.edited.findString = "PREFIXFILENAME";
         l.edited.prefixFileName = "POSTFIXFILENAME";
         l.edited.postfixFileName = "p";
       }},
      {"chain to the second place of a key", "FINDSTRING;OFFSETFIRST;4 ",
       [](Loaded& l) {
         l.edited.findString = "OFFSETFIRST";
         l.edited.offsetFirst = 4;
       }},
      {"a search for a key's name clears that key", "FINDSTRING;PREFIXFILENAME ",
       [](Loaded& l) { l.edited.findString = "PREFIXFILENAME"; }},
      {"chain to an earlier key", "PREFIXFILENAME;FINDSTRING;a ",
       [](Loaded& l) { l.edited.prefixFileName = "FINDSTRING"; }},
      {"chain to the key that is not read", "EMAILPASSWORD;USEOUTLOOKAUTO;1",
       [](Loaded& l) { l.edited.emailPassword = "USEOUTLOOKAUTO"; }},
      {"first of two lines wins", "OFFSETFIRST;1\nOFFSETFIRST;2",
       [](Loaded& l) { l.edited.offsetFirst = 2; }},
      {"older blank", "ADDBWORDS;-\nADDSPACE;1", [](Loaded& l) { l.edited.addBWords = " "; }},
      {"older blank that is off", "ADDBWORDS;-\nADDSPACE;0",
       [](Loaded& l) { l.edited.addBWords = "-"; }},
      {"automation without a value", "AUTOMATION\nUSECURRENT;1",
       [](Loaded& l) { l.automation = true; }},
      {"automation reaches back", "USECURRENT;1\nAUTOMATION;0",
       [](Loaded& l) { l.automation = l.edited.useCurrent = true; }},
      {"a buffer overrun", "REPORTREMOVECHARS;" + QString(300, QLatin1Char('x')) + " ",
       [](Loaded& l) { l.working.reportRemoveChars = QString(255, QLatin1Char('x')); }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    const Loaded loaded = read(row.text);
    Loaded expected;
    row.expect(expected);
    EXPECT_EQ(setupFileText(loaded.edited).toStdString(),
              setupFileText(expected.edited).toStdString());
    EXPECT_TRUE(loaded.edited == expected.edited);
    EXPECT_TRUE(loaded.working == expected.working);
    EXPECT_EQ(loaded.automation, expected.automation);
  }
}

TEST(SetupFile, TellsWhatTheFormatCannotHold) {
  SplitSetup setup = OddSetup().setup;
  EXPECT_EQ(keysLostInFile(setup), QStringList());
  setup.emailPassword = QStringLiteral("a;b");
  setup.findString = QStringLiteral("a\nb");
  setup.reportRemoveChars = QString(256, QLatin1Char('x'));
  setup.emailMsg = QStringLiteral("line\r\n").repeated(400);
  EXPECT_EQ(keysLostInFile(setup),
            QStringList({"FINDSTRING", "REPORTREMOVECHARS", "EMAILPASSWORD", "EMAILMSG"}));
}

TEST(SetupFile, StoredInputsComeBack) {
  test::runStoredInputs("setup_file");
}
