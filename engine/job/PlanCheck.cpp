#include "engine/job/PlanCheck.h"

namespace folivex {

namespace {

QString pagesText(int first, int last) {
  return first == last ? QStringLiteral("Page %1").arg(first)
                       : QStringLiteral("Pages %1-%2").arg(first).arg(last);
}

} // namespace

bool PlanCheck::allows(const ReservedOutput& output) {
  if (m_isAsked) {
    return true;
  }
  const QString differs = difference(output);
  ++m_row;
  m_paths.insert(output.path);
  if (differs.isEmpty()) {
    return true;
  }
  m_isAsked = true;
  return m_person.question(differs + QStringLiteral("\n\nGo on with what is true now? \"No\" stops "
                                                    "before this file is written."),
                           QStringLiteral("Folivex")) == Answer::Yes;
}

QString PlanCheck::difference(const ReservedOutput& output) {
  const QString pages = pagesText(output.firstPage, output.lastPage);
  if (m_row >= m_plan.outputs.size()) {
    return QStringLiteral("%1 would be written to\n%2\n\nThe plan ends before.")
        .arg(pages, output.path);
  }
  const PlannedOutput& planned = m_plan.outputs[m_row];
  const bool samePages =
      planned.firstPage == output.firstPage && planned.lastPage == output.lastPage;
  if (!samePages || planned.path != output.path) {
    return QStringLiteral("%1 would now be written to\n%2\n\nThe plan was: %3 to\n%4")
        .arg(pages, output.path, pagesText(planned.firstPage, planned.lastPage), planned.path);
  }
  if (planned.fate == PlannedOutput::Fate::New && !m_paths.contains(output.path) &&
      m_places.exists(output.path)) {
    return QStringLiteral("%1 would be written to\n%2\n\nThis file was not there when the run was "
                          "planned, and would not stay as it is.")
        .arg(pages, output.path);
  }
  return {};
}

std::size_t PlanCheck::missing() const {
  return m_isAsked ? 0 : m_plan.outputs.size() - m_row;
}

} // namespace folivex
