// Reads any bytes as a setup file. What was read must be writable and come back the same.
#include "engine/setup/SetupFields.h"
#include "engine/setup/SetupFile.h"
#include "fuzz/Targets.h"
#include "platform/TextFile.h"

#include <QBuffer>

#include <algorithm>
#include <cmath>
#include <memory>

namespace fuzzing {

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

void runSetupFile(const QByteArray& bytes) {
  folivex::SplitSetup setup;
  if (!readAll(bytes, setup) || !folivex::keysLostInFile(setup).isEmpty()) {
    return;
  }
  folivex::SplitSetup back;
  require(readAll(folivex::setupFileText(setup).toUtf8(), back) &&
          isNear(setup.horizWordSpacing, back.horizWordSpacing));
  back.horizWordSpacing = setup.horizWordSpacing;
  require(back == setup);
}

} // namespace fuzzing
