// Sheetflat: the first sheet of a spreadsheet as a CSV file.
#include "platform/ChildProgram.h"
#include "platform/ProgramHelp.h"
#include "sheetflat/Flatten.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

/// The exit codes are those of FlattenResult.
constexpr const char* help =
    "Sheetflat writes the first sheet of a spreadsheet as a CSV file.\n"
    "\n"
    "Usage: Sheetflat INPUT OUTPUT\n"
    "\n"
    "INPUT is .xlsx, .xls, .ods or text of separated values, told by what is in it and not by its\n"
    "name; workbooks are read by Gnumeric. OUTPUT is UTF-8 with commas, a line end after each\n"
    "row, and appears whole or not at all.\n"
    "\n"
    "Options:\n"
    "  --help     this text\n"
    "  --version  the program's version\n"
    "\n"
    "Exit codes:\n"
    "  0    the CSV file is there\n"
    "  1    failed for a reason that is told\n"
    "  2    other parameters\n"
    "  3    the converter of Gnumeric is missing\n"
    "  5    the input is missing, unreadable, damaged or no spreadsheet\n"
    "  6    the input needs a password\n"
    "  7    the output cannot be written\n"
    "  8    the input is too large\n"
    "  9    the converter took too long\n"
    "  143  stopped by a signal\n";

} // namespace

int main(int argc, char* argv[]) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (folivex::platform::tellsOfItself(arguments, help, FOLIVEX_VERSION)) {
    return 0;
  }
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
