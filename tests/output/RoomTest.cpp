// While the split library opens a file, or has no room for another range, the window is kept alive.
#include "tests/support/RunBench.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <sys/syscall.h>
#include <unistd.h>

using namespace folivex;
using namespace folivex::test;

namespace {

std::timed_mutex mayWrite;
std::atomic<bool> isForgotten = false;

} // namespace

/// Goes before the system's, for the libraries as well: a thread that writes waits for its turn.
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept {
  if (gettid() != getpid() && !isForgotten) {
    const std::unique_lock turn(mayWrite, std::chrono::minutes(1));
    // Whoever should have let it go is waiting for it.
    isForgotten = isForgotten || !turn;
  }
  return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

/// Nothing is written before the operator has been asked for its events again and again.
TEST_F(RunBench, ARangeThatFindsNoRoomLeavesTheWindowAlive) {
  TextPdf pdf;
  constexpr int pages = 80;
  for (int i = 0; i < pages; ++i) {
    pdf.page({QStringLiteral("Account: %1").arg(1000 + i)});
  }
  pdf.write(source());
  std::unique_lock held(mayWrite);
  int events = 0;
  m_person.onProgress = [&](const Progress& progress) {
    if (progress.text == "Processing") {
      EXPECT_GT(events, 0) << "nothing was handled while the file was opened";
    }
    events = 0;
  };
  m_person.onEvents = [&] {
    if (++events == 10 && held) {
      EXPECT_LT(m_person.statuses.filter("Splitting/Saving to").size(), pages);
      held.unlock();
    }
  };
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_FALSE(held || isForgotten);
  EXPECT_EQ(filesBelow(at("out")).size(), pages);
}
