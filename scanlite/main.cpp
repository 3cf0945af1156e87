// Scanlite: makes a copy of a PDF whose scanned pages can be searched.
//
//   Scanlite SOURCE COPY 0
//
// The last parameter is the mode; 0, the only one, leaves pages that have text as they are. The
// exit code is a ScanResult; a failure, and what is to be known of the copy, is told on standard
// error.
#include "platform/ChildProgram.h"
#include "scanlite/Barcodes.h"
#include "scanlite/TextLayer.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[]) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.value(1) == scanlite::barcodeWorker) {
    return scanlite::runBarcodeWorker(arguments.mid(2));
  }
  if (arguments.size() != 4 || arguments[3] != QLatin1String("0")) {
    std::fputs("usage: Scanlite SOURCE COPY 0\n", stderr);
    return static_cast<int>(scanlite::ScanResult::Usage);
  }
  folivex::platform::passOnStopSignals();
  const scanlite::ScanOutcome outcome = scanlite::addTextLayer(arguments[1], arguments[2]);
  if (outcome.result != scanlite::ScanResult::Done) {
    std::fprintf(stderr, "Scanlite: %s: %s\n", qPrintable(arguments[1]), qPrintable(outcome.text));
    return static_cast<int>(outcome.result);
  }
  for (const QString& note : outcome.notes) {
    std::fprintf(stderr, "%s: %s\n", qPrintable(arguments[1]), qPrintable(note));
  }
  return static_cast<int>(scanlite::ScanResult::Done);
}
