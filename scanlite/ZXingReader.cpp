#include "scanlite/BarcodeReaders.h"

#define ZX_USE_UTF8 // what the library's header asks for
#include <ZXing/ReadBarcode.h>

#include <algorithm>

namespace scanlite {

namespace {

using ZXing::BarcodeFormat;

struct Kind {
  BarcodeFormat format;
  Symbology symbology;
  const char* name;
};

// Left out: symbologies of bars that give parts of themselves as a whole (interleaved 2 of 5,
// Codabar, UPC-E).
constexpr Kind kinds[] = {
    {BarcodeFormat::EAN13, Symbology::Checked, "EAN-13"},
    {BarcodeFormat::EAN8, Symbology::Weak, "EAN-8"},
    {BarcodeFormat::Code39, Symbology::Weak, "Code-39"},
    {BarcodeFormat::Code93, Symbology::Checked, "Code-93"},
    {BarcodeFormat::Code128, Symbology::Checked, "Code-128"},
    {BarcodeFormat::QRCode, Symbology::Matrix, "QR-Code"},
    {BarcodeFormat::DataMatrix, Symbology::Matrix, "Data-Matrix"},
    {BarcodeFormat::Aztec, Symbology::Matrix, "Aztec"},
    {BarcodeFormat::PDF417, Symbology::Matrix, "PDF417"},
};

PixelBox boxOf(const ZXing::Position& position) {
  const auto [left, right] =
      std::minmax({position[0].x, position[1].x, position[2].x, position[3].x});
  const auto [top, bottom] =
      std::minmax({position[0].y, position[1].y, position[2].y, position[3].y});
  return {left, top, right + 1, bottom + 1};
}

} // namespace

std::vector<Reading> readWithZXing(const GreyPicture& picture) {
  ZXing::BarcodeFormats formats;
  for (const Kind& kind : kinds) {
    formats |= kind.format;
  }
  // Without smaller copies of the picture: comparing what was found in them aborts in version 1.4.
  const auto hints = ZXing::DecodeHints().setFormats(formats).setTryDownscale(false);
  std::vector<Reading> readings;
  const ZXing::ImageView view(picture.pixels.data(), picture.width, picture.height,
                              ZXing::ImageFormat::Lum);
  for (const ZXing::Result& result : ZXing::ReadBarcodes(view, hints)) {
    const auto kind = std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind& known) {
      return known.format == result.format();
    });
    if (kind != std::end(kinds)) {
      readings.push_back({kind->symbology, kind->name, result.text(), boxOf(result.position()),
                          result.lineCount(), Reader::ZXing});
    }
  }
  return readings;
}

} // namespace scanlite
