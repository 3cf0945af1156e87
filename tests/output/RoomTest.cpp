// While the split library opens a file, or has no room for another range, the window is kept alive.
#include "tests/support/HeldThread.h"
#include "tests/support/RunBench.h"

using namespace folivex;
using namespace folivex::test;

/// Nothing is written before the operator has been asked for its events again and again.
TEST_F(RunBench, ARangeThatFindsNoRoomLeavesTheWindowAlive) {
  TextPdf pdf;
  constexpr int pages = 80;
  for (int i = 0; i < pages; ++i) {
    pdf.page({QStringLiteral("Account: %1").arg(1000 + i)});
  }
  pdf.write(source());
  CSplitPdfInit& split = *RealLibraries::get().split;
  split.SetWriteBehind(0);
  HeldThread writer([&split] { split.SetWriteBehind(1); });
  int events = 0;
  m_person.onProgress = [&](const Progress& progress) {
    if (progress.text == "Processing") {
      EXPECT_GT(events, 0) << "nothing was handled while the file was opened";
    }
    events = 0;
  };
  m_person.onEvents = [&] {
    if (++events == 10) {
      EXPECT_LT(m_person.statuses.filter("Splitting/Saving to").size(), pages);
      writer.letGo();
      m_person.onEvents = nullptr;
    }
  };
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_FALSE(HeldThread::wasForgotten());
  EXPECT_EQ(filesBelow(at("out")).size(), pages);
}
