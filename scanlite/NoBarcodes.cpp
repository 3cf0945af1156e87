// Where there are no readers of barcodes: that is told, and pages keep what they have.
#include "scanlite/Barcodes.h"

namespace scanlite {

PageBarcodes readBarcodes(const QString& /*pdf*/, const QString& /*workFolder*/) {
  PageBarcodes none;
  none.problems += QStringLiteral("barcodes were not looked for: this build has no reader of them");
  return none;
}

int runBarcodeWorker(const QStringList& /*arguments*/) {
  return 1;
}

} // namespace scanlite
