// BarcodeLayer: barcodes as invisible words of their pages.
#pragma once

#include "scanlite/Barcodes.h"
#include "scanlite/ScanOutcome.h"

namespace scanlite {

/// Writes a copy of `pdf` in which three things stand on each barcode, on a line through its
/// middle: "Barcode:", at the left edge and tiny; 4 points behind it, or a sixth of a narrow
/// barcode, the text, nearly as wide as the barcode; and the kind. The first makes a barcode of any
/// text a thing that can be looked for; the last keeps the text from being the page's last word,
/// with which the next page would begin. Encryption with an empty password is dropped. A file whose
/// pages are counted otherwise is refused. After a failure `target` is unfinished.
ScanOutcome writeBarcodeLayer(const QString& pdf, const QString& target,
                              const PageBarcodes& barcodes);

} // namespace scanlite
