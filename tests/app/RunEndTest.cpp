// How a run's end is told: the words, the panel, the desktop.
#include "app/EndPanel.h"
#include "tests/app/MainWindowBench.h"
#include "widgets/DesktopNotice.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QThreadPool>

namespace folivex::testing {
namespace {

/// Twelve pages in files, of 12.
RunEnd goodEnd() {
  RunEnd end;
  end.told = {
      QStringLiteral("Done! - 4 PDF file(s) output\r\n\r\nReport files have been generated, "
                     "do you want to view text report ?")};
  end.account.start(12);
  end.account.written(1, 12);
  end.files = 4;
  end.elapsedMs = 3000;
  return end;
}

TEST(RunSummary, OnlyAnEndWithoutLossLooksLikeOne) {
  EXPECT_FALSE(summaryOf(goodEnd()).isWarning);
  EXPECT_EQ(summaryOf(goodEnd()).headline, "4 files written.");
  EXPECT_EQ(summaryOf(goodEnd()).facts, QStringList("12 of 12 pages are in a file. It took 3 s."));

  RunEnd left = goodEnd();
  left.account.start(13);
  left.account.written(1, 12);
  EXPECT_FALSE(summaryOf(left).isWarning); // as the split method wants it
  EXPECT_EQ(summaryOf(left).facts.last(), "1 page is in no document: 13.");

  RunEnd lost = goodEnd();
  lost.account.start(12);
  lost.account.replaced(1, 11);
  lost.account.written(12, 12);
  lost.files = 1;
  EXPECT_TRUE(summaryOf(lost).isWarning);
  EXPECT_TRUE(summaryOf(lost).facts.last().startsWith(
      "11 pages were lost to later files of the same name: 1-11."));

  RunEnd failed = goodEnd();
  failed.account.start(12);
  failed.account.failed(1, 12);
  failed.files = 0;
  EXPECT_TRUE(summaryOf(failed).isWarning);
  EXPECT_EQ(summaryOf(failed).headline, "Nothing was written.");

  RunEnd stopped = goodEnd();
  stopped.isStopped = true;
  EXPECT_EQ(summaryOf(stopped).headline, "Stopped, with 4 files written.");
  EXPECT_TRUE(summaryOf(stopped).isWarning);

  RunEnd unread;
  unread.told = {QStringLiteral("in.pdf: no PDF")};
  EXPECT_TRUE(summaryOf(unread).isWarning);

  RunEnd list = goodEnd();
  list.isListOnly = true;
  list.files = 0;
  list.account.start(12);
  EXPECT_FALSE(summaryOf(list).isWarning);

  RunEnd command = goodEnd();
  command.account.start(12);
  command.account.handedOn(1, 12);
  command.files = 0;
  EXPECT_FALSE(summaryOf(command).isWarning); // it may have printed them
}

TEST(RunSummary, TimesAreReadAtAGlance) {
  EXPECT_EQ(durationText(400), "less than a second");
  EXPECT_EQ(durationText(59'600), "1 min 0 s");
  EXPECT_EQ(durationText(125'000), "2 min 5 s");
  EXPECT_EQ(durationText(3'840'000), "1 h 4 min");
}

TEST(EndPanel, OffersWhatTheRunLeftAndGoesWithEscape) {
  QWidget window;
  EndPanel panel(&window);
  window.show();
  EXPECT_FALSE(panel.isVisible());
  RunEnd end = goodEnd();
  end.folder = QStringLiteral("/out");
  panel.tell(end);
  const auto isSeen = [&](const char* name) { return control<QWidget>(&panel, name)->isVisible(); };
  EXPECT_TRUE(
      control<QLabel>(&panel, "endTold")->text().startsWith("Done! - 4 PDF file(s) output\n"));
  EXPECT_TRUE(isSeen("endOpenFolder"));
  EXPECT_FALSE(isSeen("endViewReport") || isSeen("endSendMails") || isSeen("endFindings"));
  QString opened;
  panel.onOpen = [&opened](const QString& path) { opened = path; };
  click(&panel, "endOpenFolder");
  EXPECT_EQ(opened, "/out");
  EXPECT_FALSE(panel.isWarning());

  end.mails = 2;
  end.report = QStringLiteral("/in_report.txt");
  end.findings = QStringList{QStringLiteral("page 4 is damaged")};
  end.hasFailed = true;
  panel.tell(end);
  EXPECT_TRUE(isSeen("endViewReport") && isSeen("endSendMails") && isSeen("endFindings"));
  EXPECT_TRUE(control<QLabel>(&panel, "endHeadline")->text().startsWith("Warning"));
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&panel);
  EXPECT_EQ(told->role(), QAccessible::AlertMessage);
  EXPECT_TRUE(told->text(QAccessible::Name).contains("not everything went well"));
  window.activateWindow();
  ASSERT_TRUE(waitUntil([&window] { return window.isActiveWindow(); }));
  auto* close = control<QPushButton>(&panel, "endClose");
  close->setFocus();
  QTest::keyClick(close, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_TRUE(window.isVisible());
}

/// What a desktop has to show.
class Desktop : public QDBusVirtualObject {
public:
  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    shown += message.arguments();
    return connection.send(message.createReply(1U));
  }
  QVariantList shown;
};

/// A session of its own, with a desktop that answers.
class Session {
public:
  Session() {
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address")});
    EXPECT_TRUE(m_bus.waitForReadyRead(patienceMs)) << "no dbus-daemon";
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
    QDBusConnection own = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name);
    EXPECT_TRUE(
        own.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), &desktop));
    EXPECT_TRUE(own.registerService(QStringLiteral("org.freedesktop.Notifications")));
  }
  ~Session() {
    QDBusConnection::disconnectFromBus(m_name);
    m_bus.kill();
    m_bus.waitForFinished(patienceMs);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Desktop desktop;

private:
  QString m_name = QStringLiteral("desktop");
  QProcess m_bus;
};

class RunEndInWindow : public MainWindowBench {
protected:
  EndPanel& panel() {
    return *static_cast<EndPanel*>(control<QWidget>(m_window.get(), "endPanel"));
  }
  QString headline() { return control<QLabel>(&panel(), "endHeadline")->text(); }
  QString facts() { return control<QLabel>(&panel(), "endFacts")->text(); }
};

TEST_F(RunEndInWindow, PagesThatAreInNoFileAreNoGoodEnd) {
  writeSource(3);
  open();
  trigger("process");
  EXPECT_TRUE(panel().isVisible() && !panel().isWarning());
  EXPECT_EQ(headline(), "3 files written.");

  // A folder stands where a file should: that one fails, and nothing is said of the others.
  click(m_window.get(), "ALWAYSOVERWRITE");
  QFile::remove(at("out/1002.pdf"));
  QDir().mkpath(at("out/1002.pdf/full"));
  m_dialogs.choices = {3};
  trigger("process");
  EXPECT_TRUE(panel().isWarning());
  EXPECT_TRUE(headline().startsWith("Warning: 2 files written, but not everything went well."))
      << headline().toStdString();
  EXPECT_TRUE(facts().contains("2 pages could not be written: 3-4.")) << facts().toStdString();

  // All outputs have one name.
  QDir(at("out")).removeRecursively();
  choose("EXTRACT", fileNameMethodTexts()[0]);
  m_dialogs.choices = {3};
  trigger("process");
  EXPECT_TRUE(panel().isWarning());
  EXPECT_TRUE(facts().contains("4 pages were lost to later files")) << facts().toStdString();

  typeInto(m_window.get(), "FINDSTRING", "nothing of the kind");
  trigger("process");
  EXPECT_TRUE(panel().isWarning());
  EXPECT_EQ(headline(), "Warning: Nothing was written.");
}

/// One test: a process knows one session in its life.
TEST_F(RunEndInWindow, TheDesktopTellsItWhenTheWindowIsNotInFrontAndHoldsNobodyWithoutOne) {
  {
    Session session;
    QVariantList& shown = session.desktop.shown;
    showDesktopNotice(QStringLiteral("4 files written."), QStringLiteral("in <a&b>.pdf"));
    ASSERT_TRUE(waitUntil([&shown] { return !shown.isEmpty(); }));
    EXPECT_EQ(shown[3], "4 files written.");
    EXPECT_EQ(shown[4], "in &lt;a&amp;b&gt;.pdf");

    shown.clear();
    writeSource(2);
    open();
    m_window->activateWindow();
    ASSERT_TRUE(waitUntil([this] { return m_window->isActiveWindow(); }));
    trigger("process");
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(waitUntil([&] { return !m_window->isActiveWindow(); }));
    typeInto(m_window.get(), "FINDSTRING", "nothing of the kind");
    trigger("process");
    ASSERT_TRUE(waitUntil([&shown] { return !shown.isEmpty(); }));
    EXPECT_EQ(shown[4], "Nothing was written."); // and not the run before, which was seen
  }
  showDesktopNotice(QStringLiteral("nobody"), QStringLiteral("answers"));
  EXPECT_TRUE(QThreadPool::globalInstance()->waitForDone(patienceMs));
}

} // namespace
} // namespace folivex::testing
