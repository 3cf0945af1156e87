// ScanOutcome: how the making of a copy ended.
#pragma once

#include <QString>
#include <QStringList>

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
  QString text;           ///< English, for a person; empty when done
  QStringList notes = {}; ///< what is to be known of a copy that was made
};

} // namespace scanlite
