// BatchEntry: one file of a batch.
#pragma once

#include <QString>

namespace folivex {

struct BatchEntry {
  QString useFlag;     ///< "Yes", "No", or "Yes, No Stamp", which only a save knows
  QString path;        ///< whole path of the PDF file; nobody has looked whether it is there
  QString status;      ///< "Ready.", or what the run says about it
  QString result = {}; ///< pages, outputs and what went wrong, once a run knows; in no list file

  bool operator==(const BatchEntry&) const = default;
};

inline constexpr QLatin1String useYes("Yes");
inline constexpr QLatin1String useNo("No");
inline constexpr QLatin1String useNoStamp("Yes, No Stamp");

inline constexpr QLatin1String statusReady("Ready.");
inline constexpr QLatin1String statusProcessing("Processing");
inline constexpr QLatin1String statusDone("Done");
inline constexpr QLatin1String statusFileError("file error");

/// A row as every way of adding makes it.
inline BatchEntry newEntry(const QString& path, const QString& useFlag = useYes) {
  return {useFlag, path, statusReady};
}

} // namespace folivex
