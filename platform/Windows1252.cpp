#include "platform/Windows1252.h"

#include <array>

namespace folivex::platform {

namespace {

/// From 0x80 to 0x9F; all other bytes are the code points of the same value.
constexpr char16_t firstMoved = 0x80;
constexpr std::array<char16_t, 32> moved = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

QString fromWindows1252(QByteArrayView bytes) {
  QString text = QString::fromLatin1(bytes);
  for (QChar& c : text) {
    if (c.unicode() >= firstMoved && c.unicode() < firstMoved + moved.size()) {
      c = QChar(moved[static_cast<std::size_t>(c.unicode() - firstMoved)]);
    }
  }
  return text;
}

} // namespace folivex::platform
