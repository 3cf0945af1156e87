// What the window decides without a window: which settings count, what is wrong with them, what a
// pick on a page sets.
#include "app/dialogs/FieldChecks.h"
#include "app/dialogs/RunEstimate.h"
#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "app/groups/PickTargets.h"
#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"
#include "tests/support/Programs.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace folivex {
namespace {

TEST(FieldChecks, APositionIsANumberARangeOrAnAlternative) {
  for (const char* right : {"", "0", "320", "-3", "320-325", "320|400", "320-325|400", " 320 "}) {
    EXPECT_TRUE(positionProblem(QString::fromLatin1(right)).isEmpty()) << right;
  }
  for (const char* wrong : {"left", "320,5", "320-", "-", "|400", "320|", "325-320", "3 20",
                            "320-325-330", "99999999999"}) {
    EXPECT_FALSE(positionProblem(QString::fromLatin1(wrong)).isEmpty()) << wrong;
  }
}

TEST(FieldChecks, NumbersKeepToTheirLimits) {
  EXPECT_TRUE(wholeNumberProblem(" -1 ", {-1, 10}).isEmpty());
  EXPECT_TRUE(wholeNumberProblem("9999", {}).isEmpty());
  for (const char* wrong : {"", "12a", "1.5", "-2", "11", "99999999999"}) {
    EXPECT_FALSE(wholeNumberProblem(QString::fromLatin1(wrong), {-1, 10}).isEmpty()) << wrong;
  }
  EXPECT_TRUE(factorProblem("1.02").isEmpty());
  for (const char* wrong : {"", "0", "-1", "1,02", "nan", "inf", "wide"}) {
    EXPECT_FALSE(factorProblem(QString::fromLatin1(wrong)).isEmpty()) << wrong;
  }
}

TEST(FieldChecks, AFolderMustBeAbleToExist) {
  const QTemporaryDir folder;
  test::writeFile(folder.filePath("file"), "x");
  EXPECT_TRUE(folderProblem(folder.path()).isEmpty());
  EXPECT_TRUE(folderProblem(folder.filePath("not/yet/there")).isEmpty());
  EXPECT_FALSE(folderProblem(folder.filePath("file")).isEmpty());
  EXPECT_FALSE(folderProblem(folder.filePath("file/below")).isEmpty());
#ifndef Q_OS_WIN
  EXPECT_FALSE(folderProblem("c:\\splitoutput").isEmpty());
#endif
}

TEST(NameTokens, UnknownOnesAreHintedAt) {
  for (const NameToken& token : nameTokens()) {
    const QString affix = QString::fromLatin1(token.text) + "[DD]";
    EXPECT_TRUE(tokenHint(affix).isEmpty()) << token.text;
  }
  EXPECT_TRUE(tokenHint("[POS100-120,400]_").isEmpty());
  EXPECT_FALSE(tokenHint("[DATE]").isEmpty());
  EXPECT_FALSE(tokenHint("[pages]").isEmpty()); // tokens are case-sensitive
  EXPECT_FALSE(tokenHint("[YY]_").isEmpty());
}

using Change = std::function<void(SplitSetup&)>;

Change method(int index) {
  return [index](SplitSetup& setup) {
    setup.pageExtract = splitMethodTexts().at(static_cast<std::size_t>(index));
  };
}

Change at(const char* h, const char* v) {
  return [h, v](SplitSetup& setup) {
    method(2)(setup);
    setup.matchPosH = h;
    setup.matchPosV = v;
  };
}

Change bookmarks() {
  return [](SplitSetup& setup) { setup.pageExtract = splitMethodTexts()[8]; };
}

TEST(SettingUse, ChoicesMakeOtherSettingsIdle) {
  struct Row {
    const char* name;
    Change change;
    QStringList idle;
    QStringList used;
  };
  const std::vector<Row> rows = {
      {"words alone", method(0), {"MATCHPOSH", "MATCHPOSV", "EXTRACTUNTIL"}, {"FINDSTRING"}},
      {"position", method(2), {"EXTRACTUNTIL", "UNTILMATCHPOSH"}, {"MATCHPOSH", "MATCHPOSV"}},
      {"unique at position", method(3), {"EXTRACTUNTIL"}, {"MATCHPOSH", "MATCHPOSV"}},
      {"until", method(4), {"MATCHPOSH", "UNTILMATCHPOSV"}, {"EXTRACTUNTIL"}},
      {"until at position", method(5), {}, {"MATCHPOSH", "EXTRACTUNTIL", "UNTILMATCHPOSH"}},
      {"bookmarks",
       bookmarks(),
       {"FINDSTRING", "IGNORECASE", "MATCHPOSH", "EXTRACTUNTIL", "EXTRACT", "EXTRACTFILENAME",
        "OCRFIRST"},
       {"PREFIXFILENAME", "OFFSETFIRST", "PAGEEXTRACT", "KEEPBOOKMARKS"}},
      {"rest of line",
       [](SplitSetup& setup) { setup.extract = fileNameMethodTexts()[7]; },
       {},
       {"EXTRACTFILENAME", "ADDBWORDS", "TAKENWORDSFORFILENAME"}},
      {"page numbers",
       [](SplitSetup& setup) { setup.extract = fileNameMethodTexts()[3]; },
       {"EXTRACTFILENAME", "ADDBWORDS"},
       {"PREFIXFILENAME"}},
      {"beside the source",
       [](SplitSetup& setup) { setup.splitToSource = true; },
       {"OUTPUTDIR", "OTHERSETTINGSREMOVEFILES"},
       {"ALWAYSOVERWRITE"}},
      {"no external command", {}, {"CONFIGEXTERNALCOMMAND", "CONFIGEXTERNALPARAMS"}, {}},
      {"reports beside the source", {}, {"REPORTOPTIONSOUTPUTFOLDER"}, {"REPORTUSEFILELIST"}},
      {"current document",
       [](SplitSetup& setup) { setup.useCurrent = true; },
       {"FILENAME"},
       {"USECURRENT", "PDFPASSWORD"}},
  };
  for (const Row& row : rows) {
    SplitSetup setup = defaultSetup();
    if (row.change) {
      row.change(setup);
    }
    const QSet<QString> idle = idleSettings(setup);
    for (const QString& key : row.idle) {
      EXPECT_TRUE(idle.contains(key)) << row.name << ": " << key.toStdString();
    }
    for (const QString& key : row.used) {
      EXPECT_FALSE(idle.contains(key)) << row.name << ": " << key.toStdString();
    }
  }
}

TEST(SetupChecks, WhatIsWrongIsFoundAtItsSetting) {
  struct Row {
    const char* name;
    Change change;
    const char* key; ///< null: nothing is found
    FindingKind kind = FindingKind::Problem;
  };
  const QTemporaryDir folder;
  const QString source = folder.filePath("a.pdf");
  test::writeFile(source, "x");
  const std::vector<Row> rows = {
      {"nothing", {}, nullptr},
      {"no source", [](SplitSetup& s) { s.fileName.clear(); }, "FILENAME"},
      {"source is a folder", [&](SplitSetup& s) { s.fileName = folder.path(); }, "FILENAME"},
      {"current document needs no name",
       [](SplitSetup& s) {
         s.fileName.clear();
         s.useCurrent = true;
       },
       nullptr},
      {"pages backwards",
       [](SplitSetup& s) {
         s.startFromPage = 5;
         s.startEndPage = 4;
       },
       "STARTENDPAGE"},
      {"a first page before the first", [](SplitSetup& s) { s.startFromPage = -2; },
       "STARTFROMPAGE", FindingKind::Hint},
      {"pages off the end",
       [](SplitSetup& s) {
         s.startFromPage = 5;
         s.startEndPage = -2;
       },
       nullptr},
      {"everything matches", [](SplitSetup& s) { s.findString.clear(); }, "FINDSTRING",
       FindingKind::Hint},
      {"two words at a position",
       [](SplitSetup& s) {
         method(2)(s);
         s.findString = "Invoice No";
         s.matchPosH = "1";
       },
       "FINDSTRING"},
      {"no search text at a position is right",
       [](SplitSetup& s) {
         method(2)(s);
         s.findString.clear();
         s.matchPosH = "0";
         s.matchPosV = "320";
       },
       nullptr},
      {"position missing", method(3), "MATCHPOSH"},
      {"length of a word and no place", at("0", "-3"), "MATCHPOSV"},
      {"length of a word on a line", at("-3", "320"), nullptr},
      {"two lengths", at("-3", "-2"), "MATCHPOSH"},
      {"range on no line", at("320-325", ""), "MATCHPOSH", FindingKind::Hint},
      {"alternative in no column", at("0", "320|400"), "MATCHPOSV", FindingKind::Hint},
      {"range and range", at("320-325", "100|200"), nullptr},
      {"no digit is judged twice", at("-", "0"), "MATCHPOSH"},
      {"until word nowhere",
       [](SplitSetup& s) {
         method(5)(s);
         s.matchPosH = "1";
         s.matchPosV = "1";
         s.extractUntil = "end";
         s.untilMatchPosH = -3;
       },
       "UNTILMATCHPOSH", FindingKind::Hint},
      {"text stays in the rest of a line",
       [](SplitSetup& s) {
         s.extract = fileNameMethodTexts()[7];
         s.otherSettingsRemoveText = "Ltd";
       },
       "EXTRACT", FindingKind::Hint},
      {"text goes from a word", [](SplitSetup& s) { s.otherSettingsRemoveText = "Ltd"; }, nullptr},
      {"position of another method", [](SplitSetup& s) { s.matchPosH = "left"; }, nullptr},
      {"until nothing", method(4), "EXTRACTUNTIL", FindingKind::Hint},
      {"names from no list", [](SplitSetup& s) { s.extract = fileNameMethodTexts()[9]; },
       "EXTRACT"},
      {"folder below a file", [&](SplitSetup& s) { s.outputDir = source + "/out"; }, "OUTPUTDIR"},
      {"folder that does not count",
       [&](SplitSetup& s) {
         s.outputDir = source;
         s.splitToSource = true;
       },
       nullptr},
      {"files go", [](SplitSetup& s) { s.otherSettingsRemoveFiles = true; }, "OUTPUTDIR",
       FindingKind::Hint},
  };
  for (const Row& row : rows) {
    SplitSetup setup = defaultSetup();
    setup.fileName = source;
    setup.outputDir = folder.filePath("out");
    if (row.change) {
      row.change(setup);
    }
    const SettingFindings found = checkSplitSettings(setup, SetupPurpose::Splitting);
    ASSERT_EQ(found.size(), row.key == nullptr ? 0U : 1U) << row.name;
    if (row.key != nullptr) {
      EXPECT_EQ(found.front().key.toStdString(), row.key) << row.name;
      EXPECT_EQ(found.front().kind, row.kind) << row.name;
    }
  }
}

TEST(SetupChecks, DialogsFindTheirOwn) {
  SplitSetup setup;
  setup.configUseExternal = true;
  setup.configExternalParams = "[IN] [OUT] [START] [END]";
  EXPECT_TRUE(hasProblem(checkExternalCommand(setup)));
  setup.configExternalCommand = "split";
  EXPECT_TRUE(checkExternalCommand(setup).empty());
  setup.alwaysAppend = true;
  EXPECT_EQ(checkExternalCommand(setup).front().key, "CONFIGUSEEXTERNAL");

  EXPECT_FALSE(hasProblem(checkEmailDialog(setup))); // nothing set, nothing asked for
  setup.emailEnable = true;
  EXPECT_TRUE(hasProblem(checkEmailDialog(setup)));
  setup.emailSmtp = "mail.example.com";
  setup.emailFrom = "me@example.com";
  EXPECT_FALSE(hasProblem(checkEmailDialog(setup)));
  setup.emailMatchVert = -1;
  setup.emailMatchVertTo = -1;
  EXPECT_FALSE(hasProblem(checkEmailDialog(setup)));
  setup.emailMatchHorizFrom = 300;
  setup.emailMatchHorizTo = 200;
  EXPECT_TRUE(hasProblem(checkEmailDialog(setup)));

  setup.reportUseFileList = "/no/such/list.txt";
  EXPECT_TRUE(hasProblem(checkReportOptions(setup)));

  setup.findString = "a;b";
  EXPECT_EQ(lostInFile(setup, {"FINDSTRING", "PREFIXFILENAME"}).size(), 1U);
  EXPECT_TRUE(lostInFile(setup, {"PREFIXFILENAME"}).empty());
}

TEST(RunEstimate, IsRoundedAndKnowsItsLimits) {
  EXPECT_EQ(timeLeftText(3, 1000, 60'000), QString()); // too few pages
  EXPECT_EQ(timeLeftText(500, 1000, 100), QString());  // too little time
  EXPECT_EQ(timeLeftText(501, 1000, 5'000), "a few seconds left");
  EXPECT_EQ(timeLeftText(501, 1000, 28'000), "about 30 seconds left");
  EXPECT_EQ(timeLeftText(501, 1000, 60'000), "about a minute left");
  EXPECT_EQ(timeLeftText(101, 1000, 60'000), "about 9 minutes left");
  EXPECT_EQ(timeLeftText(11, 100'000, 60'000), "about 167 hours left");
  EXPECT_EQ(timeLeftText(1001, 1000, 60'000), QString()); // a bookmark split counts otherwise
}

TEST(PickTargets, PicksSetWhatTheyAreMeantFor) {
  const PickedPlace word{"Account:", 100, 320, 101, 321};
  const PickedArea area{100, 120, 320, 320};
  const auto target = [](const char* text) {
    return static_cast<int>(pickTargetTexts().indexOf(QString::fromLatin1(text)));
  };
  SplitSetup setup = defaultSetup();
  setup.prefixFileName = "a_";
  takePick(setup, target("Find word(s) and position"), word);
  takePick(setup, target("Extract until word(s) and position"), word);
  takePick(setup, target("Use as filename after text"), word);
  takePick(setup, target("Prefix: the word at this position"), word);
  takePick(setup, target("Postfix: the word at this position"), area);
  takePick(setup, target("E-mail address: where it stands"), area);
  EXPECT_EQ(setup.findString, "Account:");
  EXPECT_EQ(setup.matchPosH + ',' + setup.matchPosV, "100,320");
  EXPECT_EQ(setup.extractUntil, "Account:");
  EXPECT_EQ(setup.untilMatchPosH, 100);
  EXPECT_EQ(setup.untilMatchPosV, 320);
  EXPECT_EQ(setup.extractFileName, "Account:");
  EXPECT_EQ(setup.prefixFileName, "a_[POS101,321]"); // as a token counts, not as a search does
  EXPECT_EQ(setup.postfixFileName, "[POS100-120,320]");
  EXPECT_EQ(setup.emailMatchHorizTo, 120);
  EXPECT_EQ(setup.emailMatchVertTo, 320);
  takePick(setup, target("At Position h, v"), area);
  EXPECT_EQ(setup.matchPosH + ',' + setup.matchPosV, "100-120,320");

  const SplitSetup before = setup;
  for (const int none : {-1, 99, target("Use as filename after text")}) {
    EXPECT_FALSE(takePick(setup, none, area).isEmpty());
  }
  EXPECT_EQ(setup, before);
}

} // namespace
} // namespace folivex
