// Adding a text layer to the scanned pages of a PDF.
#pragma once

#include "scanlite/ScanOutcome.h"

namespace scanlite {

/// Writes a copy of the PDF `source` to `copy` in which pages without text have an invisible layer
/// of the words that are seen on them; pages with text stay as they are. To all pages the texts of
/// their barcodes are added as words. FOLIVEX_OCR_READS in the environment chooses: "words",
/// "barcodes", or "words+barcodes" as when it is not set. A source that is encrypted with an empty
/// password becomes an unencrypted copy.
///
/// The copy appears whole or not at all, readable by its owner alone; whatever the outcome, nothing
/// else stays behind. The source is only read.
ScanOutcome addTextLayer(const QString& source, const QString& copy);

} // namespace scanlite
