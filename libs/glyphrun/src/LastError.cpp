#include "LastError.h"

#include "Unicode.h"

namespace glyphrun {

namespace {

struct LastError {
  Result code = Result::Ok;
  std::u16string text;
};

LastError& lastError() {
  thread_local LastError error;
  return error;
}

} // namespace

void setLastError(Result code, const std::string& reason) noexcept {
  LastError& error = lastError();
  error.code = code;
  try {
    error.text = fromUtf8(reason);
  } catch (const std::bad_alloc&) {
    error.text.clear();
  }
}

Result lastErrorCode() noexcept {
  return lastError().code;
}

const char16_t* lastErrorText() noexcept {
  return lastError().text.c_str();
}

} // namespace glyphrun
