#include "engine/report/Reports.h"

#include "platform/Paths.h"

#include <QFile>

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

QString cannotWrite(const QString& path) {
  return QStringLiteral("file error! can't write to report file: %1, try changing the report path "
                        "in report options")
      .arg(path);
}

} // namespace

bool Reports::openOne(Report& report, const QString& path) {
  if (!platform::isNullDevice(path)) {
    QFile::remove(path);
  }
  report.lastLine = -1;
  return report.file.open(path);
}

Reports::Opened Reports::open(const ReportPaths& paths, const QString& source,
                              const QString& searchText, const QDateTime& now) {
  m_paths = paths;
  if (!openOne(m_text, paths.text)) {
    return {RunError::TextReport, cannotWrite(paths.text)};
  }
  if (!openOne(m_csv, paths.csv)) {
    static_cast<void>(m_text.file.close());
    return {RunError::CsvReport, cannotWrite(paths.csv)};
  }
  m_open = true;
  writeHeaders(source, searchText, now);
  return {};
}

void Reports::writeHeaders(const QString& source, const QString& searchText, const QDateTime& now) {
  const QString date = now.toString(QStringLiteral("MM/dd/yy"));
  const QString time = now.toString(QStringLiteral("HH:mm:ss"));
  m_text.file.write(QStringLiteral("\t\t\t\tFolivex ") + reportVersion() +
                    QStringLiteral(" Report\t\t\t") + date + QLatin1Char(' ') + time +
                    QStringLiteral("\r\n\r\n"));
  m_text.file.write(QStringLiteral("\tPDF Filename: ") + padded(source, textWidth) +
                    QStringLiteral("\r\n\tFind: ") + searchText + QStringLiteral("\r\n\r\n"));
  m_csv.file.write(QStringLiteral("Folivex ") + reportVersion() + QStringLiteral(" SA Report,,") +
                   date + QLatin1Char(',') + time + QStringLiteral("\r\n\r\n"));
  m_csv.file.write(QStringLiteral("PDF Filename:,") + padded(source, textWidth) +
                   QStringLiteral("\r\nFind:,") + searchText + QStringLiteral("\r\n\r\n"));
  m_csv.file.write(QStringLiteral("Start Page,End Page,Matched,Output File\r\n"));
}

void Reports::writeRange(const ReportLine& line) {
  if (!m_open) {
    return;
  }
  m_text.lastLine = m_text.file.position();
  m_csv.lastLine = m_csv.file.position();
  const QString first = padded(line.firstPage, pageWidth);
  const QString last = padded(line.lastPage, pageWidth);
  const QString matched = padded(line.matchedText, textWidth);
  m_text.file.write(QStringLiteral("Page: ") + first + QStringLiteral(" - ") + last +
                    QLatin1Char('\t') + matched + QStringLiteral("\tOutput file:") +
                    line.outputPath + QStringLiteral("\r\n"));
  m_csv.file.write(first + QLatin1Char(',') + last + QLatin1Char(',') + matched + QLatin1Char(',') +
                   line.outputPath + QStringLiteral("\r\n"));
}

void Reports::takeBackRange() {
  for (Report* report : {&m_text, &m_csv}) {
    if (report->lastLine >= 0) {
      report->file.truncateTo(report->lastLine);
      report->lastLine = -1;
    }
  }
}

void Reports::writeTotals(int fileCount) {
  if (!m_open) {
    return;
  }
  const QString count = QString::number(fileCount);
  m_text.file.write(QStringLiteral("\r\n\t") + count + QStringLiteral(" PDF file(s)\r\n"));
  m_csv.file.write(QStringLiteral("\r\n,") + count + QStringLiteral(", PDF file(s)\r\n"));
}

void Reports::flush() {
  if (m_open) {
    m_text.file.flush();
    m_csv.file.flush();
  }
}

Reports::Opened Reports::close() {
  if (!m_open) {
    return {};
  }
  m_open = false;
  const bool textIsWhole = m_text.file.close();
  const bool csvIsWhole = m_csv.file.close();
  if (!textIsWhole) {
    return {RunError::TextReport, cannotWrite(m_paths.text)};
  }
  if (!csvIsWhole) {
    return {RunError::CsvReport, cannotWrite(m_paths.csv)};
  }
  return {};
}

} // namespace folivex
