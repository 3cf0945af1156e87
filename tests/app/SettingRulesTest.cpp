// What the window decides without a window: which settings count, what is wrong with them, what a
// pick on a page sets.
#include "app/dialogs/FieldChecks.h"
#include "app/dialogs/RunEstimate.h"
#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "engine/naming/NameTokens.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"

#include <QTemporaryDir>

#include <map>

namespace folivex::test {
namespace {

/// Works in a folder that holds nothing but "a.pdf".
class SettingRules : public ::testing::Test {
protected:
  SettingRules() {
    QDir::setCurrent(m_folder.path());
    writeFile("a.pdf", "x");
  }
  ~SettingRules() override { QDir::setCurrent("/"); }

private:
  QTemporaryDir m_folder;
};

TEST_F(SettingRules, WhatIsTypedIsRightOrWrong) {
  const std::map<QString, QString (*)(const QString&)> checks = {
      {"position", positionProblem},
      {"number", [](const QString& text) { return wholeNumberProblem(text, {}); }},
      {"-1 to 10",
       [](const QString& text) {
         return wholeNumberProblem(text, {-1, 10});
       }},
      {"factor", factorProblem},
      {"folder", folderProblem},
      {"tokens", tokenHint},
  };
  forEachRow("app/fields.json", [&](const SplitSetup&, const QStringList& row) {
    EXPECT_EQ(checks.at(row[0])(row[1]).isEmpty(), row[2] == "right");
  });
  for (const NameToken& token : nameTokens()) {
    EXPECT_EQ(tokenHint(QString::fromLatin1(token.text) + "[DD]"), QString());
  }
}

TEST_F(SettingRules, ChoicesMakeOtherSettingsIdle) {
  forEachRow("app/idle-settings.json", [](const SplitSetup& setup, const QStringList& row) {
    const QSet<QString> idle = idleSettings(setup);
    for (const bool isIdle : {true, false}) {
      for (const QString& key : row[isIdle ? 0 : 1].split(u' ', Qt::SkipEmptyParts)) {
        EXPECT_EQ(idle.contains(key), isIdle) << key.toStdString();
      }
    }
  });
}

/// The keys with a finding, a hint's with "?" behind it.
QString found(const SettingFindings& findings) {
  QStringList keys;
  for (const SettingFinding& one : findings) {
    keys += one.key + (one.kind == FindingKind::Hint ? "?" : "");
  }
  return keys.join(u' ');
}

TEST_F(SettingRules, WhatIsWrongIsFoundAtItsSetting) {
  const std::map<QString, SettingFindings (*)(const SplitSetup&)> checks = {
      {"main window",
       [](const SplitSetup& setup) { return checkSplitSettings(setup, SetupPurpose::Splitting); }},
      {"command", checkExternalCommand},
      {"e-mail", checkEmailDialog},
      {"report", checkReportOptions},
  };
  forEachRow("app/findings.json", [&](const SplitSetup& setup, const QStringList& row) {
    EXPECT_EQ(found(checks.at(row[0])(setup)), row[1]);
  });
  SplitSetup lost;
  lost.findString = "a;b";
  EXPECT_EQ(found(lostInFile(lost, {"FINDSTRING", "PREFIXFILENAME"})), "FINDSTRING?");
  EXPECT_EQ(found(lostInFile(lost, {"PREFIXFILENAME"})), "");
}

TEST(RunEstimate, IsRoundedAndKnowsItsLimits) {
  forEachRow("app/estimates.json", [](const SplitSetup&, const QStringList& row) {
    EXPECT_EQ(timeLeftText(row[0].toInt(), row[1].toInt(), row[2].toLongLong()), row[3]);
  });
}

} // namespace
} // namespace folivex::test
