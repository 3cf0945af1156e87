// Csv: text files of comma-separated values, read and written.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace sheetflat {

/// Records in file order. They may be of different lengths; a blank line is a record of one empty
/// field, so that the index of a record tells its row in a spreadsheet.
using CsvRecords = std::vector<QStringList>;

struct CsvText {
  CsvRecords records;
  /// Number, from 1, of the record in which a quote is opened and never closed (it swallows the
  /// rest of the file); 0: every quote is closed.
  qsizetype unclosedQuote = 0;
};

/// More bytes than this are no list of anybody's: nothing larger is read or written.
inline constexpr qint64 csvSizeLimit = 32LL * 1024 * 1024;

/// The whole text of the file at `path`, lines ended by LF. UTF-8 or UTF-16 by its byte-order mark,
/// else UTF-8 where it is valid, else Windows-1252. False, with the reason in `problem`, when it
/// cannot be read or is too large.
[[nodiscard]] bool readTextFile(const QString& path, QString& text, QString& problem);

/// Splits a text into its records, at most `mostRecords` of them. Fields may be quoted, a quote in
/// them is doubled. A quote that does not begin a field is a character like any other, and so is
/// what follows a closing quote: programs and people write such files.
CsvText parseCsv(QStringView text, QChar separator, qsizetype mostRecords = -1);

/// The separator of a text: the one of comma, semicolon and tab that makes the most of its first
/// records equally long. A first line "sep=;" decides, and is taken off `text`.
QChar takeSeparator(QStringView& text);

/// UTF-8 without a mark, fields separated by commas and quoted where they need it, each record
/// ended by LF.
QByteArray csvOf(const CsvRecords& records);

} // namespace sheetflat
