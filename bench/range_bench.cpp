// range_bench FILE FOLDER PAGES: writes the file in ranges of PAGES pages each into the folder.
#include <cleftor/cleftor.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char* argv[]) {
  const int length = argc == 4 ? std::atoi(argv[3]) : 0;
  if (length < 1) {
    std::fputs("usage: range_bench FILE FOLDER PAGES\n", stderr);
    return 2;
  }
  const std::filesystem::path folder(argv[2]);
  if (PdfTextDumpOpenFile(std::filesystem::path(argv[1]).u16string().c_str(), u"") != CLEFTOR_OK) {
    std::fprintf(stderr, "range_bench: %s: failure %d\n", argv[1], CleftorLastError());
    return 1;
  }
  const int pages = GetPageCount2();
  int files = 0;
  for (int first = 1; first <= pages; first += length) {
    const int last = std::min(first + length - 1, pages);
    const std::filesystem::path target = folder / (std::to_string(first) + ".pdf");
    if (SplitPdfPages(target.u16string().c_str(), first, last, pages) != CLEFTOR_OK) {
      std::fprintf(stderr, "range_bench: pages %d-%d: failure %d\n", first, last,
                   CleftorLastError());
      return 1;
    }
    ++files;
  }
  PdfTextDumpCloseFile();
  std::printf("%d files\n", files);
  return 0;
}
