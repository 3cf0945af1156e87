// live_bench FILE: reads a file as the window does, plans it, plans it again after a change, and
// proposes setups for it.
#include "engine/job/LivePlan.h"
#include "engine/job/SetupProposals.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/WordTable.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <ctime>

#include <sys/resource.h>

using namespace folivex;

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

double millisecondsOf(std::clock_t processor) {
  return static_cast<double>(processor) * 1000 / CLOCKS_PER_SEC;
}

double peakMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

class Bench {
public:
  explicit Bench(CPDFTextDumpInit& library)
      : m_live(library, {}, [this](LivePlanState state) {
          const std::lock_guard lock(m_mutex);
          m_state = std::move(state);
          ++m_states;
          m_told.notify_all();
        }) {}

  void plan(const char* what, const SplitSetup& setup) {
    const Clock::time_point begin = Clock::now();
    const std::clock_t processor = std::clock();
    const quint64 number = m_live.plan(setup);
    std::unique_lock lock(m_mutex);
    m_told.wait(lock, [&] {
      return m_state.number == number && m_state.stage >= LivePlanState::Stage::Done;
    });
    const double used = millisecondsOf(std::clock() - processor);
    std::printf("%-28s %8.1f ms, %.1f ms of processor, %zu outputs, %d states told %s\n", what,
                milliseconds(begin), used, m_state.plan ? m_state.plan->outputs.size() : 0,
                m_states, qPrintable(m_state.problem));
    m_states = 0;
  }

  void tellTable() const {
    const auto table = m_state.words;
    if (!table) {
      return;
    }
    double words = 0;
    for (int page = 1; page <= table->pageCount(); ++page) {
      words += table->wordCount(page);
    }
    const auto bytes = static_cast<double>(table->bytes());
    std::printf("%d pages, %.0f words, %.1f MiB, %.2f bytes a word\n", table->pageCount(), words,
                bytes / (1 << 20), bytes / words);
  }

  void propose(const SplitSetup& base) const {
    const double peak = peakMiB();
    const Clock::time_point begin = Clock::now();
    const std::clock_t processor = std::clock();
    const std::vector<SetupProposal> all = proposeSetups(*m_state.words, base, [] { return true; });
    std::printf("%-28s %8.1f ms, %.1f ms of processor, %.1f MiB more at its peak than the %.1f "
                "before\n",
                "proposed", milliseconds(begin), millisecondsOf(std::clock() - processor),
                peakMiB() - peak, peak);
    for (const SetupProposal& proposal : all) {
      std::printf("  %s: %s\n", proposal.sure ? "sure" : "not sure", qPrintable(proposal.reason));
    }
  }

private:
  std::mutex m_mutex;
  std::condition_variable m_told;
  LivePlanState m_state;
  int m_states = 0;
  LivePlan m_live;
};

} // namespace

int main(int argc, char* argv[]) {
  const QCoreApplication application(argc, argv);
  if (argc != 2) {
    std::fputs("usage: live_bench FILE\n", stderr);
    return 2;
  }
  CPDFTextDumpInit library;
  SplitSetup setup = defaultSetup();
  setup.fileName = QString::fromLocal8Bit(argv[1]);
  setup.pageExtract = splitMethodTexts()[0];
  setup.extract = fileNameMethodTexts()[1];
  setup.findString = QStringLiteral("Account:");
  Bench bench(library);
  bench.plan("read and planned", setup);
  bench.tellTable();
  bench.propose(setup);
  for (const char* prefix : {"a_", "b_", "c_"}) {
    setup.prefixFileName = QString::fromLatin1(prefix);
    bench.plan("planned after a change", setup);
  }
  setup.findString = QStringLiteral("No such words");
  bench.plan("no match", setup);
  return 0;
}
