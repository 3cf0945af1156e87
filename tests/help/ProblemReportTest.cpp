// What a report of a problem tells, and what it must not.
#include "app/help/CProblemReportDlg.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/Programs.h"
#include "tests/support/WindowBench.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QUrl>
#include <QUrlQuery>

namespace folivex::test {
namespace {

using namespace folivex::testing;

/// Every text setting holds a value that tells it apart: "vFINDSTRINGv".
SplitSetup filledSetup() {
  SplitSetup setup;
  for (const SetupField& field : setupFields()) {
    if (const auto* member = std::get_if<QString SplitSetup::*>(&field.member)) {
      setup.*(*member) = QStringLiteral("v%1v").arg(field.key);
    }
  }
  return setup;
}

const QStringList& secretKeys() {
  static const QStringList keys = {
      QStringLiteral("PDFPASSWORD"),    QStringLiteral("CONFIGEXTERNALPARAMS"),
      QStringLiteral("EMAILSMTP"),      QStringLiteral("EMAILFROM"),
      QStringLiteral("EMAILINVOICECC"), QStringLiteral("EMAILFROMNAME"),
      QStringLiteral("EMAILSUBJECT"),   QStringLiteral("EMAILLOGIN"),
      QStringLiteral("EMAILPASSWORD"),  QStringLiteral("EMAILMSG")};
  return keys;
}

QString reportOf(const SplitSetup& setup, PrivateNames names, const QStringList& messages = {}) {
  return ProblemReport(systemFacts(QStringLiteral("9.9")), setup, messages).text(names);
}

TEST(ProblemReport, TellsNoValueOfASettingThatIsNotItsBusiness) {
  const SplitSetup setup = filledSetup();
  QStringList messages; // that quote every value, as the worst program would
  for (const SetupField& field : setupFields()) {
    messages += QStringLiteral("cannot go on with v%1v: reason").arg(field.key);
  }
  const QString without = reportOf(setup, PrivateNames::LeftOut, messages);
  const QString with = reportOf(setup, PrivateNames::Included, messages);
  for (const SetupField& field : setupFields()) {
    const QString value = QStringLiteral("v%1v").arg(field.key);
    if (!std::holds_alternative<QString SplitSetup::*>(field.member)) {
      continue;
    }
    const QString shown = QStringLiteral("  %1: ").arg(field.key);
    EXPECT_TRUE(without.contains(shown)) << field.key.data();
    EXPECT_FALSE(without.section(QStringLiteral("Settings:"), 1).contains(value))
        << field.key.data();
    if (secretKeys().contains(field.key)) {
      EXPECT_FALSE(with.contains(value)) << field.key.data();
      EXPECT_FALSE(without.contains(value)) << field.key.data();
    }
  }
  EXPECT_TRUE(with.contains(QStringLiteral("FINDSTRING: \"vFINDSTRINGv\"")));
  EXPECT_FALSE(without.contains(QStringLiteral("vFINDSTRINGv")));
}

TEST(ProblemReport, TellsWhatHelpsToFindAFault) {
  SplitSetup setup;
  setup.pageExtract = splitMethodTexts()[2];
  setup.matchPosH = QStringLiteral("397-399|420");
  setup.offsetFirst = 7;
  const QString text = reportOf(setup, PrivateNames::LeftOut);
  for (const QString& line :
       {QStringLiteral("Folivex 9.9"), QString::fromLatin1(qVersion()), QSysInfo::kernelVersion(),
        QStringLiteral("PAGEEXTRACT: ") + splitMethodTexts()[2],
        QStringLiteral("MATCHPOSH: 397-399|420"), QStringLiteral("OFFSETFIRST: 7"),
        QStringLiteral("OUTPUTDIR: (empty)")}) {
    EXPECT_TRUE(text.contains(line)) << line.toStdString();
  }
  EXPECT_EQ(text.count(QStringLiteral("OFFSETFIRST")), 1);
}

TEST(ProblemReport, MessagesLoseNamesAndAddressesAndKeepTheirSense) {
  SplitSetup setup;
  setup.emailSmtp = QStringLiteral("tls:mail.example.net:587");
  struct Row {
    const char* message;
    const char* told;
  };
  EXPECT_TRUE(reportOf(setup, PrivateNames::LeftOut, {QString()}).contains(u"  (none)\n"));
  const Row rows[] = {
      {"/home/anna/tax 2026/a b.pdf: cannot be opened for splitting: no trailer",
       "(file): cannot be opened for splitting: no trailer"},
      {"C:\\Users\\Anna\\x.pdf: the file cannot be read", "(file): the file cannot be read"},
      {"statement of anna.pdf: the file cannot be read", "(file): the file cannot be read"},
      {"file error! can't read parameters file: /x/anna",
       "file error! can't read parameters file: (file)"},
      {"Page 1, h 3, v 4: \"Anna\" differs from the text in punctuation.",
       "Page 1, h 3, v 4: \"...\" differs from the text in punctuation."},
      {"the server MAIL.example.net refused anna@example.org",
       "the server (hidden) refused (address)"},
  };
  for (const Row& row : rows) {
    const QString text = reportOf(setup, PrivateNames::LeftOut, {QString::fromUtf8(row.message)});
    EXPECT_TRUE(text.contains(QStringLiteral("  %1\n").arg(QLatin1String(row.told))))
        << row.message << "\n"
        << text.section(QStringLiteral("Settings:"), 0, 0).toStdString();
  }
}

class ReportDialog : public ::testing::Test {
protected:
  ReportDialog() { m_dialog->show(); }

  std::unique_ptr<CProblemReportDlg> made(const QStringList& messages = {}) {
    return std::make_unique<CProblemReportDlg>(
        ProblemReport(systemFacts(QStringLiteral("9.9")), filledSetup(), messages), m_dialogs,
        m_memory);
  }
  QPlainTextEdit* text() { return control<QPlainTextEdit>(m_dialog.get(), "reportText"); }
  QString told() { return control<QLabel>(m_dialog.get(), "reportTold")->text(); }
  QString clipboard() { return QGuiApplication::clipboard()->text(); }

  QTemporaryDir m_folder;
  ScriptedDialogs m_dialogs;
  WindowMemory m_memory{m_folder.filePath(QStringLiteral("window.ini"))};
  std::unique_ptr<CProblemReportDlg> m_dialog = made();
};

TEST_F(ReportDialog, TheTickAddsNamesAndKeepsWhatWasTyped) {
  text()->moveCursor(QTextCursor::Start);
  QTest::keyClicks(text(), QStringLiteral("It stopped."));
  EXPECT_FALSE(text()->toPlainText().contains(QStringLiteral("vFINDSTRINGv")));
  QTest::keyClick(control<QCheckBox>(m_dialog.get(), "includeNames"), Qt::Key_Space);
  EXPECT_TRUE(text()->toPlainText().startsWith(u"It stopped."));
  EXPECT_TRUE(text()->toPlainText().contains(QStringLiteral("vFINDSTRINGv")));
  EXPECT_FALSE(text()->toPlainText().contains(QStringLiteral("vEMAILPASSWORDv")));
  QTest::keyClick(control<QCheckBox>(m_dialog.get(), "includeNames"), Qt::Key_Space);
  EXPECT_FALSE(text()->toPlainText().contains(QStringLiteral("vFINDSTRINGv")));
  EXPECT_EQ(text()->toPlainText().count(QStringLiteral("It stopped.")), 1);
}

TEST_F(ReportDialog, CopiesAndSavesJustWhatIsShown) {
  text()->setPlainText(QStringLiteral("only this, Żółć"));
  click(m_dialog.get(), "reportCopy");
  EXPECT_EQ(clipboard(), QStringLiteral("only this, Żółć"));
  const QString path = m_folder.filePath(QStringLiteral("report.txt"));
  m_dialogs.files = {{path}, {}, {m_folder.filePath(QStringLiteral("no/such/report.txt"))}};
  click(m_dialog.get(), "reportSave");
  EXPECT_EQ(QString::fromUtf8(contentOf(path)), QStringLiteral("only this, Żółć"));
  click(m_dialog.get(), "reportSave"); // given up
  click(m_dialog.get(), "reportSave");
  EXPECT_TRUE(told().contains(QStringLiteral("cannot be written")));
}

TEST_F(ReportDialog, HandsAShortReportToTheMailProgramWhole) {
  const QString body = QStringLiteral("a & b = c?\n100 % done #1 + ü");
  text()->setPlainText(body);
  typeInto(m_dialog.get(), "reportTo", QStringLiteral("helpdesk@example.com"));
  click(m_dialog.get(), "reportMail");
  ASSERT_EQ(m_dialogs.opened.size(), 1);
  const QUrl url(m_dialogs.opened.front());
  EXPECT_EQ(url.scheme(), QStringLiteral("mailto"));
  EXPECT_EQ(url.path(), QStringLiteral("helpdesk@example.com"));
  const QUrlQuery query(url);
  EXPECT_EQ(
      query.queryItemValue(QStringLiteral("body"), QUrl::FullyDecoded).remove(QLatin1Char('\r')),
      body);
  EXPECT_EQ(query.queryItems().size(), 2);
}

TEST_F(ReportDialog, ALongReportGoesThroughTheClipboardAndTheMailSaysSo) {
  const QString all = text()->toPlainText(); // with all settings it is long
  click(m_dialog.get(), "reportMail");
  ASSERT_EQ(m_dialogs.opened.size(), 1);
  EXPECT_LE(m_dialogs.opened.front().size(), longestMailAddress);
  EXPECT_TRUE(QUrl(m_dialogs.opened.front())
                  .query(QUrl::FullyDecoded)
                  .contains(QStringLiteral("paste it here")));
  EXPECT_EQ(clipboard(), all);
}

TEST_F(ReportDialog, RemembersWhereReportsGoAndMayGoInTheMiddleOfTyping) {
  EXPECT_TRUE(control<QLineEdit>(m_dialog.get(), "reportTo")->text().isEmpty());
  typeInto(m_dialog.get(), "reportTo", QStringLiteral("it@example.com"));
  click(m_dialog.get(), "reportClose");
  EXPECT_FALSE(m_dialog->isVisible());
  m_dialog = made();
  EXPECT_EQ(control<QLineEdit>(m_dialog.get(), "reportTo")->text(),
            QStringLiteral("it@example.com"));
  m_dialog->show();
  typeInto(m_dialog.get(), "reportTo", QStringLiteral("half an addr"));
  m_dialog.reset();
}

} // namespace
} // namespace folivex::test
