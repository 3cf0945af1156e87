#include "engine/report/Reports.h"

#include "platform/Paths.h"

#include <QFile>

#include <algorithm>
#include <iterator>

namespace folivex {

namespace {

/// "%-30s" and "%-2d" of the report formats: short values are filled with blanks, long ones stay.
QString padded(const QString& text, int width) {
  return text.leftJustified(width);
}
QString padded(int number, int width) {
  return padded(QString::number(number), width);
}

constexpr int pageWidth = 2;
constexpr int textWidth = 30;

QString cannotWriteCsv(const QString& path) {
  return QStringLiteral("file error! can't write to report file: %1").arg(path);
}

QString cannotWriteText(const QString& path) {
  return cannotWriteCsv(path) + QStringLiteral(", try changing the report path in report options");
}

} // namespace

bool Reports::openOne(platform::TextWriter& file, const QString& path) {
  if (!platform::isNullDevice(path)) {
    QFile::remove(path);
  }
  return file.open(path);
}

Reports::Opened Reports::open(const ReportPaths& paths, const QString& source,
                              const QString& searchText, const QDateTime& now) {
  m_paths = paths;
  if (!openOne(m_text, paths.text)) {
    return {RunError::TextReport, cannotWriteText(paths.text)};
  }
  if (!openOne(m_csv, paths.csv)) {
    static_cast<void>(m_text.close());
    return {RunError::CsvReport, cannotWriteCsv(paths.csv)};
  }
  m_open = true;
  m_ranges.clear();
  // Found only where the run was killed: whoever reads the report must not take it for all.
  m_text.setEnding(QStringLiteral("\r\n\tThis run was not finished.\r\n"));
  m_csv.setEnding(QStringLiteral("\r\n,This run was not finished.\r\n"));
  writeHeaders(source, searchText, now);
  flush();
  return {};
}

void Reports::writeHeaders(const QString& source, const QString& searchText, const QDateTime& now) {
  const QString date = now.toString(QStringLiteral("MM/dd/yy"));
  const QString time = now.toString(QStringLiteral("HH:mm:ss"));
  m_text.write(QStringLiteral("\t\t\t\tFolivex ") + reportVersion() +
               QStringLiteral(" Report\t\t\t") + date + QLatin1Char(' ') + time +
               QStringLiteral("\r\n\r\n"));
  m_text.write(QStringLiteral("\tPDF Filename: ") + padded(source, textWidth) +
               QStringLiteral("\r\n\tFind: ") + searchText + QStringLiteral("\r\n\r\n"));
  m_csv.write(QStringLiteral("Folivex ") + reportVersion() + QStringLiteral(" SA Report,,") + date +
              QLatin1Char(',') + time + QStringLiteral("\r\n\r\n"));
  m_csv.write(QStringLiteral("PDF Filename:,") + padded(source, textWidth) +
              QStringLiteral("\r\nFind:,") + searchText + QStringLiteral("\r\n\r\n"));
  m_csv.write(QStringLiteral("Start Page,End Page,Matched,Output File\r\n"));
}

void Reports::writeRange(const ReportLine& line) {
  if (!m_open) {
    return;
  }
  m_ranges.push_back({line.outputPath, line.firstPage, false, m_text.position(), m_csv.position()});
  const QString first = padded(line.firstPage, pageWidth);
  const QString last = padded(line.lastPage, pageWidth);
  const QString matched = padded(line.matchedText, textWidth);
  m_text.write(QStringLiteral("Page: ") + first + QStringLiteral(" - ") + last + QLatin1Char('\t') +
               matched + QStringLiteral("\tOutput file:") + line.outputPath +
               QStringLiteral("\r\n"));
  m_csv.write(first + QLatin1Char(',') + last + QLatin1Char(',') + matched + QLatin1Char(',') +
              line.outputPath + QStringLiteral("\r\n"));
}

void Reports::dropRanges(const IsDropped& isDropped) {
  if (!m_open) {
    return;
  }
  bool anyDropped = false;
  for (Range& range : m_ranges) {
    range.isDropped = isDropped(range.outputPath, range.firstPage);
    anyDropped = anyDropped || range.isDropped;
  }
  if (anyDropped) {
    dropLines(m_text, m_paths.text, &Range::inText);
    dropLines(m_csv, m_paths.csv, &Range::inCsv);
    m_ranges.clear(); // they begin elsewhere now, and no further line comes
  }
}

void Reports::dropLines(platform::TextWriter& file, const QString& path,
                        qint64 Range::*begin) const {
  const auto first = std::ranges::find_if(m_ranges, &Range::isDropped);
  QFile written;
  platform::FileFailure ignored; // a report that cannot be read stays as it is
  if (platform::isNullDevice(path) || !file.flush() ||
      !platform::openForReading(written, path, platform::FileAccess::Ordinary, ignored)) {
    return;
  }
  QByteArray kept;
  for (auto range = first; range != m_ranges.end(); ++range) {
    const auto next = std::next(range);
    const qint64 end = next == m_ranges.end() ? file.position() : (*next).*begin;
    if (!range->isDropped && written.seek((*range).*begin)) {
      kept += written.read(end - (*range).*begin);
    }
  }
  file.truncateTo((*first).*begin);
  file.write(QString::fromUtf8(kept.replace("\r\n", "\n"))); // writing puts the CRs back
}

void Reports::writeTotals(int fileCount) {
  if (!m_open) {
    return;
  }
  const QString count = QString::number(fileCount);
  m_text.write(QStringLiteral("\r\n\t") + count + QStringLiteral(" PDF file(s)\r\n"));
  m_csv.write(QStringLiteral("\r\n,") + count + QStringLiteral(", PDF file(s)\r\n"));
}

void Reports::writeFinding(const QString& sentence) {
  if (m_open) {
    m_text.write(QStringLiteral("\r\n\t") + sentence + QStringLiteral("\r\n"));
  }
}

void Reports::flush() {
  if (m_open) {
    m_text.flush();
    m_csv.flush();
  }
}

Reports::Opened Reports::close() {
  if (!m_open) {
    return {};
  }
  m_open = false;
  const bool textIsWhole = m_text.close();
  const bool csvIsWhole = m_csv.close();
  if (!textIsWhole) {
    return {RunError::TextReport, cannotWriteText(m_paths.text)};
  }
  if (!csvIsWhole) {
    return {RunError::CsvReport, cannotWriteCsv(m_paths.csv)};
  }
  return {};
}

} // namespace folivex
