// Scanlite: makes a copy of a PDF whose scanned pages can be searched.
#include "platform/ChildProgram.h"
#include "platform/ProgramHelp.h"
#include "scanlite/Barcodes.h"
#include "scanlite/TextLayer.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

/// The exit codes are those of ScanResult.
constexpr const char* help =
    "Scanlite makes a copy of a PDF whose scanned pages can be searched.\n"
    "\n"
    "Usage: Scanlite SOURCE COPY 0\n"
    "\n"
    "Pages without text get an invisible layer of the words that are seen on them, by OCRmyPDF;\n"
    "barcodes of all pages become words, too. The last parameter is the mode: 0, the only one,\n"
    "leaves pages that have text as they are. The copy appears whole or not at all; the source\n"
    "is only read.\n"
    "\n"
    "Options:\n"
    "  --help     this text\n"
    "  --version  the program's version\n"
    "\n"
    "Environment:\n"
    "  FOLIVEX_OCR_LANGUAGE  languages to read, such as deu+fra; else your own and English\n"
    "  FOLIVEX_OCR_READS     words, barcodes, or words+barcodes as when it is not set\n"
    "\n"
    "Exit codes:\n"
    "  0    the copy is there; what is to be known of it is told on standard error\n"
    "  1    failed for a reason that is told\n"
    "  2    other parameters\n"
    "  3    OCRmyPDF, or a program that it needs, is missing\n"
    "  4    Tesseract lacks a language\n"
    "  5    the source is missing, unreadable or no PDF\n"
    "  6    the source needs a password\n"
    "  7    the folder of the copy cannot be written\n"
    "  143  stopped by a signal\n";

} // namespace

int main(int argc, char* argv[]) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.value(1) == scanlite::barcodeWorker) {
    return scanlite::runBarcodeWorker(arguments.mid(2));
  }
  if (folivex::platform::tellsOfItself(arguments, help, FOLIVEX_VERSION)) {
    return 0;
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
