#include "app/Usage.h"

namespace folivex {

QString usageText() {
  return QStringLiteral(
      "Folivex splits a PDF into one PDF for each document in it, by the words on its pages.\n"
      "\n"
      "  folivex                          opens the window\n"
      "  folivex -uSETUP -fPDF -c         splits PDF as SETUP says, and ends\n"
      "\n"
      "Options are taken in order; \"-u\" and \"-p\" count for the \"-f\" behind them.\n"
      "  -uSETUP     setup file (.fxs); without it the settings of the last run\n"
      "  -pPASSWORD  password that opens the PDF\n"
      "  -fPDF       split this PDF; with \"*\" in it, every PDF of the folder that it matches\n"
      "  -c          close the program when all is done\n"
      "  --plan      show what would be written, as a table, and write nothing; --plan=csv as CSV\n"
      "  --suggest   propose setups for this PDF; --suggest=SETUP writes the best one, if it is "
      "sure,\n"
      "              to a setup file; --unsure: in any case; --force: over a file that is there\n"
      "  --help      this text\n"
      "  --version   the program's version\n"
      "\n"
      "Without a display, with --plan or --suggest, and with \"-c\" on a terminal no window opens: "
      "messages go "
      "to\n"
      "standard error, and nothing waits for a person.\n"
      "\n"
      "Exit codes (a shell shows the low 8 bits: -1 is 255):\n"
      "    0  all went well         -4  CSV report not writable\n"
      "   -1  source missing        -5  default setup file not writable\n"
      "   -2  setup file missing    -6  settings that exclude each other\n"
      "   -3  text report not      -11  an append failed\n"
      "       writable             -12  source unreadable or protected\n"
      "    1  stopped              -13  an output could not be written\n"
      "    2  no setup is sure     -14  a mail could not be sent\n"
      "                            -15  the source changed meanwhile\n"
      "                            -16  the output folder is another run's\n");
}

QString versionText() {
  return QStringLiteral("Folivex %1\n").arg(QStringLiteral(FOLIVEX_VERSION));
}

} // namespace folivex
