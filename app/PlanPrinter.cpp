#include "app/PlanPrinter.h"

#include <array>

namespace folivex {

namespace {

using Row = std::array<QString, 4>;

QString csvField(QString text) {
  constexpr QStringView needQuotes = u"\",\r\n";
  const bool quoted =
      std::any_of(text.begin(), text.end(), [&](QChar c) { return needQuotes.contains(c); });
  if (!quoted) {
    return text;
  }
  text.replace(QLatin1Char('"'), QStringLiteral("\"\""));
  return QLatin1Char('"') + text + QLatin1Char('"');
}

QString planAsCsv(const SplitPlan& plan) {
  QString text = QStringLiteral("Start Page,End Page,Matched,Output File,Note\n");
  for (const PlannedOutput& output : plan.outputs) {
    text += QStringLiteral("%1,%2,").arg(output.firstPage).arg(output.lastPage);
    text += csvField(output.matchedText) + QLatin1Char(',') + csvField(output.path) +
            QLatin1Char(',') + csvField(fateText(output.fate)) + QLatin1Char('\n');
  }
  return text;
}

QString planAsTable(const SplitPlan& plan) {
  std::vector<Row> rows = {{QStringLiteral("Pages"), QStringLiteral("Matched"),
                            QStringLiteral("Output File"), QStringLiteral("Note")}};
  for (const PlannedOutput& output : plan.outputs) {
    rows.push_back({QStringLiteral("%1-%2").arg(output.firstPage).arg(output.lastPage),
                    output.matchedText, output.path, fateText(output.fate)});
  }
  std::array<qsizetype, 3> widths = {};
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
      widths[column] = std::max(widths[column], row[column].size());
    }
  }
  QString text;
  for (const Row& row : rows) {
    QString line;
    for (std::size_t column = 0; column < widths.size(); ++column) {
      line += row[column].leftJustified(widths[column]) + QStringLiteral("  ");
    }
    line += row.back();
    while (line.endsWith(QLatin1Char(' '))) {
      line.chop(1);
    }
    text += line + QLatin1Char('\n');
  }
  return text + QLatin1Char('\n') + plan.account.summary(plan.fileCount) + QLatin1Char('\n');
}

} // namespace

QString planText(const SplitPlan& plan, PlanOutput form) {
  return form == PlanOutput::Csv ? planAsCsv(plan) : planAsTable(plan);
}

} // namespace folivex
