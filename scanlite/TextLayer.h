// Adding a text layer to the scanned pages of a PDF.
#pragma once

#include <QString>

namespace scanlite {

/// The values are the program's exit codes.
enum class ScanResult {
  Done = 0,
  Failed = 1, ///< for a reason that the text quotes
  Usage = 2,
  ProgramMissing = 3,  ///< OCRmyPDF, or a program that it needs
  LanguageMissing = 4, ///< Tesseract lacks a language that was asked for
  NotAPdf = 5,         ///< missing, unreadable or no PDF
  NeedsPassword = 6,
  NotWritable = 7, ///< the copy's folder
  Stopped = 143    ///< by a signal
};

struct ScanOutcome {
  ScanResult result = ScanResult::Done;
  QString text; ///< English, for a person; empty when done
};

/// Writes a copy of the PDF `source` to `copy` in which pages without text have an invisible layer
/// of the words that are seen on them; pages with text stay as they are. A source that is encrypted
/// with an empty password becomes an unencrypted copy.
///
/// The copy appears whole or not at all, readable by its owner alone; whatever the outcome, nothing
/// else stays behind. The source is only read.
ScanOutcome addTextLayer(const QString& source, const QString& copy);

} // namespace scanlite
