// What a report of a problem tells, and what it must not.
#include "app/help/CProblemReportDlg.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"
#include "tests/support/WindowBench.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
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

const QStringList secretKeys{
    "PDFPASSWORD",   "CONFIGEXTERNALPARAMS", "EMAILSMTP",  "EMAILFROM",     "EMAILINVOICECC",
    "EMAILFROMNAME", "EMAILSUBJECT",         "EMAILLOGIN", "EMAILPASSWORD", "EMAILMSG"};

QString reportOf(const SplitSetup& setup, PrivateNames names, const QStringList& messages = {}) {
  return ProblemReport(systemFacts(QStringLiteral("9.9")), setup, messages).text(names);
}

TEST(ProblemReport, TellsNoValueOfASettingThatIsNotItsBusiness) {
  QStringList messages; // that quote every value, as the worst program would
  for (const SetupField& field : setupFields()) {
    messages += QStringLiteral("cannot go on with v%1v: reason").arg(field.key);
  }
  const QString without = reportOf(filledSetup(), PrivateNames::LeftOut, messages);
  const QString with = reportOf(filledSetup(), PrivateNames::Included, messages);
  for (const SetupField& field : setupFields()) {
    const QString value = QStringLiteral("v%1v").arg(field.key);
    if (std::holds_alternative<QString SplitSetup::*>(field.member)) {
      const bool isSecret = secretKeys.contains(field.key);
      EXPECT_TRUE(without.contains(QStringLiteral("  %1: ").arg(field.key))) << field.key.data();
      EXPECT_FALSE(without.section("Settings:", 1).contains(value)) << field.key.data();
      EXPECT_FALSE(isSecret && (with + without).contains(value)) << field.key.data();
    }
  }
  EXPECT_TRUE(with.contains("FINDSTRING: \"vFINDSTRINGv\""));
  EXPECT_FALSE(without.contains("vFINDSTRINGv"));
}

TEST(ProblemReport, TellsWhatHelpsToFindAFault) {
  SplitSetup setup;
  setup.pageExtract = splitMethodTexts()[2];
  setup.matchPosH = "397-399|420";
  setup.offsetFirst = 7;
  const QString text = reportOf(setup, PrivateNames::LeftOut);
  for (const QString& line :
       {QString("Folivex 9.9"), QString(qVersion()), QSysInfo::kernelVersion(),
        "PAGEEXTRACT: " + splitMethodTexts()[2], QString("MATCHPOSH: 397-399|420"),
        QString("OFFSETFIRST: 7"), QString("OUTPUTDIR: (empty)"), QString("  (none)\n")}) {
    EXPECT_TRUE(text.contains(line)) << line.toStdString();
  }
  EXPECT_EQ(text.count("OFFSETFIRST"), 1);
}

TEST(ProblemReport, MessagesLoseNamesAndAddressesAndKeepTheirSense) {
  forEachRow("help/messages.json", [](const SplitSetup& setup, const QStringList& row) {
    const QString text = reportOf(setup, PrivateNames::LeftOut, {row[0]});
    EXPECT_TRUE(text.contains(QStringLiteral("  %1\n").arg(row[1]))) << text.toStdString();
  });
}

class ReportDialog : public OwnFolder {
protected:
  ReportDialog() { make(); }
  void make() {
    m_dialog = std::make_unique<CProblemReportDlg>(
        ProblemReport(systemFacts("9.9"), filledSetup(), {}), m_dialogs, m_memory);
    m_dialog->show();
  }
  QPlainTextEdit* text() { return control<QPlainTextEdit>(m_dialog.get(), "reportText"); }
  static QString clipboard() { return QGuiApplication::clipboard()->text(); }

  ScriptedDialogs m_dialogs;
  WindowMemory m_memory{at("window.ini")};
  std::unique_ptr<CProblemReportDlg> m_dialog;
};

TEST_F(ReportDialog, TheTickAddsNamesAndKeepsWhatWasTyped) {
  text()->moveCursor(QTextCursor::Start);
  QTest::keyClicks(text(), "It stopped.");
  for (const bool isTicked : {false, true, false}) {
    EXPECT_TRUE(text()->toPlainText().startsWith(u"It stopped."));
    EXPECT_EQ(text()->toPlainText().count("It stopped."), 1);
    EXPECT_EQ(text()->toPlainText().contains("vFINDSTRINGv"), isTicked);
    EXPECT_FALSE(text()->toPlainText().contains("vEMAILPASSWORDv"));
    QTest::keyClick(control<QCheckBox>(m_dialog.get(), "includeNames"), Qt::Key_Space);
  }
}

TEST_F(ReportDialog, CopiesAndSavesJustWhatIsShown) {
  text()->setPlainText("only this, Żółć");
  click(m_dialog.get(), "reportCopy");
  EXPECT_EQ(clipboard(), "only this, Żółć");
  m_dialogs.files = {{at("report.txt")}, {}, {at("no/such/report.txt")}};
  click(m_dialog.get(), "reportSave");
  EXPECT_EQ(contentOf(at("report.txt")), "only this, Żółć");
  click(m_dialog.get(), "reportSave"); // given up
  click(m_dialog.get(), "reportSave");
  EXPECT_TRUE(control<QLabel>(m_dialog.get(), "reportTold")->text().contains("cannot be written"));
}

TEST_F(ReportDialog, HandsAReportToTheMailProgramOrThroughTheClipboard) {
  const QString all = text()->toPlainText(); // with all settings it is long
  const QString body = QStringLiteral("a & b = c?\n100 % done #1 + ü");
  typeInto(m_dialog.get(), "reportTo", "helpdesk@example.com");
  click(m_dialog.get(), "reportMail");
  EXPECT_EQ(clipboard(), all);
  text()->setPlainText(body);
  click(m_dialog.get(), "reportMail");
  ASSERT_EQ(m_dialogs.opened.size(), 2);
  EXPECT_LE(m_dialogs.opened[0].size(), longestMailAddress);
  EXPECT_TRUE(QUrl(m_dialogs.opened[0]).query(QUrl::FullyDecoded).contains("paste it here"));
  const QUrl url(m_dialogs.opened[1]);
  EXPECT_EQ(url.scheme() + ':' + url.path(), "mailto:helpdesk@example.com");
  const QUrlQuery query(url);
  EXPECT_EQ(query.queryItemValue("body", QUrl::FullyDecoded).remove('\r'), body);
  EXPECT_EQ(query.queryItems().size(), 2);
}

TEST_F(ReportDialog, RemembersWhereReportsGoAndMayGoInTheMiddleOfTyping) {
  typeInto(m_dialog.get(), "reportTo", "it@example.com");
  click(m_dialog.get(), "reportClose");
  EXPECT_FALSE(m_dialog->isVisible());
  make();
  EXPECT_EQ(control<QLineEdit>(m_dialog.get(), "reportTo")->text(), "it@example.com");
  typeInto(m_dialog.get(), "reportTo", "half an addr");
  m_dialog.reset();
}

} // namespace
} // namespace folivex::test
