// Time and bytes of one-page appends to one growing file, beside rewriting the whole file each
// time.
//
//   c++ -std=c++20 -O2 -DPOINTERHOLDER_TRANSITION=4 -Ilibs/melder/include
//   libs/melder/bench/append_bench.cpp -o append_bench \
//       -L<build>/bin -lMelderU -lqpdf -Wl,-rpath,<build>/bin
//   append_bench START.pdf PART.pdf FOLDER [APPENDS [REWRITES]]
#include "melder/melder.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

namespace {

namespace fs = std::filesystem;

std::u16string wide(const std::string& text) {
  return fs::path(text).u16string();
}

/** What a program does that knows of nothing better. */
bool rewriteWhole(const std::string& part, const std::string& file) {
  {
    QPDF base;
    QPDF addition;
    base.processFile(file.c_str());
    addition.processFile(part.c_str());
    QPDFPageDocumentHelper pages(base);
    for (auto& page : QPDFPageDocumentHelper(addition).getAllPages()) {
      pages.addPage(page, false);
    }
    QPDFWriter(base, (file + ".new").c_str()).write();
  }
  fs::rename(file + ".new", file);
  return true;
}

void measure(const char* name, const std::string& start, const std::string& file, int appends,
             const std::function<bool()>& append) {
  fs::copy_file(start, file, fs::copy_options::overwrite_existing);
  const auto begin = std::chrono::steady_clock::now();
  const auto sizeAtStart = fs::file_size(file);
  auto last = begin;
  int lastCount = 0;
  for (int done = 1; done <= appends; ++done) {
    if (!append()) {
      std::fprintf(stderr, "%s: append %d failed\n", name, done);
      std::exit(1);
    }
    if (done == 100 || done == 300 || done == 1000 || done == 3000 || done == appends) {
      const auto now = std::chrono::steady_clock::now();
      const std::chrono::duration<double, std::milli> total = now - begin;
      const std::chrono::duration<double, std::milli> recent = now - last;
      std::printf("%-8s %6d appends %9.0f ms in all %8.3f ms each since the last line %10ju bytes "
                  "%7.0f bytes an append\n",
                  name, done, total.count(), recent.count() / (done - lastCount),
                  static_cast<uintmax_t>(fs::file_size(file)),
                  (static_cast<double>(fs::file_size(file)) - static_cast<double>(sizeAtStart)) /
                      done);
      last = now;
      lastCount = done;
    }
  }
}

} // namespace

int main(int count, char** words) {
  if (count < 4) {
    std::fprintf(stderr, "append_bench START.pdf PART.pdf FOLDER [APPENDS [REWRITES]]\n");
    return 2;
  }
  const std::string start = words[1];
  const std::string part = words[2];
  const std::string folder = words[3];
  const int appends = count > 4 ? std::atoi(words[4]) : 1000;
  const std::string ours = folder + "/appended.pdf";
  measure("append", start, ours, appends,
          [&] { return getAppendPDFToFile(wide(part).c_str(), wide(ours).c_str(), u"") != 0; });
  FinishAppends();
  const std::string whole = folder + "/rewritten.pdf";
  measure("rewrite", start, whole, count > 5 ? std::atoi(words[5]) : appends,
          [&] { return rewriteWhole(part, whole); });
  return 0;
}
