// Fuzz target of the text library: open and walk. Build with clang, -fsanitize=fuzzer,address, and
// link GlyphrunU; fuzz/glyphrun_walk holds inputs to start from.

#include "glyphrun_walk.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  walkPdf(reinterpret_cast<const char*>(data), size);
  return 0;
}
