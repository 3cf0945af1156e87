// The program that searches: libFuzzer's main, around the target that FOLIVEX_FUZZ_TARGET names.
#include "fuzz/Targets.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

const fuzzing::Target* chosen = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  static const QCoreApplication application(*argc, *argv);
  chosen = fuzzing::targetNamed(qgetenv("FOLIVEX_FUZZ_TARGET"));
  if (chosen == nullptr) {
    std::fputs("FOLIVEX_FUZZ_TARGET must be one of:\n", stderr);
    for (const fuzzing::Target& target : fuzzing::targets()) {
      std::fprintf(stderr, "%s\n", target.name);
    }
    std::exit(1);
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  chosen->run(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
  return 0;
}
