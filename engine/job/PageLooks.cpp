#include "engine/job/PageLooks.h"

#include "engine/job/JobContext.h"
#include "engine/job/PageWindow.h"
#include "engine/job/RunOutcome.h"
#include "engine/job/SourceFile.h"
#include "engine/job/SourceRun.h"
#include "engine/match/NearMisses.h"
#include "engine/report/PagePositions.h"
#include "engine/setup/SplitMethod.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <functional>

namespace folivex {

namespace {

class NoSaver : public RangeSaver {
public:
  void saveRange(SplitRange&) override {}
  QString cleanRestOfLine(const QString& text) override { return text; }
};

/// Opens the source for a run that writes nothing. That it cannot be read is told.
void look(const SplitSetup& setup, const JobContext& job,
          const std::function<void(SourceRun& run, int pageCount)>& walk) {
  job.state.showOnly = true;
  SourceFile file(job);
  if (const int pageCount = file.openForReading(setup); pageCount > 0) {
    NoSaver saver;
    TextLibraryWords words = file.words(setup);
    SourceRun run(setup, job, words, saver);
    walk(run, pageCount);
  } else {
    job.fail(RunError::Unreadable, file.problem());
  }
}

void listPage(SourceRun& run, const QString& source, const JobContext& job, int page) {
  PagePositions listing(job.person);
  const QString path = pagePositionsPath(platform::temporaryFolder());
  if (const QString problem = listing.open(path, source, page); !problem.isEmpty()) {
    job.tell(problem);
    return;
  }
  run.setObserver(&listing);
  run.listPage(page - 1);
  if (job.state.userStop) {
    job.tell(QStringLiteral("Process Stopped!"));
  } else if (!listing.close()) {
    job.tell(QStringLiteral("file error! can't write to page positions file: %1").arg(path));
  } else {
    job.person.openDocument(path);
  }
}

} // namespace

QStringList nearestWords(const SplitSetup& setup, const JobContext& job) {
  if (splitTraitsOf(setup.pageExtract).fromBookmarks) {
    return {};
  }
  SourceFile file(job);
  const int pageCount = file.openAgain(setup);
  if (pageCount == 0) {
    return {};
  }
  NearMisses misses = NearMisses::forSearchText(setup);
  TextLibraryWords words = file.words(setup);
  const PageWindow window = pageWindow(setup.startFromPage, setup.startEndPage, pageCount);
  for (int page = window.first; page < window.end && !job.state.userStop; ++page) {
    job.person.handlePendingEvents();
    misses.scanPage(page, words);
  }
  return misses.sentences();
}

void showMatches(const SplitSetup& setup, const JobContext& job, MatchObserver& observer) {
  if (splitTraitsOf(setup.pageExtract).fromBookmarks) {
    job.tell(QStringLiteral("Sorry can't show with bookmarks, can extract only"));
    return;
  }
  look(setup, job, [&](SourceRun& run, int pageCount) {
    run.setObserver(&observer);
    run.run(pageCount);
    if (!job.state.userStop) {
      job.tell(job.state.matchesShown == 0 ? QStringLiteral("No matches found,\r\n") + searchHint()
                                           : QStringLiteral("No more matches found."));
    }
  });
}

void listPagePositions(const SplitSetup& setup, const JobContext& job, int page) {
  const QString& source = setup.fileName;
  if (!platform::isReadableFile(source)) {
    job.tell(QStringLiteral("Unable to open file: %1").arg(source));
    return;
  }
  look(setup, job, [&](SourceRun& run, int pageCount) {
    if (page >= 1 && page <= pageCount) {
      listPage(run, source, job, page);
    } else {
      job.tell(QStringLiteral("%1: has %2 page(s), there is no page %3")
                   .arg(source)
                   .arg(pageCount)
                   .arg(page));
    }
  });
}

} // namespace folivex
