// words_bench FILE: reads every word of every page the way the split engine does.
#include <glyphrun/glyphrun.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

namespace {

// Each word's text and position go into it, so that nothing of the reading can be left out.
std::uint64_t mixed(std::uint64_t sum, std::uint64_t value) {
  return (sum ^ value) * 1099511628211ULL;
}

struct Totals {
  std::uint64_t words = 0;
  std::uint64_t sum = 14695981039346656037ULL;
};

void readPage(int page, Totals& totals) {
  PdfTextDumpFilePages(page, page);
  const int count = getNumWords();
  DoReverseSort();
  for (int index = 0; index < count; ++index) {
    wordToGet(index);
    totals.sum = mixed(totals.sum, static_cast<std::uint32_t>(getWordX()));
    totals.sum = mixed(totals.sum, static_cast<std::uint32_t>(getWordY()));
    for (const char16_t* text = getWordStr(); *text != 0; ++text) {
      totals.sum = mixed(totals.sum, *text);
    }
  }
  totals.words += static_cast<std::uint64_t>(count);
}

int readFile(const char* file) {
  const std::u16string path = std::filesystem::path(file).u16string();
  const int pages = GetPageCount(path.c_str(), u"");
  PdfTextDumpOpenFile(path.c_str(), u"");
  if (pages == 0 || GetProcessingStatus() != GLYPHRUN_OK) {
    std::fprintf(stderr, "words_bench: %s: failure %d\n", file, GlyphrunLastError());
    return 1;
  }
  Totals totals;
  for (int page = 1; page <= pages; ++page) {
    readPage(page, totals);
    if (GetProcessingStatus() != GLYPHRUN_OK) {
      std::fprintf(stderr, "words_bench: %s: page %d: failure %d\n", file, page,
                   GlyphrunLastError());
      return 1;
    }
  }
  PdfTextDumpCloseFile();
  std::printf("%d pages, %llu words, sum %016llx\n", pages,
              static_cast<unsigned long long>(totals.words),
              static_cast<unsigned long long>(totals.sum));
  return 0;
}

} // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::fputs("usage: words_bench FILE\n", stderr);
    return 2;
  }
  try {
    return readFile(argv[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "words_bench: %s: %s\n", argv[1], error.what());
    return 1;
  }
}
