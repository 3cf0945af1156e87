// Barcodes of a PDF's pages, read in a process of their own.
#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <map>
#include <vector>

namespace scanlite {

/// A barcode on a page: its text, and its box in points from the top left of the page as a reader
/// shows it.
struct PageBarcode {
  QString kind; ///< the symbology's name
  QString text;
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

struct PageBarcodes {
  int pageCount = 0;                              ///< as the text library counts
  std::map<int, std::vector<PageBarcode>> ofPage; ///< by pages from 1; pages without any are absent
  QStringList problems;                           ///< what could not be looked at, for a person
  bool stopped = false;
};

/// Reads the barcodes of all pages. Readers and pictures are not to be trusted: a process that dies
/// over one, or takes too much time or memory, costs what it was looking at; another one goes on
/// behind it. What is kept meanwhile lies in `workFolder`.
PageBarcodes readBarcodes(const QString& pdf, const QString& workFolder);

/// The first argument of the process that reads.
inline constexpr QLatin1String barcodeWorker("--barcodes");

/// The process itself: `arguments` behind barcodeWorker. Returns its exit code.
int runBarcodeWorker(const QStringList& arguments);

} // namespace scanlite
