// The dialog of the update check, driven through its controls.
#include "updates/CUpdateIntervalDlg.h"
#include "tests/support/WindowBench.h"
#include "tests/updates/UpdateBench.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace folivex {

namespace {

using testing::click;
using testing::control;
using testing::typeInto;
using testing::waitUntil;

class UpdateIntervalDialog : public test::UpdateBench {
protected:
  static QString textOf(QDialog& dialog, const char* label) {
    return control<QLabel>(&dialog, label)->text();
  }

  static void press(QDialog& dialog, QDialogButtonBox::StandardButton button) {
    QTest::mouseClick(control<QDialogButtonBox>(&dialog, "buttons")->button(button),
                      Qt::LeftButton);
  }

  UpdateCheck check{memory, surroundings()};
  testing::ScriptedDialogs dialogs;
};

TEST_F(UpdateIntervalDialog, OkKeepsAndCancelDoesNot) {
  for (const auto button : {QDialogButtonBox::Cancel, QDialogButtonBox::Ok}) {
    CUpdateIntervalDlg dialog(check, dialogs);
    dialog.show();
    EXPECT_FALSE(control<QCheckBox>(&dialog, "on")->isChecked());
    EXPECT_FALSE(control<QSpinBox>(&dialog, "days")->isEnabled());
    EXPECT_EQ(control<QSpinBox>(&dialog, "days")->value(), 30);
    click(&dialog, "on");
    typeInto(&dialog, "days", "14");
    typeInto(&dialog, "address", " https://folivex.example/version.json ");
    press(dialog, button);
    EXPECT_FALSE(dialog.isVisible());
  }
  EXPECT_TRUE(check.settings().isOn);
  EXPECT_EQ(check.settings().intervalDays, 14);
  EXPECT_EQ(check.settings().address, "https://folivex.example/version.json");
}

TEST_F(UpdateIntervalDialog, AWrongAddressIsToldAtItsField) {
  CUpdateIntervalDlg dialog(check, dialogs);
  dialog.show();
  click(&dialog, "on");
  EXPECT_FALSE(control<QPushButton>(&dialog, "checkNow")->isEnabled());
  press(dialog, QDialogButtonBox::Ok);
  EXPECT_TRUE(dialog.isVisible()) << "on without an address";
  EXPECT_FALSE(textOf(dialog, "addressProblem").isEmpty());
  typeInto(&dialog, "address", "http://folivex.example/");
  EXPECT_FALSE(control<QPushButton>(&dialog, "checkNow")->isEnabled());
  press(dialog, QDialogButtonBox::Ok);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_TRUE(textOf(dialog, "addressProblem").contains("https://"));
  EXPECT_FALSE(check.settings().isOn);
  // Destroyed in the middle of typing: losing the focus ends it.
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  typeInto(&dialog, "address", "http");
}

TEST_F(UpdateIntervalDialog, CheckNowTellsItsResultInPlace) {
  CUpdateIntervalDlg dialog(check, dialogs);
  dialog.show();
  const auto checkNow = [&](const QString& address) {
    typeInto(&dialog, "address", address);
    click(&dialog, "checkNow");
    EXPECT_FALSE(control<QPushButton>(&dialog, "checkNow")->isEnabled());
    EXPECT_TRUE(waitUntil([this] { return !check.isRunning(); }));
    return textOf(dialog, "result");
  };
  EXPECT_EQ(checkNow(secure("/to-plain")),
            "The check failed: the server sends on to an address that is not "
            "encrypted.");
  EXPECT_EQ(checkNow(secure("/not-json")),
            "The check failed: the server's answer is no document about a version.");
  EXPECT_EQ(checkNow(secure("/missing")),
            "The check failed: the server answers with the status 404.");
  EXPECT_EQ(textOf(dialog, "lastCheck"), "Last check: never");
  EXPECT_EQ(checkNow(secure("/newer")), "Version 4.10.0 is available; this is version 4.9.2.");
  EXPECT_NE(textOf(dialog, "lastCheck"), "Last check: never");
  EXPECT_EQ(textOf(dialog, "note"), "Faster.\nSmaller.");
  click(&dialog, "openPage");
  EXPECT_EQ(dialogs.opened, QStringList{"https://folivex.example/new"});
  EXPECT_EQ(checkNow(secure("/same")), "This is the newest version, 4.9.2.");
  EXPECT_FALSE(control<QLabel>(&dialog, "note")->isVisible());
  EXPECT_FALSE(control<QPushButton>(&dialog, "openPage")->isVisible());
  EXPECT_EQ(checkNow(secure("/older")),
            "This version, 4.9.2, is newer than the published version 4.9.1.");
}

TEST_F(UpdateIntervalDialog, ClosingStopsACheckThatHangs) {
  {
    CUpdateIntervalDlg dialog(check, dialogs);
    dialog.show();
    typeInto(&dialog, "address", secure("/hang"));
    click(&dialog, "checkNow");
    press(dialog, QDialogButtonBox::Cancel);
  }
  EXPECT_FALSE(check.isRunning());
}

} // namespace

} // namespace folivex
