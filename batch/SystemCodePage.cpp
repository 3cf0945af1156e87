#include "batch/SystemCodePage.h"

#include "platform/Windows1252.h"

namespace folivex {

SystemCodePage::SystemCodePage(const QByteArray& wholeFile) : m_utf8(wholeFile.isValidUtf8()) {}

QString SystemCodePage::text(QByteArrayView piece) const {
  return m_utf8 ? QString::fromUtf8(piece) : platform::fromWindows1252(piece);
}

} // namespace folivex
