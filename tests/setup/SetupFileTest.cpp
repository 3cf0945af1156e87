// The setup file's text, line by line and whole.
#include "engine/setup/SetupFile.h"

#include <gtest/gtest.h>

#include <limits>

using namespace folivex;

namespace {

/// A record in which every field differs from its default and from its neighbours.
SplitSetup oddSetup() {
  SplitSetup s;
  s.useCurrent = s.splitToSource = s.rotated = s.createList = s.keepBookmarks = true;
  s.useSourceFileName = s.useSourceFileNamePost = s.alwaysOverwrite = s.alwaysAppend = true;
  s.ignoreCase = s.ocrFirst = true;
  s.addBWords = QStringLiteral(" ");
  s.fileName = QStringLiteral("/in/März 2026.pdf");
  s.extract = QStringLiteral("Next word as filename");
  s.takenWordsForFileName = 3;
  s.untilHHPosLessThan = 450;
  s.firstCharOfWord = QStringLiteral("#");
  s.anyCharOfWord = QStringLiteral("€");
  s.startFromPage = 2;
  s.startEndPage = 90;
  s.offsetFirst = -1;
  s.pageExtract = QStringLiteral("From match to until match");
  s.findString = QStringLiteral("Invoice No:");
  s.prefixFileName = QStringLiteral("[YYYY]_");
  s.postfixFileName = QStringLiteral("_x");
  s.outputDir = QStringLiteral("c:\\out");
  s.extractUntil = QStringLiteral("Total");
  s.extractFileName = QStringLiteral("Customer");
  s.matchPosH = QStringLiteral("10-20");
  s.matchPosV = QStringLiteral("33");
  s.untilMatchPosH = 4;
  s.untilMatchPosV = 5;
  s.stripEnd = 6;
  s.reportOptionsTxt = s.reportOptionsCsv = s.reportOptionsCurrent = false;
  s.reportOptionsOutputFolder = QStringLiteral("/reports");
  s.reportUseFileList = QStringLiteral("/names.txt");
  s.reportRemoveChars = QStringLiteral("()");
  s.horizWordSpacing = 1.5;
  s.pdfPassword = QStringLiteral("pass word ");
  s.configUseExternal = true;
  s.configExternalCommand = QStringLiteral("split");
  s.configExternalParams = QStringLiteral("[IN] [OUT]");
  s.emailSmtp = QStringLiteral("ssl:mail.example:465");
  s.emailFrom = QStringLiteral("a@example.org");
  s.emailInvoiceCc = QStringLiteral("cc@example.org");
  s.emailFromName = QStringLiteral("Café");
  s.emailSubject = QStringLiteral("Your invoice");
  s.emailLogin = QStringLiteral("login");
  s.emailPassword = QStringLiteral("secret");
  s.emailLogFile = QStringLiteral("/mail.log");
  s.emailMsg = QStringLiteral("Hello\r\n\r\nBye");
  s.emailHtml = s.emailEnable = true;
  s.emailConfirm = s.emailTest = false;
  s.emailPause = 250;
  s.emailMatchVert = -1;
  s.emailMatchVertTo = 700;
  s.emailMatchHorizFrom = 8;
  s.emailMatchHorizTo = 900;
  s.useOutlook = s.useOutlookAuto = true;
  s.emailHorizAfterText = QStringLiteral("E-mail:");
  s.emailHorizBeforeText = QStringLiteral("Phone");
  s.otherSettingsRemoveFiles = true;
  s.otherSettingsRemoveText = QStringLiteral("Ltd|Inc");
  return s;
}

const char oddText[] = R"(UNICODEV4
USECURRENT;1 
SPLITTOSOURCE;1 
ROTATED;1 
CREATELIST;1 
KEEPBOOKMARKS;1 
USESOURCEFILENAME;1 
USESOURCEFILENAMEPOST;1 
ALWAYSOVERWRITE;1 
ALWAYSAPPEND;1 
IGNORECASE;1 
OCRFIRST;1 
ADDBWORDS;  
FILENAME;/in/März 2026.pdf 
EXTRACT;Next word as filename 
TAKENWORDSFORFILENAME;3 
UNTILHHPOSLESSTHAN;450 
FIRSTCHAROFWORD;# 
ANYCHAROFWORD;€ 
STARTFROMPAGE;2 
STARTENDPAGE;90 
OFFSETFIRST;-1 
PAGEEXTRACT;From match to until match 
FINDSTRING;Invoice No: 
PREFIXFILENAME;[YYYY]_ 
POSTFIXFILENAME;_x 
OUTPUTDIR;c:\out 
EXTRACTUNTIL;Total 
EXTRACTFILENAME;Customer 
MATCHPOSH;10-20 
MATCHPOSV;33 
UNTILMATCHPOSH;4 
UNTILMATCHPOSV;5 
STRIPEND;6 
OFFSETFIRST;-1 
REPORTOPTIONSTXT;0 
REPORTOPTIONSCSV;0 
REPORTOPTIONSCURRENT;0 
REPORTOPTIONSOUTPUTFOLDER;/reports 
REPORTUSEFILELIST;/names.txt 
REPORTREMOVECHARS;() 
HORIZWORDSPACING;1.500000 
PDFPASSWORD;pass word  
CONFIGUSEEXTERNAL;1 
CONFIGEXTERNALCOMMAND;split 
CONFIGEXTERNALPARAMS;[IN] [OUT] 
EMAILSMTP;ssl:mail.example:465 
EMAILFROM;a@example.org 
EMAILINVOICECC;cc@example.org 
EMAILFROMNAME;Café 
EMAILSUBJECT;Your invoice 
EMAILLOGIN;login 
EMAILPASSWORD;secret 
EMAILLOGFILE;/mail.log 
EMAILMSG;Hello(return)(newline)(return)(newline)Bye 
EMAILHTML;1 
EMAILENABLE;1 
EMAILCONFIRM;0 
EMAILTEST;0 
EMAILPAUSE;250 
EMAILMATCHVERT;-1 
EMAILMATCHVERTTO;700 
EMAILMATCHHORIZFROM;8 
EMAILMATCHHORIZTO;900 
USEOUTLOOK;1 
USEOUTLOOKAUTO;1 
EMAILHORIZAFTERTEXT;E-mail: 
EMAILHORIZBEFORETEXT;Phone 
OTHERSETTINGSREMOVEFILES;1 
OTHERSETTINGSREMOVETEXT;Ltd|Inc 
)";

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
  EXPECT_EQ(setupFileText(oddSetup()).toStdString(),
            QString::fromUtf8(oddText).replace("\n", "\r\n").toStdString());
}

TEST(SetupFile, EveryFieldComesBackToItsCopy) {
  const Loaded loaded = read(setupFileText(oddSetup()));
  const SplitSetup odd = oddSetup();
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
  SplitSetup setup = oddSetup();
  EXPECT_EQ(keysLostInFile(setup), QStringList());
  setup.emailPassword = QStringLiteral("a;b");
  setup.findString = QStringLiteral("a\nb");
  setup.reportRemoveChars = QString(256, QLatin1Char('x'));
  setup.emailMsg = QStringLiteral("line\r\n").repeated(400);
  EXPECT_EQ(keysLostInFile(setup),
            QStringList({"FINDSTRING", "REPORTREMOVECHARS", "EMAILPASSWORD", "EMAILMSG"}));
}
