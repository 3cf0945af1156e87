// How a run's end is told: the words, the panel, the desktop.
#include "app/EndPanel.h"
#include "tests/support/WindowBench.h"
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
  int putAway = 0;
  panel.onPutAway = [&putAway] { ++putAway; };
  window.activateWindow();
  ASSERT_TRUE(waitUntil([&window] { return window.isActiveWindow(); }));
  auto* close = control<QPushButton>(&panel, "endClose");
  close->setFocus();
  QTest::keyClick(close, Qt::Key_Escape);
  EXPECT_FALSE(panel.isVisible());
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(putAway, 1);
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

TEST(DesktopNotice, IsShownByADesktopAndHoldsNobodyWithoutOne) {
  QProcess bus;
  bus.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                            QStringLiteral("--print-address")});
  ASSERT_TRUE(bus.waitForReadyRead(patienceMs)) << "no dbus-daemon";
  qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readLine().trimmed());
  Desktop desktop;
  const QString name = QStringLiteral("desktop");
  {
    QDBusConnection own = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    ASSERT_TRUE(
        own.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), &desktop));
    ASSERT_TRUE(own.registerService(QStringLiteral("org.freedesktop.Notifications")));
    showDesktopNotice(QStringLiteral("4 files written."), QStringLiteral("in <a&b>.pdf"));
    ASSERT_TRUE(waitUntil([&desktop] { return !desktop.shown.isEmpty(); }));
    EXPECT_EQ(desktop.shown[3], "4 files written.");
    EXPECT_EQ(desktop.shown[4], "in &lt;a&amp;b&gt;.pdf");
  }
  QDBusConnection::disconnectFromBus(name);
  bus.kill();
  bus.waitForFinished(patienceMs);
  showDesktopNotice(QStringLiteral("nobody"), QStringLiteral("answers"));
  EXPECT_TRUE(QThreadPool::globalInstance()->waitForDone(patienceMs));
}

} // namespace
} // namespace folivex::testing
