// Any text as a table of values, and its rows as an e-mail list. The table comes back from the file
// that is made of it; no row can put a line of its own into a mail's head, or mail pages that are
// none.
#include "fuzz/Targets.h"
#include "mail/import/EmailRows.h"
#include "sheetflat/Csv.h"

#include <algorithm>

namespace fuzzing {

namespace {

bool isOneLine(const QString& text) {
  return std::ranges::none_of(text, [](QChar c) { return c.category() == QChar::Other_Control; });
}

} // namespace

void runEmailSheet(const QByteArray& input) {
  const QString path = workPath(QStringLiteral("sheet.csv"));
  writeWorkFile(path, input);
  QString text;
  QString problem;
  require(sheetflat::readTextFile(path, text, problem));
  QStringView rest(text);
  const QChar separator = sheetflat::takeSeparator(rest);
  const sheetflat::CsvRecords records = sheetflat::parseCsv(rest, separator).records;
  writeWorkFile(path, sheetflat::csvOf(records));
  require(sheetflat::readTextFile(path, text, problem));
  require(sheetflat::parseCsv(text, u',').records == records);

  const folivex::EmailImport import = folivex::emailsOfRows(records, workPath(QString()));
  require(import.done == import.problem.isEmpty());
  for (const folivex::EmailEntry& entry : import.entries) {
    require(isOneLine(entry.address) && isOneLine(entry.file) && isOneLine(entry.cc) &&
            isOneLine(entry.subject) && isOneLine(entry.invoiceNumberInSubject));
    const bool isWholeFile = entry.extractPageStart == 0 && entry.extractPageEnd == 0;
    require(isWholeFile ||
            (entry.extractPageStart >= 1 && entry.extractPageEnd >= entry.extractPageStart));
  }
}

} // namespace fuzzing
