// SystemCodePage: what the bytes of an 8-bit text file mean.
#pragma once

#include <QByteArray>
#include <QString>

namespace folivex {

/// Decides once for all bytes of a file, then reads it piece by piece: UTF-8 when the whole file is
/// valid as such, else Windows-1252.
class SystemCodePage {
public:
  explicit SystemCodePage(const QByteArray& wholeFile);

  QString text(QByteArrayView piece) const;

private:
  bool m_utf8;
};

} // namespace folivex
