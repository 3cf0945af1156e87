#include "engine/job/RangePipeline.h"

#include "engine/setup/SplitSetup.h"

#include <QDateTime>

namespace folivex {

namespace {

/// For what a look-up among the words of a page has to say. Both must outlive it.
std::function<void(const QString&)> tellerFor(RunState& state, Operator& person) {
  return [&state, &person](const QString& problem) {
    if (state.automation) {
      person.note(problem);
    } else {
      person.message(problem);
    }
  };
}

} // namespace

RangePipeline::RangePipeline(const SplitSetup& setup, RunState& state, CPDFTextDumpInit& text,
                             Operator& person, const Source& source, const Ends& ends)
    : m_pageCount(source.pageCount), m_addresses(ends.addressReader, tellerFor(state, person)),
      m_reservation({setup.alwaysOverwrite, setup.alwaysAppend}, ends.places, ends.list),
      m_lookup(text, {source.scanned, setup.pdfPassword, setup.rotated, setup.horizWordSpacing},
               tellerFor(state, person)),
      m_namer(setup, m_lookup, ends.names, [] { return QDateTime::currentDateTime(); }),
      m_saver(setup, state,
              {m_namer, m_reservation, ends.reports, ends.emails, m_addresses, ends.onPlanned},
              person),
      m_run(setup, state, text, m_saver, person) {
  m_run.setAddresses(&m_addresses);
  m_namer.startSource(source.path, setup.outputDir, source.pageCount);
}

void RangePipeline::run() {
  m_run.run(m_pageCount);
  m_saver.finish();
  m_reservation.flush();
}

int RangePipeline::firstUnfinishedPage() const {
  const int held = m_saver.firstHeldPage();
  return held > 0 ? held : m_run.firstUnfinishedPage();
}

} // namespace folivex
