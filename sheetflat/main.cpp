// Sheetflat: the first sheet of a spreadsheet as a CSV file.
//
//   Sheetflat INPUT OUTPUT
//
// INPUT is .xlsx, .xls, .ods or text of separated values; OUTPUT is UTF-8, comma, LF. The exit code
// is a FlattenResult; a failure is told on standard error.
#include "platform/ChildProgram.h"
#include "sheetflat/Flatten.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[]) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 3) {
    std::fputs("usage: Sheetflat INPUT OUTPUT\n", stderr);
    return static_cast<int>(sheetflat::FlattenResult::Usage);
  }
  folivex::platform::passOnStopSignals();
  const sheetflat::FlattenOutcome outcome = sheetflat::flattenSheet(arguments[1], arguments[2]);
  if (outcome.result != sheetflat::FlattenResult::Done) {
    std::fprintf(stderr, "Sheetflat: %s: %s\n", qPrintable(arguments[1]), qPrintable(outcome.text));
  }
  return static_cast<int>(outcome.result);
}
