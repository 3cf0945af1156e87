// Pages made for one test each, read through the library's C interface.
#pragma once

#include <tests/support/PdfBuilder.h>

#include <glyphrun/glyphrun.h>

#include <string>
#include <vector>

namespace glyphruntest {

using testpdf::PdfBuilder;

struct Word {
  std::string text; ///< UTF-8
  int h = 0;
  int v = 0;

  bool operator==(const Word&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Word& word);

std::u16string wide(const std::string& utf8);
std::string narrow(const char16_t* text);
std::string repeat(const std::string& text, int times);

/// A path in a folder of the test's own, which is gone when the test program ends.
std::string pathFor(const std::string& name);

/// Resources with Helvetica as /F and Times as /T. Call after other objects or before, as you like.
std::string plainFonts(PdfBuilder& pdf);

/// Opens a file and gives the words of one page in reading order.
std::vector<Word> wordsOf(const std::string& path, int page = 1);
/// The same for a file that holds one page with this content.
std::vector<Word> wordsOfContent(const std::string& content, const std::string& pageEntries = "");
/// Writes the file and gives its words.
std::vector<Word> wordsOf(const PdfBuilder& pdf, int page = 1);

/// Texts alone, with a blank between them.
std::string textOf(const std::vector<Word>& words);

} // namespace glyphruntest
