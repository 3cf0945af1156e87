// Reads any bytes as a setup file. What was read must be writable and come back the same.
//
// The ordinary tests run it over the stored inputs in fuzz/setup_file/. To search for new ones,
// compile it with clang++ -fsanitize=fuzzer,address,undefined.
#include "engine/setup/SetupFields.h"
#include "engine/setup/SetupFile.h"
#include "platform/TextFile.h"

#include <QBuffer>

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

bool readAll(const QByteArray& bytes, folivex::SplitSetup& setup) {
  auto device = std::make_unique<QBuffer>();
  device->setData(bytes);
  folivex::platform::TextReader reader;
  if (!device->open(QIODevice::ReadOnly) || !reader.open(std::move(device))) {
    return false;
  }
  bool automation = false;
  folivex::SetupTarget target{setup, setup, automation};
  folivex::readSetupLines(reader, target);
  return true;
}

/// The real has six decimals in the file.
bool isNear(double a, double b) {
  return std::abs(a - b) <= 1e-6 * std::max(1.0, std::abs(a));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  folivex::SplitSetup setup;
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  if (!readAll(bytes, setup) || !folivex::keysLostInFile(setup).isEmpty()) {
    return 0;
  }
  folivex::SplitSetup back;
  if (!readAll(folivex::setupFileText(setup).toUtf8(), back) ||
      !isNear(setup.horizWordSpacing, back.horizWordSpacing)) {
    std::abort();
  }
  back.horizWordSpacing = setup.horizWordSpacing;
  if (back != setup) {
    std::abort();
  }
  return 0;
}
