#include "engine/job/RangePipeline.h"

#include "engine/job/JobContext.h"
#include "engine/setup/SplitSetup.h"

namespace folivex {

RangePipeline::RangePipeline(const SplitSetup& setup, const RunContext& job, const Source& source,
                             const Ends& ends)
    : m_pageCount(source.pageCount), m_state(job.state), m_list(ends.list),
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
  if (m_state.userStop) {
    m_list.wereComplete();
  }
  m_reservation.flush();
}

int RangePipeline::firstUnfinishedPage() const {
  const int held = m_saver.firstHeldPage();
  return held > 0 ? held : m_run.firstUnfinishedPage();
}

} // namespace folivex
