// Any bytes as the file that is appended, and as the file that is appended to. A refused append
// leaves the receiving file as it was, byte for byte.
//
// The ordinary tests run it over the stored inputs in fuzz/melder_append/. To search for new ones,
// compile it with clang++ -fsanitize=fuzzer,address,undefined and link the append library.
#include "melder/melder.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/** One page with a field, a name and a bookmark, and a table that is right. */
constexpr std::string_view kGood =
    "%PDF-1.4\n"
    "1 0 obj\n<</Type/Catalog/Pages 2 0 R/Outlines 4 0 R/AcroForm<</Fields[6 0 R]>>"
    "/Names<</Dests<</Names[(n)[3 0 R/Fit]]>>>>>>\nendobj\n"
    "2 0 obj\n<</Type/Pages/Count 1/Kids[3 0 R]>>\nendobj\n"
    "3 0 obj\n<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Annots[6 0 R]>>\nendobj\n"
    "4 0 obj\n<</First 5 0 R/Last 5 0 R/Count 1>>\nendobj\n"
    "5 0 obj\n<</Title(b)/Parent 4 0 R/Dest(n)>>\nendobj\n"
    "6 0 obj\n<</Subtype/Widget/FT/Tx/T(f)/V(v)/Rect[0 0 1 1]>>\nendobj\n";

std::string goodFile() {
  std::string bytes(kGood);
  std::string table = "xref\n0 7\n0000000000 65535 f \n";
  for (int number = 1; number <= 6; ++number) {
    const std::string place =
        std::to_string(bytes.find('\n' + std::to_string(number) + " 0 obj") + 1);
    table += std::string(10 - place.size(), '0') + place + " 00000 n \n";
  }
  const std::string start = std::to_string(bytes.size());
  return bytes + table + "trailer\n<</Root 1 0 R/Size 7>>\nstartxref\n" + start + "\n%%EOF\n";
}

void put(const fs::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string get(const fs::path& file) {
  std::ostringstream all;
  all << std::ifstream(file, std::ios::binary).rdbuf();
  return all.str();
}

void appendOrLeave(const fs::path& addition, const fs::path& existing) {
  const std::string before = get(existing);
  if (getAppendPDFToFile(addition.u16string().c_str(), existing.u16string().c_str(), u"") == 0 &&
      (get(existing) != before || MelderLastErrorText()[0] == 0)) {
    std::abort();
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fs::path folder = fs::temp_directory_path() / ("melder-fuzz-" + std::to_string(getpid()));
  fs::create_directories(folder);
  const fs::path any = folder / "any.pdf";
  const fs::path good = folder / "good.pdf";
  put(any, {reinterpret_cast<const char*>(data), size});
  put(good, goodFile());
  appendOrLeave(any, good);
  appendOrLeave(any, good);
  put(good, goodFile());
  appendOrLeave(good, any);
  appendOrLeave(good, any);
  fs::remove_all(folder);
  return 0;
}
