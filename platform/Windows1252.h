// Windows1252: the 8-bit text of older programs.
#pragma once

#include <QByteArrayView>
#include <QString>

namespace folivex::platform {

/// Every byte is a character: none is refused. The five bytes that stand for nothing become the
/// control characters of the same value, as they do on Windows.
QString fromWindows1252(QByteArrayView bytes);

} // namespace folivex::platform
