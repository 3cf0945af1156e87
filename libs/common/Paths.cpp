#include "common/Paths.h"

#include "common/Failure.h"
#include "common/Utf16.h"

#include <cerrno>
#include <system_error>

#if defined(_WIN32)
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace common {

std::string pathText(const char16_t* path) {
  std::string text = toUtf8(textOf(path));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

void requireWritable(const std::string& path) {
#if defined(_WIN32)
  constexpr int writeAccess = 2;
  const bool isWritable = _waccess(pathOf(path).c_str(), writeAccess) == 0;
#else
  const bool isWritable = ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
#endif
  if (!isWritable) {
    refuseToWrite(path, std::generic_category().message(errno));
  }
}

} // namespace common
