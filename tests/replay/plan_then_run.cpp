// plan_then_run SETUP PDF: plans as the window does, over words that are kept, and then runs over
// the libraries, held to that plan. Fails with a sentence when the two are not the same.
#include "engine/job/JobDriver.h"
#include "engine/job/LivePlan.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "tests/support/BuiltLibraries.h"
#include "tests/support/RecordingOperator.h"

#include <QCoreApplication>

#include <condition_variable>
#include <cstdio>
#include <mutex>

using namespace folivex;

namespace {

LivePlanState livePlan(CPDFTextDumpInit& library, const SplitSetup& setup) {
  std::mutex mutex;
  std::condition_variable told;
  LivePlanState last;
  LivePlan live(library, {}, [&](LivePlanState state) {
    const std::lock_guard lock(mutex);
    last = std::move(state);
    told.notify_all();
  });
  const quint64 number = live.plan(setup);
  std::unique_lock lock(mutex);
  told.wait(lock, [&] {
    return last.number == number && last.stage != LivePlanState::Stage::Opening &&
           last.stage != LivePlanState::Stage::Reading;
  });
  return last;
}

int failed(const QString& why) {
  std::fprintf(stderr, "%s\n", qPrintable(why));
  return 100;
}

} // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (const QString problem = test::loadBuiltLibraries(); !problem.isEmpty()) {
    return failed(problem);
  }
  CPDFTextDumpInit text;
  CSplitPdfInit split;
  CAppendPdfInit append;
  SetupStore store;
  if (arguments.size() != 3 || !store.LoadSetup(arguments[1]).ok()) {
    return failed(QStringLiteral("plan_then_run SETUP PDF"));
  }
  store.setUnattended(true);
  store.edited().fileName = arguments[2];
  store.commit();
  test::RecordingOperator person;
  JobDriver driver(store, {text, split, append}, person);
  const LivePlanState planned = livePlan(text, store.working());
  if (!planned.plan) {
    return failed(planned.problem);
  }
  if (const SplitPlan plan = driver.Plan();
      plan.outputs != planned.plan->outputs || plan.marks != planned.plan->marks) {
    return failed("over the words that are kept the plan is another one: " +
                  planDifference(*planned.plan, plan));
  }
  person = {};
  const auto code = driver.StartProcessing(planned.plan.get());
  std::fprintf(stderr, "%s\n", qPrintable(person.allNotes()));
  const QStringList differences = person.questions.filter("Go on");
  return differences.isEmpty() ? static_cast<int>(code) : failed(differences.join('\n'));
}
