// The exported operations. Everything that can go wrong below becomes a code and a text here.
#include "Append.h"
#include "common/Failure.h"
#include "common/Paths.h"
#include "melder/melder.h"

#include <qpdf/QPDFExc.hh>

#include <algorithm>

namespace {

static_assert(MELDER_OUT_OF_MEMORY == common::outOfMemory);

common::LastError& lastError() {
  // Never destroyed: at the end of a process those who use it may go later than it would.
  static auto& last = *new common::LastError;
  return last;
}

melder::Digest digests = melder::Digest::LeftOut;

melder::Written lastWritten;

int32_t codeOf(const QPDFExc& problem) {
  switch (problem.getErrorCode()) {
  case qpdf_e_password:
    return MELDER_WRONG_PASSWORD;
  case qpdf_e_system:
    return MELDER_CANNOT_OPEN;
  default:
    return MELDER_DAMAGED;
  }
}

/// Runs one operation; whatever it throws ends here.
template <typename Operation> int32_t guarded(Operation operation) noexcept {
  lastError().clear();
  try {
    operation();
    return 1;
  } catch (const QPDFExc& problem) {
    lastError().set(codeOf(problem), problem.what());
  } catch (...) {
    lastError().keepCaught(MELDER_DAMAGED);
  }
  return 0;
}

std::string pathOf(const char16_t* text) {
  std::string path = common::pathText(text);
  if (path.empty()) {
    throw common::Failure(MELDER_CANNOT_OPEN, "no file name given");
  }
  return path;
}

} // namespace

int32_t MelderInterfaceVersion(void) {
  return MELDER_INTERFACE_VERSION;
}

int32_t getAppendPDFToFile(const char16_t* addition, const char16_t* existing,
                           const char16_t* /*options*/) {
  return guarded(
      [&] { lastWritten = melder::appendToFile(pathOf(addition), pathOf(existing), digests); });
}

int32_t getAppendPDFFile(const char16_t* first, const char16_t* second, const char16_t* target) {
  return guarded([&] {
    lastWritten = melder::appendToNewFile(pathOf(first), pathOf(second), pathOf(target), digests);
  });
}

void SetDigests(int32_t on) {
  digests = on != 0 ? melder::Digest::Made : melder::Digest::LeftOut;
}

void GetWrittenFile(MelderWrittenFile* written) {
  if (written == nullptr) {
    return;
  }
  const auto& [identity, digest] = lastWritten;
  *written = {identity.device,  identity.number, identity.size,
              identity.changed, digest ? 1 : 0,  {}};
  if (digest) {
    std::copy(digest->begin(), digest->end(), written->sha256);
  }
}

int32_t GetStatus(void) {
  return lastError().code();
}

int32_t MelderLastError(void) {
  return lastError().code();
}

const char16_t* MelderLastErrorText(void) {
  return lastError().text();
}
