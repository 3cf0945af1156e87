// UTF-16 as the libraries take it.
#pragma once

#include <QString>

namespace folivex {

/// The text's own characters, terminated by zero; valid as long as the text.
inline const char16_t* utf16(const QString& text) {
  return reinterpret_cast<const char16_t*>(text.utf16());
}

} // namespace folivex
