#include "app/viewer/PlanRows.h"

#include <QCollator>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace folivex {

namespace {

template <typename Number> int compareValues(Number left, Number right) {
  return left < right ? -1 : (right < left ? 1 : 0);
}

qsizetype folderLength(const QString& path) {
  return std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1;
}

int pagesOf(const PlannedOutput& output) {
  return output.lastPage - output.firstPage + 1;
}

QString joined(const QString& note, const QString& more) {
  return note.isEmpty() ? more : note + QStringLiteral("; ") + more;
}

/// In the order that a person counts in: "a2" before "a10", capitals beside small letters.
int compareNaturally(const QString& left, const QString& right) {
  static const QCollator collator = [] {
    QCollator made(QLocale::English); // the C locale cannot count
    made.setNumericMode(true);
    made.setCaseSensitivity(Qt::CaseInsensitive);
    return made;
  }();
  return collator.compare(left, right);
}

} // namespace

QString planColumnTitle(PlanColumn column) {
  constexpr std::array<const char*, planColumnCount> titles = {
      "Pages", "Count", "Matched", "Output file", "Folder", "Note", "E-mail address"};
  return QString::fromLatin1(titles.at(static_cast<std::size_t>(column)));
}

PlanRows::PlanRows(std::shared_ptr<const SplitPlan> plan, Order order)
    : m_plan(std::move(plan)), m_summary(m_plan->account.summary(m_plan->fileCount)),
      m_order(order) {
  m_rows.reserve(m_plan->outputs.size());
  for (const PlannedOutput& output : m_plan->outputs) {
    const qsizetype folder = folderLength(output.path);
    m_hasAddresses = m_hasAddresses || !output.address.isEmpty();
    m_rows.push_back({output.firstPage == output.lastPage
                          ? QString::number(output.firstPage)
                          : QStringLiteral("%1-%2").arg(output.firstPage).arg(output.lastPage),
                      output.path.sliced(folder),
                      output.path.first(std::max(folder - 1, qsizetype{0})), fateText(output.fate),
                      output.address});
  }
  addNameClashes();
  m_warningCount = static_cast<int>(std::count_if(
      m_rows.begin(), m_rows.end(), [](const Row& row) { return !row.note.isEmpty(); }));
  m_ordered.resize(m_rows.size());
  arrange();
}

/// Two names that differ in capitals only are one file on many a disk, and the second of them
/// would take the place of the first.
void PlanRows::addNameClashes() {
  QHash<QString, QString> firstOfName;
  QSet<QString> clashes;
  for (const PlannedOutput& output : m_plan->outputs) {
    const QString folded = output.path.toCaseFolded();
    if (const auto first = firstOfName.constFind(folded); first == firstOfName.constEnd()) {
      firstOfName.insert(folded, output.path);
    } else if (*first != output.path) {
      clashes.insert(folded);
    }
  }
  if (clashes.isEmpty()) {
    return;
  }
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    if (clashes.contains(m_plan->outputs[i].path.toCaseFolded())) {
      m_rows[i].note =
          joined(m_rows[i].note, QStringLiteral("another name differs in capitals only"));
    }
  }
}

QString PlanRows::text(int row, PlanColumn column) const {
  switch (column) {
  case PlanColumn::Pages:
    return of(row).pages;
  case PlanColumn::Count:
    return QString::number(pagesOf(planned(row)));
  case PlanColumn::Text:
    return planned(row).matchedText;
  case PlanColumn::Name:
    return of(row).name;
  case PlanColumn::Folder:
    return of(row).folder;
  case PlanColumn::Note:
    return of(row).note;
  case PlanColumn::Address:
    return of(row).address;
  }
  return {};
}

int PlanRows::compare(int left, int right, PlanColumn column) const {
  const auto l = static_cast<std::size_t>(left);
  const auto r = static_cast<std::size_t>(right);
  const PlannedOutput& a = m_plan->outputs[l];
  const PlannedOutput& b = m_plan->outputs[r];
  switch (column) {
  case PlanColumn::Pages:
    return compareValues(std::pair(a.firstPage, a.lastPage), std::pair(b.firstPage, b.lastPage));
  case PlanColumn::Count:
    return compareValues(pagesOf(a), pagesOf(b));
  case PlanColumn::Text:
    return compareNaturally(a.matchedText, b.matchedText);
  case PlanColumn::Name:
    return compareNaturally(m_rows[l].name, m_rows[r].name);
  case PlanColumn::Folder:
    return compareNaturally(m_rows[l].folder, m_rows[r].folder);
  case PlanColumn::Note:
    return compareNaturally(m_rows[l].note, m_rows[r].note);
  case PlanColumn::Address:
    return compareNaturally(m_rows[l].address, m_rows[r].address);
  }
  return 0;
}

void PlanRows::arrange() {
  std::iota(m_ordered.begin(), m_ordered.end(), 0);
  std::stable_sort(m_ordered.begin(), m_ordered.end(), [this](int left, int right) {
    return m_order.descending ? compare(right, left, m_order.column) < 0
                              : compare(left, right, m_order.column) < 0;
  });
  choose(m_sought, m_warningsOnly);
}

void PlanRows::sort(Order order) {
  m_order = order;
  arrange();
}

void PlanRows::choose(const QString& text, bool warningsOnly) {
  m_sought = text;
  m_warningsOnly = warningsOnly;
  const auto contains = [&](const QString& field) {
    return field.contains(text, Qt::CaseInsensitive);
  };
  m_shown.clear();
  for (const int output : m_ordered) {
    const auto index = static_cast<std::size_t>(output);
    const Row& row = m_rows[index];
    if (warningsOnly && row.note.isEmpty()) {
      continue;
    }
    if (text.isEmpty() || contains(row.pages) || contains(m_plan->outputs[index].matchedText) ||
        contains(row.name) || contains(row.folder) || contains(row.note) || contains(row.address)) {
      m_shown.push_back(output);
    }
  }
}

SplitPlan PlanRows::shownPlan() const {
  SplitPlan shown = *m_plan;
  shown.outputs.clear();
  for (int row = 0; row < count(); ++row) {
    shown.outputs.push_back(planned(row));
  }
  return shown;
}

} // namespace folivex
