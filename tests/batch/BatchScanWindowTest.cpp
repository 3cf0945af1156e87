// Scanning from the dialog, with its own window and Stop.
#include "batch/CScanning.h"
#include "tests/batch/ListWindow.h"

using namespace folivex;
using namespace folivex::testing;

namespace {

class BatchScanWindow : public ListWindow {
protected:
  BatchScanWindow() {
    for (int i = 0; i < 1500; ++i) {
      write(QStringLiteral("in/%1.pdf").arg(i));
    }
    write("in/sub/x.pdf");
  }

  /// Calls `act` with the scanning window when the first rows come in.
  void atFirstRows(const std::function<void(CScanning*)>& act) {
    QObject::connect(table()->model(), &QAbstractItemModel::rowsInserted, &m_context, [=, this] {
      auto* window = m_list.findChild<CScanning*>();
      if (window && !m_acted) {
        m_acted = true;
        act(window);
      }
    });
  }

  bool m_acted = false;
  QObject m_context;
};

} // namespace

TEST_F(BatchScanWindow, FindsAllAndSaysSo) {
  m_dialogs.files = {{at("in")}, {}};
  atFirstRows([this](CScanning* window) {
    EXPECT_TRUE(control<QWidget>(window, "place")->accessibleDescription().startsWith(at("in")));
    // Nothing else may touch the list meanwhile.
    EXPECT_EQ(QApplication::activeModalWidget(), window);
    EXPECT_FALSE(drop({at("in/0.pdf")}));
    choose("scan");
    EXPECT_FALSE(m_list.close());
  });
  choose("scan");
  EXPECT_TRUE(m_acted);
  EXPECT_EQ(m_list.rows().count(), 1501);
  EXPECT_EQ(m_dialogs.messages, QStringList{"Files Loaded"});
  EXPECT_EQ(m_list.findChild<CScanning*>(), nullptr);
  EXPECT_TRUE(m_list.isVisible());
  choose("scan"); // and given up
  EXPECT_EQ(m_dialogs.requests[1].startPath, at("in"));
  EXPECT_EQ(m_dialogs.messages.size(), 1);
}

TEST_F(BatchScanWindow, StopEndsTheScan) {
  const std::function<void(CScanning*)> ways[] = {
      [](CScanning* window) { QTest::keyClick(window, Qt::Key_Escape); },
      [](CScanning* window) { window->close(); }};
  for (const auto& stop : ways) {
    m_list.rows().clear();
    m_context.disconnect();
    m_acted = false;
    atFirstRows(stop);
    m_dialogs.files = {{at("in")}};
    choose("scan");
    EXPECT_TRUE(m_acted);
    EXPECT_GT(m_list.rows().count(), 0);
    EXPECT_LT(m_list.rows().count(), 1500);
    EXPECT_EQ(m_dialogs.messages.takeLast(), "Files Loaded");
    EXPECT_TRUE(label("notice").contains("Stopped before the end."));
  }
}

TEST_F(BatchScanWindow, StopEndsAllScansOfADrop) {
  write("two/y.pdf");
  write("z.pdf");
  atFirstRows([](CScanning* window) { click(window, "stop"); });
  EXPECT_TRUE(drop({at("in"), at("two"), at("z.pdf")}));
  EXPECT_TRUE(waitUntil([this] { return !label("notice").isEmpty(); }));
  EXPECT_TRUE(m_acted) << "no folder was scanned";
  const QStringList rows = texts(m_list.rows().all());
  EXPECT_TRUE(rows.contains("Yes " + at("z.pdf")));
  EXPECT_FALSE(rows.contains("Yes " + at("two/y.pdf")));
  EXPECT_TRUE(m_dialogs.messages.isEmpty());
}
