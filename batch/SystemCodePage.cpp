#include "batch/SystemCodePage.h"

#include <array>

namespace folivex {

namespace {

/// Windows-1252 from 0x80 to 0x9F; all other bytes are the code points of the same value. The five
/// that stand for nothing map to themselves, as they do on Windows.
constexpr std::array<char16_t, 32> upperControls = {
    u'\u20AC', u'\x81',   u'\u201A', u'\u0192', u'\u201E', u'\u2026', u'\u2020', u'\u2021',
    u'\u02C6', u'\u2030', u'\u0160', u'\u2039', u'\u0152', u'\x8D',   u'\u017D', u'\x8F',
    u'\x90',   u'\u2018', u'\u2019', u'\u201C', u'\u201D', u'\u2022', u'\u2013', u'\u2014',
    u'\u02DC', u'\u2122', u'\u0161', u'\u203A', u'\u0153', u'\x9D',   u'\u017E', u'\u0178'};

} // namespace

SystemCodePage::SystemCodePage(const QByteArray& wholeFile) : m_utf8(wholeFile.isValidUtf8()) {}

QString SystemCodePage::text(QByteArrayView piece) const {
  if (m_utf8) {
    return QString::fromUtf8(piece);
  }
  QString text = QString::fromLatin1(piece);
  for (QChar& c : text) {
    const unsigned index = c.unicode() - 0x80U;
    if (index < upperControls.size()) {
      c = QChar(upperControls[index]);
    }
  }
  return text;
}

} // namespace folivex
