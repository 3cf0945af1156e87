// The dialogs of settings, and what holds for every window: a tooltip on each control, no letter
// twice behind Alt.
#include "app/dialogs/SettingDialogs.h"
#include "engine/output/ExternalCommand.h"
#include "tests/app/MainWindowBench.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>

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
  static QString text(QWidget* window, const char* name) {
    return control<QLineEdit>(window, name)->text();
  }
};

bool isOwnControl(const QWidget* widget) {
  const bool isKind = widget->inherits("QAbstractButton") || widget->inherits("QLineEdit") ||
                      widget->inherits("QComboBox") || widget->inherits("QPlainTextEdit");
  // The parts of a control are named by Qt, or not at all.
  return isKind && widget->focusPolicy() != Qt::NoFocus && widget->isVisible() &&
         !widget->parentWidget()->inherits("QComboBox") &&
         !widget->parentWidget()->inherits("QAbstractSpinBox");
}

void expectOwnLetters(const QStringList& texts) {
  static const QRegularExpression letter("(?<!&)&([^&])");
  QHash<QString, QString> letters;
  for (const QString& text : texts) {
    if (const auto found = letter.match(text); found.hasMatch()) {
      QString& other = letters[found.captured(1).toLower()];
      EXPECT_EQ(other, QString()) << text.toStdString();
      other = text;
    }
  }
}

QStringList textsOf(const QList<QAction*>& actions) {
  QStringList texts;
  std::transform(actions.begin(), actions.end(), std::back_inserter(texts),
                 [](const QAction* action) { return action->text(); });
  return texts;
}

void expectWellMade(QWidget* window) {
  QStringList texts;
  for (const auto* widget : window->findChildren<QWidget*>()) {
    if (widget->window() != window) {
      continue;
    }
    if (isOwnControl(widget)) {
      EXPECT_FALSE(widget->objectName().isEmpty()) << widget->metaObject()->className();
      EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->objectName().toStdString();
    }
    if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
      texts += textsOf(bar->actions());
    } else if (widget->inherits("QAbstractButton") || widget->inherits("QLabel")) {
      texts += widget->property("text").toString();
    }
  }
  expectOwnLetters(texts);
}

TEST_F(DialogsTest, EveryControlHasANameATooltipAndALetterOfItsOwn) {
  open();
  expectWellMade(m_window.get());
  for (const QAction* menu : control<QMenuBar>(m_window.get(), "menus")->actions()) {
    const QStringList commands = textsOf(menu->menu()->actions());
    expectOwnLetters(commands);
    for (const QString& command : commands) {
      EXPECT_TRUE(command.isEmpty() || command.contains(u'&')) << command.toStdString();
    }
  }
  for (const char* name : {"processButton", "stopButton", "openPdfButton"}) {
    EXPECT_TRUE(control<QPushButton>(m_window.get(), name)->text().contains(u'&')) << name;
  }
  expectWellMade(shown<CReportOptionsDlg>().get());
  expectWellMade(shown<COtherSettingsDlg>().get());
  expectWellMade(shown<CConfigureDlg>().get());
  expectWellMade(shown<CEmailSettingsDlg>().get());
}

TEST_F(DialogsTest, TheExternalCommandIsOfferedAndItsPlaceholdersInserted) {
  const auto dialog = shown<CConfigureDlg>();
  QWidget* window = dialog.get();
  EXPECT_FALSE(control<QWidget>(window, "offerCommand")->isEnabled());
  EXPECT_FALSE(control<QWidget>(window, "help")->isEnabled()) << "nobody helps";
  click(window, "CONFIGUSEEXTERNAL");
  click(window, "ok");
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_FALSE(problemAt(window, "CONFIGEXTERNALCOMMAND").isEmpty());
  click(window, "offerCommand");
  EXPECT_EQ(problemAt(window, "CONFIGEXTERNALCOMMAND"), QString());
  EXPECT_EQ(text(window, "CONFIGEXTERNALCOMMAND"), offeredExternalCommand());
  EXPECT_EQ(text(window, "CONFIGEXTERNALPARAMS"), offeredExternalParams());
  typeInto(window, "CONFIGEXTERNALPARAMS", "-p ");
  dialog->findChild<QAction*>("[START]")->trigger();
  EXPECT_EQ(text(window, "CONFIGEXTERNALPARAMS"), "-p [START]");
  m_dialogs.files = {{"/usr/bin/true"}};
  click(window, "browseCommand");
  EXPECT_EQ(text(window, "CONFIGEXTERNALCOMMAND"), "/usr/bin/true");
}

TEST_F(DialogsTest, ATestMailIsSentOnlyWithSettingsThatCanWork) {
  const auto dialog = shown<CEmailSettingsDlg>(defaultSetup());
  std::vector<SplitSetup> sent;
  dialog->onSendTest = [&](const SplitSetup& setup) { sent.push_back(setup); };
  dialog->hide();
  dialog->show();
  click(dialog.get(), "sendTest");
  EXPECT_TRUE(sent.empty());
  QApplication::processEvents();
  for (const char* key : {"EMAILSMTP", "EMAILFROM"}) {
    auto* line = control<QLabel>(dialog.get(), (QByteArray(key) + "Problem").constData());
    EXPECT_TRUE(line->isVisible() && !line->text().isEmpty()) << key;
    EXPECT_GE(line->height(), line->heightForWidth(line->width())) << key << ": cut off";
  }
  typeInto(dialog.get(), "EMAILSMTP", "mail.example.com");
  typeInto(dialog.get(), "EMAILFROM", "me@example.com");
  click(dialog.get(), "sendTest");
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].emailFrom, "me@example.com");
  EXPECT_FALSE(sent[0].emailEnable);

  typeInto(dialog.get(), "EMAILPAUSE", "soon");
  click(dialog.get(), "ok");
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->focusWidget(), control<QWidget>(dialog.get(), "EMAILPAUSE"));
  typeInto(dialog.get(), "EMAILPAUSE", "5");

  // No log is kept then: a name there would read as the log in use.
  typeInto(dialog.get(), "EMAILLOGFILE", "");
  EXPECT_EQ(control<QLineEdit>(dialog.get(), "EMAILLOGFILE")->placeholderText(), "no log");
  m_dialogs.files = {{"mails.txt"}};
  click(dialog.get(), "browseLogFile");
  EXPECT_EQ(m_dialogs.requests.back().startPath, "emails_log.txt");
  EXPECT_EQ(text(dialog.get(), "EMAILLOGFILE"), "mails.txt");
  // Nothing is sent: what is unfinished is hinted at, and may stay.
  typeInto(dialog.get(), "EMAILFROM", "not yet");
  click(dialog.get(), "ok");
  EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

} // namespace
} // namespace folivex::testing
