// Flatten: the first sheet of a spreadsheet as a CSV file.
#pragma once

#include <QString>

namespace sheetflat {

/// The values are the program's exit codes.
enum class FlattenResult {
  Done = 0,
  Failed = 1, ///< for a reason that the text quotes
  Usage = 2,
  ProgramMissing = 3, ///< the converter
  NotASheet = 5,      ///< missing, unreadable, damaged or no spreadsheet
  NeedsPassword = 6,
  NotWritable = 7, ///< the output
  TooLarge = 8,
  TimedOut = 9,
  Stopped = 143 ///< by a signal
};

struct FlattenOutcome {
  FlattenResult result = FlattenResult::Done;
  QString text; ///< English, for a person; empty when done
};

/// Writes the first sheet of `source` (.xlsx, .xls, .ods, or text of separated values; told by the
/// content, not by the name) to `output` as CSV: UTF-8 without a mark, comma, quotes where needed,
/// LF. Cells read as the sheet shows them, in the person's locale, numbers never abbreviated; of a
/// formula it is the value kept in the file where there is one.
///
/// Record n is row n of the sheet, blank rows included, as long as the first cells stand among its
/// first 128 rows and columns; blank columns left of the first one used are dropped. Text is
/// normalised: encoding, separator, line ends.
///
/// The output appears whole or not at all, readable by its owner alone; whatever the outcome,
/// nothing else stays behind. The source is only read.
FlattenOutcome flattenSheet(const QString& source, const QString& output);

} // namespace sheetflat
