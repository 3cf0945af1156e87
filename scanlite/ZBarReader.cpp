#include "scanlite/BarcodeReaders.h"

#include <zbar.h>

#include <algorithm>

namespace scanlite {

namespace {

struct Kind {
  zbar::zbar_symbol_type_t type;
  Symbology symbology;
  const char* name;
};

constexpr Kind kinds[] = {
    {zbar::ZBAR_EAN13, Symbology::Checked, "EAN-13"},
    {zbar::ZBAR_EAN8, Symbology::Weak, "EAN-8"},
    {zbar::ZBAR_CODE39, Symbology::Weak, "Code-39"},
    {zbar::ZBAR_CODE93, Symbology::Checked, "Code-93"},
    {zbar::ZBAR_CODE128, Symbology::Checked, "Code-128"},
    {zbar::ZBAR_QRCODE, Symbology::Matrix, "QR-Code"},
};

} // namespace

std::vector<Reading> readWithZBar(const GreyPicture& picture) {
  zbar::ImageScanner scanner;
  scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 0);
  for (const Kind& kind : kinds) {
    scanner.set_config(kind.type, zbar::ZBAR_CFG_ENABLE, 1);
  }
  zbar::Image image(static_cast<unsigned>(picture.width), static_cast<unsigned>(picture.height),
                    "Y800", picture.pixels.data(), picture.pixels.size());
  scanner.scan(image);
  std::vector<Reading> readings;
  for (auto symbol = image.symbol_begin(); symbol != image.symbol_end(); ++symbol) {
    const int points = symbol->get_location_size();
    const auto kind = std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind& known) {
      return known.type == symbol->get_type();
    });
    if (points == 0 || kind == std::end(kinds)) {
      continue;
    }
    Reading reading{kind->symbology,       kind->name,  symbol->get_data(), {},
                    symbol->get_quality(), Reader::ZBar};
    for (int i = 0; i < points; ++i) {
      const int x = symbol->get_location_x(static_cast<unsigned>(i));
      const int y = symbol->get_location_y(static_cast<unsigned>(i));
      const PixelBox point{x, y, x + 1, y + 1};
      reading.box = i == 0 ? point : reading.box.with(point);
    }
    readings.push_back(reading);
  }
  return readings;
}

} // namespace scanlite
