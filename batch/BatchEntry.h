// BatchEntry: one file of a batch.
#pragma once

#include <QString>

namespace folivex {

/// How a row is used, as list files tell it. What is shown and what a run goes by is the use flag,
/// a text.
enum class UseMode { No, Yes, NoStamp };

struct BatchEntry {
  QString useFlag; ///< "Yes", "No", or "Yes, No Stamp", which only a save knows
  QString path;    ///< whole path of the PDF file; nobody has looked whether it is there
  QString status;  ///< "Ready.", or what the run says about it

  bool operator==(const BatchEntry&) const = default;
};

inline QString useYes() {
  return QStringLiteral("Yes");
}
inline QString useNo() {
  return QStringLiteral("No");
}
inline QString useNoStamp() {
  return QStringLiteral("Yes, No Stamp");
}

inline QString statusReady() {
  return QStringLiteral("Ready.");
}
inline QString statusProcessing() {
  return QStringLiteral("Processing");
}
inline QString statusDone() {
  return QStringLiteral("Done");
}
inline QString statusFileError() {
  return QStringLiteral("file error");
}

/// A row as every way of adding makes it. Only UseMode::Yes is going to be processed.
inline BatchEntry newEntry(UseMode mode, const QString& path) {
  return {mode == UseMode::Yes ? useYes() : useNo(), path, statusReady()};
}

} // namespace folivex
