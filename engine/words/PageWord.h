// PageWord: one positioned word of a page.
#pragma once

#include <QStringView>

namespace folivex {

/// Words are used to this length; the rest is cut.
inline constexpr qsizetype maxWordLength = 255;

/// A text that ends with zero, cut to that length; empty for none.
inline QStringView wordText(const char16_t* text) {
  qsizetype length = 0;
  while (text != nullptr && length < maxWordLength && text[length] != u'\0') {
    ++length;
  }
  return {text, length};
}

/// One word of a page. `text` belongs to the word source and is valid until its next word is read.
/// h and v are the text library's points (see glyphrun.h): integers, origin at the top left.
struct PageWord {
  QStringView text;
  int h = 0;
  int v = 0;
};

} // namespace folivex
