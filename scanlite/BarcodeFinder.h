// BarcodeFinder: the barcodes of one page that are sure.
#pragma once

#include "scanlite/BarcodeReaders.h"

#include <functional>

namespace scanlite {

struct Barcode {
  const char* kind;
  std::string text; ///< UTF-8
  PixelBox box;
};

struct FoundBarcodes {
  std::vector<Barcode> sure;
  bool hasDoubtful = false; ///< there is another one, whose text is not sure
};

/// Before each call of a reader: whether it is to be made. Its number is the same whenever the same
/// picture is read.
using ReaderStep = std::function<bool(int number)>;

/// A barcode is given when nothing speaks against its text: it corrects its own errors, or has
/// check characters and was read along several lines, or two readers agree. Texts that contradict
/// each other in one place are none.
FoundBarcodes findBarcodes(const GreyPicture& page, double pixelsPerMillimetre,
                           const ReaderStep& step);

} // namespace scanlite
