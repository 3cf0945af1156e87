// Text as the libraries take and give it.
#pragma once

#include <QString>

#include <string>

namespace folivex::test {

inline std::u16string wide(const std::string& utf8) {
  return QString::fromStdString(utf8).toStdU16String();
}

inline std::string narrow(const char16_t* text) {
  return QString::fromUtf16(text).toStdString();
}

} // namespace folivex::test
