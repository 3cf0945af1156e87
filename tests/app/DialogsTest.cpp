// The dialogs of settings, and what holds for every window: a tooltip on each control, no letter
// twice behind Alt.
#include "app/dialogs/CConfigureDlg.h"
#include "app/dialogs/CEmailSettingsDlg.h"
#include "app/dialogs/COtherSettingsDlg.h"
#include "app/dialogs/CPageNumberDlg.h"
#include "app/dialogs/CReportOptionsDlg.h"
#include "app/dialogs/CStatusDlg.h"
#include "engine/output/ExternalCommand.h"
#include "tests/app/MainWindowBench.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>

namespace folivex::testing {
namespace {

class DialogsTest : public MainWindowBench {
protected:
  template <typename Dialog> std::unique_ptr<Dialog> shown(const SplitSetup& setup = {}) {
    auto dialog = std::make_unique<Dialog>(m_dialogs);
    dialog->setSetup(setup);
    dialog->show();
    return dialog;
  }
};

bool isOwnControl(const QWidget* widget) {
  const bool isKind = qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                      qobject_cast<const QLineEdit*>(widget) != nullptr ||
                      qobject_cast<const QComboBox*>(widget) != nullptr ||
                      qobject_cast<const QPlainTextEdit*>(widget) != nullptr;
  // The parts of a control are named by Qt, or not at all.
  return isKind && widget->focusPolicy() != Qt::NoFocus && widget->isVisible() &&
         qobject_cast<const QComboBox*>(widget->parentWidget()) == nullptr;
}

QChar mnemonicOf(QString text) {
  text.remove("&&");
  const qsizetype mark = text.indexOf(u'&');
  return mark >= 0 && mark + 1 < text.size() ? text[mark + 1].toLower() : QChar();
}

void expectWellMade(QWidget* window) {
  QHash<QChar, QString> letters;
  const auto useLetter = [&](const QString& text) {
    const QChar letter = mnemonicOf(text);
    if (!letter.isNull()) {
      EXPECT_FALSE(letters.contains(letter))
          << letters.value(letter).toStdString() << " and " << text.toStdString();
      letters[letter] = text;
    }
  };
  for (const auto* widget : window->findChildren<QWidget*>()) {
    if (widget->window() != window) {
      continue;
    }
    if (isOwnControl(widget)) {
      EXPECT_FALSE(widget->objectName().isEmpty()) << widget->metaObject()->className();
      EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->objectName().toStdString();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
      useLetter(button->text());
    } else if (const auto* label = qobject_cast<const QLabel*>(widget);
               label != nullptr && label->buddy() != nullptr) {
      useLetter(label->text());
    } else if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
      for (const QAction* menu : bar->actions()) {
        useLetter(menu->text());
      }
    }
  }
}

TEST_F(DialogsTest, EveryControlHasANameATooltipAndALetterOfItsOwn) {
  open();
  expectWellMade(m_window.get());
  for (const QAction* menu : control<QMenuBar>(m_window.get(), "menus")->actions()) {
    QSet<QChar> letters;
    for (const QAction* action : menu->menu()->actions()) {
      const QChar letter = mnemonicOf(action->text());
      EXPECT_FALSE(!letter.isNull() && letters.contains(letter)) << action->text().toStdString();
      letters += letter;
    }
  }
  expectWellMade(shown<CReportOptionsDlg>().get());
  expectWellMade(shown<COtherSettingsDlg>().get());
  expectWellMade(shown<CConfigureDlg>().get());
  expectWellMade(shown<CEmailSettingsDlg>().get());
  CPageNumberDlg page(3, 1);
  page.show();
  expectWellMade(&page);
  CStatusDlg status;
  status.begin("Processing", "a.pdf");
  expectWellMade(&status);
}

TEST_F(DialogsTest, TheExternalCommandIsOfferedAndItsPlaceholdersInserted) {
  const auto dialog = shown<CConfigureDlg>();
  EXPECT_FALSE(control<QWidget>(dialog.get(), "offerCommand")->isEnabled());
  click(dialog.get(), "CONFIGUSEEXTERNAL");
  click(dialog.get(), "ok");
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_FALSE(problemAt(dialog.get(), "CONFIGEXTERNALCOMMAND").isEmpty());
  click(dialog.get(), "offerCommand");
  EXPECT_EQ(problemAt(dialog.get(), "CONFIGEXTERNALCOMMAND"), QString());
  SplitSetup setup;
  dialog->take(setup);
  EXPECT_EQ(setup.configExternalCommand, offeredExternalCommand());
  EXPECT_EQ(setup.configExternalParams, offeredExternalParams());
  typeInto(dialog.get(), "CONFIGEXTERNALPARAMS", "-p ");
  dialog->findChild<QAction*>("[START]")->trigger();
  dialog->take(setup);
  EXPECT_EQ(setup.configExternalParams, "-p [START]");
  m_dialogs.files = {{"/usr/bin/true"}};
  click(dialog.get(), "browseCommand");
  dialog->take(setup);
  EXPECT_EQ(setup.configExternalCommand, "/usr/bin/true");
}

TEST_F(DialogsTest, ATestMailIsSentOnlyWithSettingsThatCanWork) {
  CEmailSettingsDlg dialog(m_dialogs);
  std::vector<SplitSetup> sent;
  dialog.onSendTest = [&](const SplitSetup& setup) { sent.push_back(setup); };
  dialog.setSetup(defaultSetup());
  dialog.show();
  click(&dialog, "sendTest");
  EXPECT_TRUE(sent.empty());
  EXPECT_FALSE(problemAt(&dialog, "EMAILSMTP").isEmpty());
  EXPECT_FALSE(problemAt(&dialog, "EMAILFROM").isEmpty());
  typeInto(&dialog, "EMAILSMTP", "mail.example.com");
  typeInto(&dialog, "EMAILFROM", "me@example.com");
  click(&dialog, "sendTest");
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].emailFrom, "me@example.com");
  EXPECT_FALSE(sent[0].emailEnable);

  typeInto(&dialog, "EMAILPAUSE", "soon");
  click(&dialog, "ok");
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(dialog.focusWidget(), control<QWidget>(&dialog, "EMAILPAUSE"));
}

/// No log is kept then: a name there would read as the log in use.
TEST_F(DialogsTest, AnEmptyLogFieldNamesNoFile) {
  CEmailSettingsDlg dialog(m_dialogs);
  SplitSetup setup = defaultSetup();
  setup.emailLogFile.clear();
  dialog.setSetup(setup);
  dialog.show();
  EXPECT_EQ(control<QLineEdit>(&dialog, "EMAILLOGFILE")->placeholderText(), "no log");
  m_dialogs.files = {{"mails.txt"}};
  click(&dialog, "browseLogFile");
  EXPECT_EQ(m_dialogs.requests.back().startPath, "emails_log.txt");
  dialog.take(setup);
  EXPECT_EQ(setup.emailLogFile, "mails.txt");
  // Nothing is sent: what is unfinished is hinted at, and may stay.
  typeInto(&dialog, "EMAILFROM", "not yet");
  click(&dialog, "ok");
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(DialogsTest, RoomIsMadeForWhatIsTold) {
  const auto dialog = shown<CEmailSettingsDlg>();
  QApplication::processEvents();
  click(dialog.get(), "EMAILENABLE");
  click(dialog.get(), "ok");
  QApplication::processEvents();
  for (const char* key : {"EMAILSMTP", "EMAILFROM"}) {
    auto* line = control<QLabel>(dialog.get(), (QByteArray(key) + "Problem").constData());
    EXPECT_GE(line->height(), line->heightForWidth(line->width())) << key;
  }
}

TEST_F(DialogsTest, HelpIsOnTheDialogThatAsks) {
  const auto dialog = shown<COtherSettingsDlg>();
  EXPECT_FALSE(control<QWidget>(dialog.get(), "help")->isEnabled());
  QStringList topics;
  CReportOptionsDlg helped(m_dialogs);
  helped.onHelp = [&](const QString& topic) { topics += topic; };
  helped.setSetup({});
  helped.show();
  click(&helped, "help");
  QTest::keyClick(control<QWidget>(&helped, "REPORTUSEFILELIST"), Qt::Key_F1);
  EXPECT_EQ(topics, QStringList({"report-options", "report-options"}));
}

TEST_F(DialogsTest, StatusTellsTheRunAndStopsItOnce) {
  CStatusDlg status;
  int stops = 0;
  status.onStop = [&] { ++stops; };
  status.begin("Processing", "/in/a.pdf");
  status.progress({"Processing page: 4", 5, 20, 2});
  EXPECT_EQ(control<QLabel>(&status, "statusPage")->text(), "Extracting Page: 5 of 20");
  EXPECT_EQ(control<QLabel>(&status, "statusOutputs")->text(), "Outputs: 2");
  QTest::keyClick(&status, Qt::Key_Escape);
  EXPECT_EQ(stops, 1);
  EXPECT_EQ(status.result(), CStatusDlg::stopped);
  status.reject();
  status.progress({"Processing page: 5", 6, 20, 2});
  EXPECT_EQ(stops, 1);
  EXPECT_FALSE(status.isVisible());
  status.end();
  status.begin("Processing", "/in/b.pdf");
  click(&status, "stop");
  EXPECT_EQ(stops, 2);
}

} // namespace
} // namespace folivex::testing
