#include "engine/job/RangePipeline.h"

#include "engine/job/JobContext.h"
#include "engine/setup/SplitSetup.h"

namespace folivex {

RangePipeline::RangePipeline(const SplitSetup& setup, const RunContext& job, const Source& source,
                             const Ends& ends)
    : m_pageCount(source.pageCount), m_state(job.state), m_person(job.person), m_list(ends.list),
      m_addresses(ends.addressReader,
                  [&job](const QString& problem) { job.tell(RunFinding::Other, problem); }),
      m_reservation({setup.alwaysOverwrite, setup.alwaysAppend}, ends.places, ends.list,
                    FileSystemRules::ofThisSystem(), job.state.part),
      m_namer(setup, source.words, ends.names, ends.clock),
      m_saver(setup, job.state,
              {m_namer, m_reservation, ends.reports, ends.emails, m_addresses, ends.onSaved,
               ends.makesFolders, ends.confirm},
              job.person),
      m_run(setup, job, source.words, m_saver) {
  m_run.setAddresses(&m_addresses);
  m_run.setMarks(ends.marks);
  m_namer.startSource(source.path, setup.outputDir, source.pageCount);
}

void RangePipeline::run() {
  m_run.run(m_pageCount);
  m_saver.finish();
  finish();
}

void RangePipeline::run(const std::vector<PlannedOutput>& planned) {
  std::vector<IntRange> ranges;
  for (const PlannedOutput& output : planned) {
    if (m_state.part.contains(output.firstPage)) {
      ranges.push_back({output.firstPage, output.lastPage});
    }
  }
  m_run.readAddresses(std::move(ranges));
  m_state.isRead = true;
  for (const PlannedOutput& output : planned) {
    m_person.handlePendingEvents();
    if (m_state.mustEnd()) {
      m_firstUnsaved = output.firstPage;
      break;
    }
    m_saver.savePlanned(output);
  }
  finish();
}

void RangePipeline::finish() {
  if (m_state.userStop) {
    m_list.wereComplete();
  }
  m_reservation.flush();
}

int RangePipeline::firstUnfinishedPage() const {
  if (m_firstUnsaved > 0) {
    return m_firstUnsaved;
  }
  const int held = m_saver.firstHeldPage();
  return held > 0 ? held : m_run.firstUnfinishedPage();
}

} // namespace folivex
