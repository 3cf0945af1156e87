#include "engine/output/OutputRangeSaver.h"

#include <QDir>

#include <algorithm>
#include <utility>

namespace folivex {

OutputRangeSaver::OutputRangeSaver(const SplitSetup& setup, RunState& state, Stages stages,
                                   Operator& person)
    : m_setup(setup), m_state(state), m_stages(std::move(stages)), m_person(person),
      m_splitMethod(splitMethodOf(setup.pageExtract)),
      m_nameMethod(fileNameMethodOf(setup.extract)) {}

QString OutputRangeSaver::cleanRestOfLine(const QString& text) {
  SplitRange range;
  range.restOfLine = text;
  return m_stages.namer.name(range, NamePurpose::Preview).cleanedRestOfLine;
}

void OutputRangeSaver::saveRange(SplitRange& range) {
  if (m_state.userStop || m_state.abortRun) {
    return;
  }
  const int lastPage = range.lastPage + 1;
  // A setup file may hold any number.
  const auto first = std::clamp<qint64>(qint64{range.firstPage} + m_setup.offsetFirst, 0, lastPage);
  const int firstPage = static_cast<int>(first) + 1;
  if (firstPage > lastPage) {
    m_person.note(QStringLiteral("pages %1-%2 (%3): nothing is left when %4 page(s) are removed "
                                 "from the front")
                      .arg(range.firstPage + 1)
                      .arg(lastPage)
                      .arg(range.rangeText)
                      .arg(m_setup.offsetFirst));
    return;
  }
  const NamedOutput named = m_stages.namer.name(range, NamePurpose::Save);
  if (takesRestOfLine(m_nameMethod)) {
    range.rangeText = named.cleanedRestOfLine;
  }
  if (!named.folderToMake.isEmpty() && !m_stages.onPlanned && !m_setup.createList) {
    QDir().mkpath(named.folderToMake);
  }
  using Place = OutputReservation::Place;
  const QString path = m_stages.reservation.reserve(
      named.path, firstPage, lastPage, range.repeatsPrevious ? Place::OfPrevious : Place::New);

  const ReportLine line{firstPage, lastPage, range.rangeText, path};
  if (m_stages.onPlanned) {
    const QString address =
        m_setup.emailEnable ? m_stages.addresses.of(firstPage, lastPage).address : QString();
    m_stages.onPlanned(line, named.path, address);
  }
  writeReportLine(line);
  recordEmail(line);
  ++m_state.rangeCount;
  m_person.handlePendingEvents();
}

bool OutputRangeSaver::repeatsPreviousLine(const QString& matchedText) const {
  const bool mayRepeat =
      m_splitMethod == SplitMethod::MatchToNextUniqueMatchAtPosition ||
      (m_splitMethod == SplitMethod::MatchToNextUniqueMatch && takesRestOfLine(m_nameMethod));
  return mayRepeat && m_hasPrevious && matchedText == m_previousText;
}

void OutputRangeSaver::writeReportLine(const ReportLine& line) {
  if (repeatsPreviousLine(line.matchedText)) {
    m_stages.reports.takeBackRange();
    m_state.rangeCount = std::max(m_state.rangeCount - 1, 0);
  }
  m_stages.reports.writeRange(line);
  m_stages.reports.flush();
  m_hasPrevious = true;
  m_previousText = line.matchedText;
}

void OutputRangeSaver::recordEmail(const ReportLine& line) {
  if (!m_setup.emailEnable) {
    return;
  }
  const bool replaces = m_setup.alwaysOverwrite && !m_setup.alwaysAppend;
  m_stages.emails.record({line.firstPage, line.lastPage, line.matchedText, line.outputPath,
                          m_stages.addresses.of(line.firstPage, line.lastPage)},
                         replaces ? EmailRecords::Repeat::Replaced : EmailRecords::Repeat::Grows);
}

} // namespace folivex
