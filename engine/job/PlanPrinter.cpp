#include "engine/job/PlanPrinter.h"

#include "engine/base/Text.h"

#include <algorithm>
#include <vector>

namespace folivex {

namespace {

/// The column of addresses is there when there is an address.
bool hasAddresses(const SplitPlan& plan) {
  return std::any_of(plan.outputs.begin(), plan.outputs.end(),
                     [](const PlannedOutput& output) { return !output.address.isEmpty(); });
}

QStringList fieldsOf(const PlannedOutput& output, bool withAddress) {
  QStringList fields = {output.matchedText, output.path, fateText(output.fate)};
  return withAddress ? fields << output.address : fields;
}

QString planAsCsv(const SplitPlan& plan) {
  const bool addresses = hasAddresses(plan);
  QString text = QStringLiteral("Start Page,End Page,Matched,Output File,Note%1\n")
                     .arg(addresses ? QStringLiteral(",Email") : QString());
  for (const PlannedOutput& output : plan.outputs) {
    text += QStringLiteral("%1,%2").arg(output.firstPage).arg(output.lastPage);
    for (const QString& field : fieldsOf(output, addresses)) {
      text += u',' + csvField(field);
    }
    text += u'\n';
  }
  return text;
}

/// Columns as wide as their longest text, no blanks at the end of a line.
QString aligned(const std::vector<QStringList>& rows) {
  std::vector<qsizetype> widths(static_cast<std::size_t>(rows.front().size()), 0);
  for (const QStringList& row : rows) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
      widths[column] = std::max(widths[column], row[static_cast<qsizetype>(column)].size());
    }
  }
  QString text;
  for (const QStringList& row : rows) {
    QString line;
    for (std::size_t column = 0; column < widths.size(); ++column) {
      line += row[static_cast<qsizetype>(column)].leftJustified(widths[column] + 2);
    }
    while (line.endsWith(QLatin1Char(' '))) {
      line.chop(1);
    }
    text += line + QLatin1Char('\n');
  }
  return text;
}

QString planAsTable(const SplitPlan& plan) {
  const bool addresses = hasAddresses(plan);
  std::vector<QStringList> rows = {{QStringLiteral("Pages"), QStringLiteral("Matched"),
                                    QStringLiteral("Output File"), QStringLiteral("Note")}};
  if (addresses) {
    rows.front() += QStringLiteral("Email");
  }
  for (const PlannedOutput& output : plan.outputs) {
    rows.push_back(QStringList(QStringLiteral("%1-%2").arg(output.firstPage).arg(output.lastPage)) +
                   fieldsOf(output, addresses));
  }
  return aligned(rows) + QLatin1Char('\n') + plan.account.summary(plan.fileCount) +
         QLatin1Char('\n');
}

} // namespace

QString planText(const SplitPlan& plan, PlanOutput form) {
  return form == PlanOutput::Csv ? planAsCsv(plan) : planAsTable(plan);
}

} // namespace folivex
