// The plan that is made beside the window: the same as a run's, whatever came in between.
#include "engine/job/LivePlan.h"
#include "engine/job/OcrCopy.h"
#include "tests/support/RunBench.h"

#include <condition_variable>
#include <mutex>

using namespace folivex;
using namespace folivex::test;

namespace {

using Stage = LivePlanState::Stage;

class Live : public RunBench {
protected:
  Live() { statements({"Account: A", "more", "Account: B", "Account: C"}).write(source()); }

  /// Settings as they are now; waits for the last word on them.
  LivePlanState planned() {
    m_store.commit();
    return last(m_live->plan(m_store.working()));
  }

  std::unique_ptr<LivePlan> live(std::size_t mostBytes) {
    const auto take = [this](LivePlanState state) {
      const std::lock_guard lock(m_mutex);
      m_state = std::move(state);
      m_told.notify_all();
    };
    return std::make_unique<LivePlan>(*RealLibraries::get().text, AddressReaderMaker(), take,
                                      mostBytes);
  }

  LivePlanState last(quint64 number) {
    std::unique_lock lock(m_mutex);
    m_told.wait(lock, [&] {
      return m_state.number == number && m_state.stage != Stage::Opening &&
             m_state.stage != Stage::Reading;
    });
    return m_state;
  }

  std::mutex m_mutex;
  std::condition_variable m_told;
  LivePlanState m_state;
  std::unique_ptr<LivePlan> m_live = live(WordTable::usualMost);
};

} // namespace

TEST_F(Live, IsThePlanOfARun) {
  const LivePlanState state = planned();
  EXPECT_EQ(state.stage, Stage::Done);
  EXPECT_EQ(state.pagesRead, 4);
  const SplitPlan plan = driver().Plan();
  EXPECT_EQ(state.plan->outputs, plan.outputs);
  EXPECT_EQ(textsOf(state.plan->notes), textsOf(plan.notes));
  EXPECT_EQ(state.plan->marks, plan.marks);
  EXPECT_EQ(plan.outputs.size(), 3U);
  EXPECT_EQ(plan.marks.size(), 6U); // where documents begin, and the words behind
}

/// Over the table as over the library, whose plans the replays of whole runs hold.
TEST_F(Live, IsTheSameForEveryMethod) {
  setup().fileName = QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
  setup().prefixFileName = "[POS0-200,0-300]_";
  setup().extractUntil = "Total";
  setup().extractFileName = "Customer:";
  setup().matchPosH = "0-600";
  setup().matchPosV = "0-900";
  std::size_t outputs = 0;
  for (const QString& method : splitMethodTexts()) {
    for (const QString& naming : fileNameMethodTexts()) {
      setup().pageExtract = method;
      setup().extract = naming;
      setup().rotated = !setup().rotated;
      const LivePlanState state = planned();
      const SplitPlan plan = driver().Plan();
      ASSERT_TRUE(state.plan) << state.problem.toStdString();
      EXPECT_EQ(state.plan->outputs, plan.outputs) << (method + "|" + naming).toStdString();
      EXPECT_EQ(state.plan->marks, plan.marks) << (method + "|" + naming).toStdString();
      outputs += plan.outputs.size();
    }
  }
  EXPECT_GT(outputs, 300U);
}

TEST_F(Live, FollowsSettingsAndTheFileOnTheDisk) {
  planned();
  setup().findString = "more";
  EXPECT_EQ(planned().plan->outputs.size(), 1U);
  statements({"more a", "more b"}).write(source());
  LivePlanState state = planned();
  EXPECT_EQ(state.plan->outputs.size(), 2U);
  EXPECT_EQ(state.pageCount, 2);
  setup().findString = "More";
  state = planned();
  while (state.nearest.isEmpty()) { // told behind the plan
    std::unique_lock lock(m_mutex);
    m_told.wait(lock, [&] { return !m_state.nearest.isEmpty(); });
    state = m_state;
  }
  ASSERT_EQ(state.nearWords.size(), 1U);
  EXPECT_EQ(state.nearWords[0].text, "more");
  EXPECT_EQ(state.nearWords[0].pages, 2);
  writeFile(source(), "no PDF");
  EXPECT_EQ(planned().stage, Stage::Unreadable);
  QFile::remove(source());
  state = planned();
  EXPECT_EQ(state.stage, Stage::Unreadable);
  EXPECT_TRUE(state.problem.startsWith(source()));
}

/// Asked for once more, it costs nothing; what another program did in the folder is seen all the
/// same.
TEST_F(Live, IsKeptAsLongAsNothingHasChanged) {
  std::shared_ptr<const SplitPlan> plan = planned().plan;
  for (auto next = planned().plan; next != plan; next = planned().plan) {
    plan = next; // made while the folder was too new to tell a change by
  }
  statements({"theirs"}).write(at("out/B.pdf"));
  EXPECT_EQ(planned().plan->outputs[1].path, at("out/B_part002.pdf"));
  QFile::remove(at("out/B.pdf"));
  EXPECT_EQ(planned().plan->outputs, plan->outputs);
  setup().prefixFileName = "x_";
  EXPECT_EQ(planned().plan->outputs[1].path, at("out/x_B.pdf"));
}

/// Every page is another document's; what is read belongs to one state of the file.
TEST_F(Live, ReplacedWhileItIsReadIsReadAgain) {
  QStringList before;
  QStringList after;
  for (int i = 0; i < 400; ++i) {
    before += QStringLiteral("Account: old%1").arg(i);
    after += QStringLiteral("Account: new%1").arg(i);
  }
  statements(after).write(at("in/b.pdf"));
  statements(before).write(source());
  m_live->setPaused(true);
  m_store.commit();
  const quint64 number = m_live->plan(m_store.working());
  {
    std::unique_lock lock(m_mutex);
    m_told.wait(lock, [&] { return m_state.number == number && m_state.stage == Stage::Opening; });
  }
  ASSERT_TRUE(QFile::remove(source()) && QFile::rename(at("in/b.pdf"), source()));
  m_live->setPaused(false);
  const LivePlanState state = last(number);
  ASSERT_EQ(state.plan->outputs.size(), 400U);
  EXPECT_EQ(state.plan->outputs.front().path, at("out/new0.pdf"));
  EXPECT_EQ(state.plan->outputs.back().path, at("out/new399.pdf"));
}

TEST_F(Live, OlderPlansAndFilesAreGivenUpInTheMiddle) {
  QStringList pages;
  for (int i = 0; i < 300; ++i) {
    pages += QStringLiteral("Account: %1").arg(i);
  }
  statements(pages).write(at("in/long.pdf"));
  m_live->setPaused(true);
  for (int i = 0; i < 20; ++i) {
    setup().fileName = i % 2 == 0 ? at("in/long.pdf") : source();
    m_store.commit();
    m_live->plan(m_store.working());
    m_live->setPaused(i % 3 != 0);
  }
  m_live->clear();
  m_live->setPaused(false);
  setup().fileName = source();
  EXPECT_EQ(planned().plan->outputs.size(), 3U);
}

TEST_F(Live, ToldIsWhatARunWouldMeet) {
  const auto told = [this](const QString& text) {
    const QString notes = textsOf(planned().plan->notes).join('\n');
    EXPECT_TRUE(notes.contains(text)) << text.toStdString() << "\n" << notes.toStdString();
  };
  EXPECT_EQ(textsOf(planned().plan->notes), QStringList());
  setup().outputDir = at("in/a.pdf/below");
  told("nothing can be written there");
  setup().outputDir = at("new");
  told("this folder is not there; it is made");
  setup().outputDir = at("out");
  statements({"old"}).write(at("out/B.pdf"));
  told("1 output(s) have a name that is taken");
  setup().alwaysOverwrite = true;
  told("1 file(s) that are there now are replaced");
  setup().extract = fileNameMethodTexts()[0];
  told("2 output(s) share a name with a later one");
  setup().otherSettingsRemoveFiles = true;
  told("1 file(s) that are there are removed first");
  setup().startFromPage = 2;
  told("2 page(s) are in no output: 1-2");
}

/// Such a file is planned page by page when it is asked for; the next one has room.
TEST_F(Live, AFileOfTooManyWordsSaysSo) {
  constexpr int pages = 80;
  constexpr int lines = 30;
  TextPdf pdf;
  for (int page = 0; page < pages; ++page) {
    QStringList texts{QStringLiteral("Account: %1").arg(page)};
    for (int line = 0; line < lines; ++line) {
      const int first = (page * lines + line) * 5;
      texts += QStringLiteral("long-word-%1 long-word-%2 long-word-%3 long-word-%4 long-word-%5")
                   .arg(first)
                   .arg(first + 1)
                   .arg(first + 2)
                   .arg(first + 3)
                   .arg(first + 4);
    }
    pdf.page(texts);
  }
  pdf.write(at("in/large.pdf"));
  m_live = live(std::size_t{256} << 10U);
  setup().fileName = at("in/large.pdf");
  for (int again = 0; again < 2; ++again) {
    const LivePlanState state = planned();
    EXPECT_EQ(state.stage, Stage::TooLarge);
    EXPECT_EQ(state.plan, nullptr) << "of a part of the pages";
    EXPECT_TRUE(state.problem.startsWith(setup().fileName)) << state.problem.toStdString();
  }
  EXPECT_EQ(driver().Plan().outputs.size(), std::size_t{pages});
  setup().fileName = source();
  EXPECT_EQ(planned().plan->outputs.size(), 3U);
}

/// The words are those of the recognised copy, and of no other.
TEST_F(Live, WordsThatAreNotRecognisedYetAreWaitedFor) {
  const QByteArray path = qgetenv("PATH");
  writeFile(at("tmp/Scanlite"), "#!/bin/sh\n"); // that there is one is enough
  QFile::setPermissions(at("tmp/Scanlite"), QFile::ReadOwner | QFile::ExeOwner);
  qputenv("PATH", QFile::encodeName(at("tmp")) + ':' + path);
  const auto recogniseAs = [this](const QStringList& pages) {
    OcrCopy copy(source(), at("tmp/a.pdf_fxs_ocr.pdf"), [] {});
    EXPECT_FALSE(copy.isThere([] { return false; }));
    statements(pages).write(copy.placeToMake());
    EXPECT_TRUE(copy.takeMade());
  };
  EXPECT_EQ(planned().plan->outputs.size(), 3U);
  setup().ocrFirst = true;
  LivePlanState state = planned();
  EXPECT_EQ(state.stage, Stage::WaitsForOcr);
  EXPECT_EQ(state.plan, nullptr) << "no words but the copy's";
  recogniseAs({"Account: X", "Account: Y", "more", "more"});
  state = planned();
  ASSERT_EQ(state.stage, Stage::Done);
  EXPECT_EQ(state.plan->outputs.size(), 2U);
  statements({"Account: N", "new"}).write(source());
  EXPECT_EQ(planned().stage, Stage::WaitsForOcr) << "the copy is that of the file before";
  setup().pageExtract = splitMethodTexts()[9]; // bookmarks need no words
  EXPECT_EQ(planned().stage, Stage::Done);
  setup().pageExtract = splitMethodTexts()[0];
  setup().ocrFirst = false;
  EXPECT_EQ(planned().plan->outputs.size(), 1U);
  qputenv("PATH", path);
}

/// What is shown and what is written are one, or the person is asked.
TEST_F(Live, RunIsHeldToThePlanThatWasShown) {
  const SplitPlan shown = *planned().plan;
  setup().prefixFileName = "x_";
  const SplitPlan later = *planned().plan;
  EXPECT_NE(planDifference(shown, later), QString());
  EXPECT_EQ(planDifference(later, *planned().plan), QString());

  // A setting that was changed behind the plan: nothing is written.
  EXPECT_NE(driver().StartProcessing(&shown), RunError::OutputFailed);
  EXPECT_EQ(outputs(), QStringList());
  ASSERT_EQ(m_person.questions.size(), 1);
  EXPECT_TRUE(m_person.questions[0].contains(at("out/x_A.pdf")) &&
              m_person.questions[0].contains(at("out/A.pdf")));
  EXPECT_EQ(driver().account().stoppedPages(), 4);

  // A name that was taken since: stopped before that file, or gone on with.
  setup().prefixFileName.clear();
  statements({"theirs"}).write(at("out/B.pdf"));
  EXPECT_EQ(driver().StartProcessing(&shown), RunError::None);
  EXPECT_EQ(outputs(), (QStringList{"A.pdf: Account: A | more", "B.pdf: theirs"}));
  EXPECT_EQ(driver().account().stoppedPages(), 2);
  QFile::remove(at("out/A.pdf"));
  m_person.answer = Answer::Yes;
  m_person.questions.clear();
  driver().StartProcessing(&shown);
  EXPECT_EQ(m_person.questions.filter("B_part002").size(), 1);
  EXPECT_EQ(outputs().size(), 4);

  // Files that would be replaced, though none was there.
  setup().alwaysOverwrite = true;
  m_person.questions.clear();
  driver().StartProcessing(&shown);
  EXPECT_EQ(m_person.questions.filter("was not there").size(), 1);

  m_person.questions.clear();
  const SplitPlan now = *planned().plan;
  EXPECT_EQ(driver().StartProcessing(&now), RunError::None);
  EXPECT_EQ(m_person.questions.filter("Go on").size(), 0);
}

/// The names that were shown are those that are written, however long the person looked at them.
TEST_F(Live, NamesKeepTheTimeThatWasShown) {
  setup().prefixFileName = "[YYYY]_";
  SplitPlan shown = *planned().plan;
  EXPECT_TRUE(shown.namesHoldTime);
  shown.madeAt = shown.madeAt.addYears(-1);
  for (PlannedOutput& output : shown.outputs) {
    output.path.replace(QString::number(QDate::currentDate().year()) + "_",
                        QString::number(shown.madeAt.date().year()) + "_");
  }
  EXPECT_EQ(planDifference(shown, *planned().plan), QString());
  EXPECT_EQ(driver().StartProcessing(&shown), RunError::None);
  EXPECT_EQ(m_person.questions.filter("Go on").size(), 0);
  EXPECT_TRUE(QFile::exists(shown.outputs[0].path));
}
