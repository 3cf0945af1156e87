#include "common/Failure.h"

#include "common/Utf16.h"

#include <exception>
#include <new>

namespace common {

void refuseToOpen(const std::string& path, const std::string& reason) {
  throw Failure(cannotOpen, "Unable to open \"" + path + "\": " + reason);
}

void refuseToWrite(const std::string& path, const std::string& reason) {
  throw Failure(cannotWrite, "Unable to write \"" + path + "\": " + reason);
}

void LastError::set(int32_t code, std::string_view text) noexcept {
  m_code = code;
  try {
    m_text = toUtf16(text);
  } catch (const std::bad_alloc&) {
    m_text.clear();
  }
}

int32_t LastError::keepCaught(int32_t unforeseen) noexcept {
  try {
    throw;
  } catch (const Failure& failure) {
    set(failure.code(), failure.what());
  } catch (const std::bad_alloc&) {
    set(outOfMemory, "Out of memory");
  } catch (const std::exception& error) {
    set(unforeseen, error.what());
  } catch (...) {
    set(unforeseen, "Unknown fault");
  }
  return m_code;
}

} // namespace common
