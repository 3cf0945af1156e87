#include "app/viewer/PlanRows.h"

#include <QCollator>
#include <QHash>
#include <QStringList>

#include <algorithm>
#include <numeric>
#include <utility>

namespace folivex {

namespace {

qsizetype folderLength(const QString& path) {
  return std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1;
}

int pagesOf(const PlannedOutput& output) {
  return output.lastPage - output.firstPage + 1;
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

PlanRows::PlanRows(std::shared_ptr<const SplitPlan> plan, Order order)
    : m_plan(std::move(plan)), m_summary(m_plan->account.summary(m_plan->fileCount)) {
  const QSet<QString> clashes = nameClashes();
  m_fields.reserve(m_plan->outputs.size());
  for (const PlannedOutput& output : m_plan->outputs) {
    const qsizetype folder = folderLength(output.path);
    QStringList notes(fateText(output.fate));
    if (clashes.contains(output.path.toCaseFolded())) {
      notes += QStringLiteral("another name differs in capitals only");
    }
    notes.removeAll(QString());
    m_warningCount += notes.isEmpty() ? 0 : 1;
    m_hasAddresses = m_hasAddresses || !output.address.isEmpty();
    m_fields.push_back({output.firstPage == output.lastPage
                            ? QString::number(output.firstPage)
                            : QStringLiteral("%1-%2").arg(output.firstPage).arg(output.lastPage),
                        QString::number(pagesOf(output)), output.matchedText,
                        output.path.sliced(folder),
                        output.path.first(std::max(folder - 1, qsizetype{0})),
                        notes.join(QStringLiteral("; ")), output.address});
  }
  sort(order);
}

/// Two names that differ in capitals only are one file on many a disk, and the second of them
/// would take the place of the first.
QSet<QString> PlanRows::nameClashes() const {
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
  return clashes;
}

int PlanRows::compare(std::size_t left, std::size_t right) const {
  const PlannedOutput& a = m_plan->outputs[left];
  const PlannedOutput& b = m_plan->outputs[right];
  switch (m_order.column) {
  case PlanColumn::Pages:
    return a.firstPage == b.firstPage ? a.lastPage - b.lastPage : a.firstPage - b.firstPage;
  case PlanColumn::Count:
    return pagesOf(a) - pagesOf(b);
  default:
    return compareNaturally(field(left, m_order.column), field(right, m_order.column));
  }
}

void PlanRows::sort(Order order) {
  m_order = order;
  m_ordered.resize(m_fields.size());
  std::iota(m_ordered.begin(), m_ordered.end(), 0);
  std::ranges::stable_sort(m_ordered, [this](std::size_t left, std::size_t right) {
    return (m_order.descending ? compare(right, left) : compare(left, right)) < 0;
  });
  choose(m_sought, m_warningsOnly);
}

void PlanRows::choose(const QString& text, bool warningsOnly) {
  m_sought = text;
  m_warningsOnly = warningsOnly;
  const auto hasText = [&](const QString& field) {
    return field.contains(text, Qt::CaseInsensitive);
  };
  m_shown.clear();
  for (const std::size_t output : m_ordered) {
    const bool isKind = !warningsOnly || !field(output, PlanColumn::Note).isEmpty();
    if (isKind && (text.isEmpty() || std::ranges::any_of(m_fields[output], hasText))) {
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
