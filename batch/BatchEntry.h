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

inline constexpr QLatin1String useYes("Yes");
inline constexpr QLatin1String useNo("No");
inline constexpr QLatin1String useNoStamp("Yes, No Stamp");

inline constexpr QLatin1String statusReady("Ready.");
inline constexpr QLatin1String statusProcessing("Processing");
inline constexpr QLatin1String statusDone("Done");
inline constexpr QLatin1String statusFileError("file error");

/// A row as every way of adding makes it. Only UseMode::Yes is going to be processed.
inline BatchEntry newEntry(UseMode mode, const QString& path) {
  return {mode == UseMode::Yes ? useYes : useNo, path, statusReady};
}

} // namespace folivex
