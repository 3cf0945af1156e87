// What the window decides without a window: which settings count, what is wrong with them, what a
// pick on a page sets.
#include "app/dialogs/FieldChecks.h"
#include "app/dialogs/RunEstimate.h"
#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "app/groups/PickTargets.h"
#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/Programs.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

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
  for (const char* wrong : {"[DATE]", "[pages]", "[YY]_"}) { // tokens are case-sensitive
    EXPECT_FALSE(tokenHint(wrong).isEmpty()) << wrong;
  }
}

/// The default setup with "KEY=value;KEY=value" changed. A number chooses a method.
SplitSetup changed(SplitSetup setup, const char* changes) {
  for (const QString& change : QString::fromLatin1(changes).split(u';', Qt::SkipEmptyParts)) {
    const QString value = change.section(u'=', 1);
    bool isKnown = false;
    for (const SetupField& field : setupFields()) {
      if (field.key != change.section(u'=', 0, 0)) {
        continue;
      }
      isKnown = true;
      if (field.key == QLatin1String("PAGEEXTRACT")) {
        setup.pageExtract = splitMethodTexts().at(value.toUInt());
      } else if (field.key == QLatin1String("EXTRACT")) {
        setup.extract = fileNameMethodTexts().at(value.toUInt());
      } else if (const auto* text = std::get_if<QString SplitSetup::*>(&field.member)) {
        setup.*(*text) = value;
      } else if (const auto* number = std::get_if<int SplitSetup::*>(&field.member)) {
        setup.*(*number) = value.toInt();
      } else {
        setup.*std::get<bool SplitSetup::*>(field.member) = value == "1";
      }
    }
    EXPECT_TRUE(isKnown) << change.toStdString();
  }
  return setup;
}

/// The keys with a finding, a hint's with "?" behind it.
QString found(const SettingFindings& findings) {
  QString keys;
  for (const SettingFinding& one : findings) {
    keys += (keys.isEmpty() ? "" : " ") + one.key + (one.kind == FindingKind::Hint ? "?" : "");
  }
  return keys;
}

TEST(SettingUse, ChoicesMakeOtherSettingsIdle) {
  const struct {
    const char* changes;
    const char* idle;
    const char* used;
  } rows[] = {
      {"PAGEEXTRACT=0", "MATCHPOSH MATCHPOSV EXTRACTUNTIL", "FINDSTRING FILENAME ALWAYSOVERWRITE"},
      {"PAGEEXTRACT=2", "EXTRACTUNTIL UNTILMATCHPOSH", "MATCHPOSH MATCHPOSV"},
      {"PAGEEXTRACT=3", "EXTRACTUNTIL", "MATCHPOSH MATCHPOSV"},
      {"PAGEEXTRACT=4", "MATCHPOSH UNTILMATCHPOSV", "EXTRACTUNTIL"},
      {"PAGEEXTRACT=5", "", "MATCHPOSH EXTRACTUNTIL UNTILMATCHPOSH"},
      {"PAGEEXTRACT=8",
       "FINDSTRING IGNORECASE MATCHPOSH EXTRACTUNTIL EXTRACT EXTRACTFILENAME OCRFIRST",
       "PREFIXFILENAME OFFSETFIRST PAGEEXTRACT KEEPBOOKMARKS"},
      {"EXTRACT=7", "", "EXTRACTFILENAME ADDBWORDS TAKENWORDSFORFILENAME"},
      {"EXTRACT=3", "EXTRACTFILENAME ADDBWORDS", "PREFIXFILENAME"},
      {"SPLITTOSOURCE=1", "OUTPUTDIR OTHERSETTINGSREMOVEFILES", "ALWAYSOVERWRITE"},
      {"", "CONFIGEXTERNALCOMMAND CONFIGEXTERNALPARAMS REPORTOPTIONSOUTPUTFOLDER",
       "REPORTUSEFILELIST"},
      {"USECURRENT=1", "FILENAME", "USECURRENT PDFPASSWORD"},
  };
  for (const auto& row : rows) {
    const QSet<QString> idle = idleSettings(changed(defaultSetup(), row.changes));
    for (const QString& key : QString(row.idle).split(u' ', Qt::SkipEmptyParts)) {
      EXPECT_TRUE(idle.contains(key)) << row.changes << ": " << key.toStdString();
    }
    for (const QString& key : QString(row.used).split(u' ')) {
      EXPECT_FALSE(idle.contains(key)) << row.changes << ": " << key.toStdString();
    }
  }
}

TEST(SetupChecks, WhatIsWrongIsFoundAtItsSetting) {
  const QTemporaryDir folder;
  QDir::setCurrent(folder.path());
  test::writeFile("a.pdf", "x");
  const struct {
    const char* name;
    const char* changes;
    const char* key; ///< "?": no more than a hint; empty: nothing is found
  } rows[] = {
      {"nothing", "", ""},
      {"no source", "FILENAME=", "FILENAME"},
      {"source is a folder", "FILENAME=.", "FILENAME"},
      {"current document needs no name", "FILENAME=;USECURRENT=1", ""},
      {"pages backwards", "STARTFROMPAGE=5;STARTENDPAGE=4", "STARTENDPAGE"},
      {"a first page before the first", "STARTFROMPAGE=-2", "STARTFROMPAGE?"},
      {"pages off the end", "STARTFROMPAGE=5;STARTENDPAGE=-2", ""},
      {"everything matches", "FINDSTRING=", "FINDSTRING?"},
      {"two words at a position", "PAGEEXTRACT=2;FINDSTRING=a b;MATCHPOSH=1", "FINDSTRING"},
      {"no text at a position is right", "PAGEEXTRACT=2;FINDSTRING=;MATCHPOSH=0;MATCHPOSV=320", ""},
      {"position missing", "PAGEEXTRACT=3", "MATCHPOSH"},
      {"length of a word and no place", "PAGEEXTRACT=2;MATCHPOSH=0;MATCHPOSV=-3", "MATCHPOSV"},
      {"length of a word on a line", "PAGEEXTRACT=2;MATCHPOSH=-3;MATCHPOSV=320", ""},
      {"two lengths", "PAGEEXTRACT=2;MATCHPOSH=-3;MATCHPOSV=-2", "MATCHPOSH"},
      {"range on no line", "PAGEEXTRACT=2;MATCHPOSH=320-325;MATCHPOSV=", "MATCHPOSH?"},
      {"alternative in no column", "PAGEEXTRACT=2;MATCHPOSH=0;MATCHPOSV=320|400", "MATCHPOSV?"},
      {"range and range", "PAGEEXTRACT=2;MATCHPOSH=320-325;MATCHPOSV=100|200", ""},
      {"no digit is judged twice", "PAGEEXTRACT=2;MATCHPOSH=-;MATCHPOSV=0", "MATCHPOSH"},
      {"until word nowhere",
       "PAGEEXTRACT=5;MATCHPOSH=1;MATCHPOSV=1;EXTRACTUNTIL=end;UNTILMATCHPOSH=-3",
       "UNTILMATCHPOSH?"},
      {"text stays in a line's rest", "EXTRACT=7;OTHERSETTINGSREMOVETEXT=Ltd", "EXTRACT?"},
      {"text goes from a word", "OTHERSETTINGSREMOVETEXT=Ltd", ""},
      {"position of another method", "MATCHPOSH=left", ""},
      {"until nothing", "PAGEEXTRACT=4", "EXTRACTUNTIL?"},
      {"names from no list", "EXTRACT=9", "EXTRACT"},
      {"folder below a file", "OUTPUTDIR=a.pdf/out", "OUTPUTDIR"},
      {"folder that does not count", "OUTPUTDIR=a.pdf;SPLITTOSOURCE=1", ""},
      {"files go", "OTHERSETTINGSREMOVEFILES=1", "OUTPUTDIR?"},
  };
  const SplitSetup usual = changed(defaultSetup(), "FILENAME=a.pdf;OUTPUTDIR=out");
  for (const auto& row : rows) {
    const SplitSetup setup = changed(usual, row.changes);
    EXPECT_EQ(found(checkSplitSettings(setup, SetupPurpose::Splitting)), row.key) << row.name;
  }
  QDir::setCurrent("/");
}

TEST(SetupChecks, DialogsFindTheirOwn) {
  const struct {
    SettingFindings (*check)(const SplitSetup&);
    const char* changes;
    const char* found;
  } rows[] = {
      {checkExternalCommand, "CONFIGEXTERNALCOMMAND=", "CONFIGEXTERNALCOMMAND"},
      {checkExternalCommand, "CONFIGEXTERNALCOMMAND=split", ""},
      {checkExternalCommand, "CONFIGEXTERNALCOMMAND=split;ALWAYSAPPEND=1", "CONFIGUSEEXTERNAL?"},
      {checkEmailDialog, "", ""}, // nothing set, nothing asked for
      {checkEmailDialog, "EMAILENABLE=1", "EMAILSMTP EMAILFROM EMAILSUBJECT?"},
      {checkEmailDialog, "EMAILENABLE=1;EMAILSMTP=a.example;EMAILFROM=me@example.com",
       "EMAILSUBJECT?"},
      {checkEmailDialog, "EMAILMATCHVERT=-1;EMAILMATCHVERTTO=-1", ""},
      {checkEmailDialog, "EMAILMATCHHORIZFROM=300;EMAILMATCHHORIZTO=200", "EMAILMATCHHORIZTO"},
      {checkReportOptions, "REPORTUSEFILELIST=/no/such/list.txt", "REPORTUSEFILELIST"},
  };
  const SplitSetup external =
      changed({}, "CONFIGUSEEXTERNAL=1;CONFIGEXTERNALPARAMS=[IN] [OUT] [START] [END]");
  for (const auto& row : rows) {
    EXPECT_EQ(found(row.check(changed(external, row.changes))), row.found) << row.changes;
  }
  SplitSetup lost;
  lost.findString = "a;b";
  EXPECT_EQ(lostInFile(lost, {"FINDSTRING", "PREFIXFILENAME"}).size(), 1U);
  EXPECT_TRUE(lostInFile(lost, {"PREFIXFILENAME"}).empty());
}

TEST(RunEstimate, IsRoundedAndKnowsItsLimits) {
  const struct {
    int page, pages;
    qint64 elapsed;
    const char* told;
  } rows[] = {{3, 1000, 60'000, ""},    // too few pages
              {500, 1000, 100, ""},     // too little time
              {1001, 1000, 60'000, ""}, // a bookmark split counts otherwise
              {501, 1000, 5'000, "a few seconds left"},
              {501, 1000, 28'000, "about 30 seconds left"},
              {501, 1000, 60'000, "about a minute left"},
              {101, 1000, 60'000, "about 9 minutes left"},
              {11, 100'000, 60'000, "about 167 hours left"}};
  for (const auto& row : rows) {
    EXPECT_EQ(timeLeftText(row.page, row.pages, row.elapsed), row.told) << row.page;
  }
}

TEST(PickTargets, PicksSetWhatTheyAreMeantFor) {
  const PickedPlace word{"Account:", 100, 320, 101, 321};
  const PickedArea area{100, 120, 320, 320};
  const auto target = [](const char* text) {
    return static_cast<int>(pickTargetTexts().indexOf(QString::fromLatin1(text)));
  };
  SplitSetup setup = defaultSetup();
  setup.prefixFileName = "a_";
  for (const char* one : {"Find word(s) and position", "Extract until word(s) and position",
                          "Use as filename after text", "Prefix: the word at this position"}) {
    takePick(setup, target(one), word);
  }
  for (const char* one :
       {"Postfix: the word at this position", "E-mail address: where it stands"}) {
    takePick(setup, target(one), area);
  }
  const QStringList set{setup.findString,     setup.matchPosH + ',' + setup.matchPosV,
                        setup.extractUntil,   setup.extractFileName,
                        setup.prefixFileName, setup.postfixFileName};
  EXPECT_EQ(set.join(u' '), "Account: 100,320 Account: Account: "
                            "a_[POS101,321] " // as a token counts, not as a search does
                            "[POS100-120,320]");
  EXPECT_EQ(setup.untilMatchPosH, 100);
  EXPECT_EQ(setup.untilMatchPosV, 320);
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
