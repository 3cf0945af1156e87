// The exported operations. Everything that can go wrong below becomes a code and a text here.
#include "melder/melder.h"

#include "append.h"
#include "failure.h"
#include "utf16.h"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFSystemError.hh>

#include <exception>
#include <new>

namespace {

struct LastResult {
  int32_t code = MELDER_OK;
  std::u16string text;
};

LastResult& lastResult() {
  static LastResult result;
  return result;
}

void keepResult(int32_t code, const char* text) noexcept {
  LastResult& result = lastResult();
  result.code = code;
  try {
    result.text = melder::toUtf16(text);
  } catch (...) {
    result.text.clear();
  }
}

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

/** Runs one operation; whatever it throws ends here. */
template <typename Operation> int32_t guarded(Operation operation) noexcept {
  try {
    operation();
    keepResult(MELDER_OK, "");
    return 1;
  } catch (const melder::Failure& failure) {
    keepResult(failure.code(), failure.what());
  } catch (const QPDFExc& problem) {
    keepResult(codeOf(problem), problem.what());
  } catch (const QPDFSystemError& problem) {
    keepResult(MELDER_CANNOT_OPEN, problem.what());
  } catch (const std::bad_alloc&) {
    keepResult(MELDER_OUT_OF_MEMORY, "out of memory while appending");
  } catch (const std::exception& problem) {
    keepResult(MELDER_DAMAGED, problem.what());
  } catch (...) {
    keepResult(MELDER_DAMAGED, "unknown error while appending");
  }
  return 0;
}

/** A trailing blank is no part of a file's name. */
std::string pathOf(const char16_t* text) {
  std::string path = melder::toUtf8(text == nullptr ? u"" : text);
  path.erase(path.find_last_not_of(' ') + 1);
  if (path.empty()) {
    throw melder::Failure(MELDER_CANNOT_OPEN, "no file name given");
  }
  return path;
}

} // namespace

int32_t MelderInterfaceVersion(void) {
  return MELDER_INTERFACE_VERSION;
}

int32_t getAppendPDFToFile(const char16_t* addition, const char16_t* existing,
                           const char16_t* /*options*/) {
  return guarded([&] { melder::appendToFile(pathOf(addition), pathOf(existing)); });
}

int32_t getAppendPDFFile(const char16_t* first, const char16_t* second, const char16_t* target) {
  return guarded([&] { melder::appendToNewFile(pathOf(first), pathOf(second), pathOf(target)); });
}

int32_t GetStatus(void) {
  return lastResult().code;
}

void FinishAppends(void) {
  melder::dropWorkingCopies();
}

int32_t MelderLastError(void) {
  return lastResult().code;
}

const char16_t* MelderLastErrorText(void) {
  return lastResult().text.c_str();
}
