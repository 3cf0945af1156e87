#include "engine/job/OutputRangeSaver.h"

#include "platform/Paths.h"

#include <QDir>

#include <algorithm>
#include <utility>

namespace folivex {

OutputRangeSaver::OutputRangeSaver(const SplitSetup& setup, RunState& state, Stages stages,
                                   Operator& person)
    : m_setup(setup), m_state(state), m_stages(std::move(stages)), m_person(person),
      m_splitMethod(splitMethodOf(setup.pageExtract)), m_nameMethod(fileNameMethodOf(setup)),
      m_listsGrowth(m_splitMethod == SplitMethod::MatchToNextUniqueMatch &&
                    !takesRestOfLine(m_nameMethod)) {}

QString OutputRangeSaver::cleanRestOfLine(const QString& text) {
  return m_stages.namer.cleanRestOfLine(text);
}

void OutputRangeSaver::saveRange(SplitRange& range) {
  if (m_state.userStop || m_state.abortRun) {
    return;
  }
  if (takesRestOfLine(m_nameMethod)) {
    range.rangeText = cleanRestOfLine(range.restOfLine);
  }
  if (!range.repeatsPrevious) {
    finish();
  }
  if (!m_listsGrowth) {
    m_held.clear();
  }
  m_held.push_back(range);
  if (!traitsOf(m_splitMethod).unique) {
    finish();
  }
  m_person.handlePendingEvents();
}

void OutputRangeSaver::finish() {
  if (m_held.empty() || m_state.userStop || m_state.abortRun) {
    return;
  }
  save(std::exchange(m_held, {}));
}

void OutputRangeSaver::save(const std::vector<SplitRange>& growth) {
  const SplitRange& range = growth.back();
  const int lastPage = range.lastPage + 1;
  // A setup file may hold any number.
  const auto first = std::clamp<qint64>(qint64{range.firstPage} + m_setup.offsetFirst, 0, lastPage);
  const int firstPage = static_cast<int>(first) + 1;
  if (isEmptied(range, firstPage)) {
    return;
  }
  const bool isElsewhere = !m_state.part.contains(firstPage);
  const NamedOutput named = m_stages.namer.name(range);
  tellNameList(named.nameList);
  if (!isElsewhere && !named.folderToMake.isEmpty() && m_stages.makesFolders &&
      !m_setup.createList) {
    QDir().mkpath(named.folderToMake);
  }
  const QString path =
      m_stages.reservation.reserve(named.path, firstPage, lastPage, m_stages.confirm);
  if (path.isEmpty()) {
    m_state.userStop = m_state.abortRun = true;
    m_held = growth;
    return;
  }
  saved(growth, {firstPage, lastPage, range.rangeText, path}, named.path);
}

void OutputRangeSaver::savePlanned(const PlannedOutput& planned) {
  if (m_state.part.contains(planned.firstPage) && m_stages.makesFolders) {
    QDir().mkpath(platform::folderOf(planned.path));
  }
  m_stages.reservation.reserveAs({planned.path, planned.firstPage, planned.lastPage});
  SplitRange range;
  range.firstPage = planned.firstPage - 1;
  range.lastPage = planned.lastPage - 1;
  range.rangeText = planned.matchedText;
  saved({range}, {planned.firstPage, planned.lastPage, planned.matchedText, planned.path},
        planned.fate == PlannedOutput::Fate::Renamed ? QString() : planned.path);
}

/// A range has its place, or is one of another part.
void OutputRangeSaver::saved(const std::vector<SplitRange>& growth, const ReportLine& line,
                             const QString& namedPath) {
  if (m_stages.onSaved) {
    const QString address = m_setup.emailEnable
                                ? m_stages.addresses.of(line.firstPage, line.lastPage).address
                                : QString();
    m_stages.onSaved(line, namedPath, address);
  }
  if (!m_state.part.contains(line.firstPage)) {
    ++m_state.rangesElsewhere;
    return;
  }
  writeReportLines(growth, line);
  recordEmail(line);
  ++m_state.rangeCount;
}

bool OutputRangeSaver::isEmptied(const SplitRange& range, int firstPage) {
  const int lastPage = range.lastPage + 1;
  if (firstPage <= lastPage) {
    return false;
  }
  ++m_state.emptiedRanges;
  m_person.found(RunFinding::RangeEmptied,
                 QStringLiteral("pages %1-%2 (%3): nothing is left when %4 page(s) are removed "
                                "from the front")
                     .arg(range.firstPage + 1)
                     .arg(lastPage)
                     .arg(range.rangeText)
                     .arg(m_setup.offsetFirst));
  return true;
}

/// Outputs that all have the same name are not what the list was made for.
void OutputRangeSaver::tellNameList(NameList::State state) {
  if (state == m_toldOfList) {
    return;
  }
  m_toldOfList = state;
  if (state == NameList::State::NotOpened) {
    m_person.found(RunFinding::Names,
                   QStringLiteral("%1: this list of names cannot be opened; the outputs have the "
                                  "name \"NOT FOUND!!!\"")
                       .arg(m_setup.reportUseFileList));
  } else if (state == NameList::State::Ended) {
    m_person.found(RunFinding::Names,
                   QStringLiteral("%1: this list has fewer names than there are outputs; the "
                                  "further ones have the name \"NOT FOUND!!!\"")
                       .arg(m_setup.reportUseFileList));
  }
}

/// A range that grew may have a line for each time; all of them name the file that it became.
void OutputRangeSaver::writeReportLines(const std::vector<SplitRange>& growth,
                                        const ReportLine& whole) {
  for (const SplitRange& range : growth) {
    const int lastPage = range.lastPage + 1;
    if (lastPage >= whole.firstPage) {
      m_stages.reports.writeRange({whole.firstPage, lastPage, range.rangeText, whole.outputPath});
    }
  }
  m_stages.reports.flush();
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
