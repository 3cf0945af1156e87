// Opens a PDF given as bytes and walks all that the text library offers.
#pragma once

#include <glyphrun/glyphrun.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>

#include <unistd.h>

inline void walkPdf(const char* bytes, std::size_t size) {
  constexpr int mostPages = 8;
  const std::string name = "/tmp/glyphrun-walk-" + std::to_string(getpid()) + ".pdf";
  if (std::FILE* file = std::fopen(name.c_str(), "wb")) {
    std::fwrite(bytes, 1, size, file);
    std::fclose(file);
  }
  const std::u16string path(name.begin(), name.end());
  const int pages = std::min(GetPageCount(path.c_str(), u""), mostPages);
  PdfTextDumpOpenFile(path.c_str(), u"");
  for (int page = 1; page <= pages; ++page) {
    PdfTextDumpFilePages(page, page);
    DoReverseSort();
    for (int i = -1; i <= getNumWords(); ++i) {
      wordToGet(i);
      static_cast<void>(std::u16string(getWordStr()) + getFont());
    }
  }
  GetOutlineCount();
  PdfTextDumpCloseFile();
  std::remove(name.c_str());
}
