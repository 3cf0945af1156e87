#include "common/FileLock.h"

#include "common/Failure.h"
#include "common/FileIdentity.h"
#include "common/Paths.h"

#include <cerrno>
#include <chrono>
#include <optional>
#include <system_error>
#include <thread>

#if defined(_WIN32)
#include "common/WindowsFile.h"
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace common {

namespace {

constexpr auto patience = std::chrono::seconds(30);
constexpr auto pause = std::chrono::milliseconds(5);

/// Whoever may put a link into the folder must not choose the file that changes.
[[noreturn]] void refuseLink(const std::string& path) {
  refuseToWrite(path, "it is a link, which is not followed");
}

} // namespace

FileLock::FileLock(const std::string& path) : FileLock() {
  const auto giveUp = std::chrono::steady_clock::now() + patience;
  std::optional<FileIdentity> before;
  do {
    close();
    before = FileIdentity::of(path, Links::Refused);
    open(path);
    while (!tryLock()) {
      if (std::chrono::steady_clock::now() >= giveUp) {
        refuseToWrite(path, "another program is writing it");
      }
      std::this_thread::sleep_for(pause);
    }
    // What was locked may be a file that was replaced meanwhile.
  } while (FileIdentity::of(path, Links::Refused) != before);
}

FileLock::~FileLock() {
  close();
}

#if defined(_WIN32)

void FileLock::open(const std::string& path) {
  // Others may read and even replace the file meanwhile: only the lock keeps them apart.
  files::Handle file;
  // While it is replaced there is none for a moment.
  constexpr int looks = 200;
  for (int look = 0; look < looks && file == nullptr; ++look) {
    if (look > 0) {
      std::this_thread::sleep_for(pause);
    }
    file = files::openThere(pathOf(path), GENERIC_READ, files::shareAll, Links::Refused);
    if (file == nullptr && GetLastError() != ERROR_FILE_NOT_FOUND) {
      break;
    }
  }
  if (file == nullptr) {
    refuseToOpen(path, std::system_category().message(static_cast<int>(GetLastError())));
  }
  if (files::isLink(file.get())) {
    refuseLink(path);
  }
  m_file = file.release();
}

bool FileLock::tryLock() const {
  OVERLAPPED place{};
  place.OffsetHigh = 0x7FFFFFFF; // beyond any byte, since locked bytes cannot be read
  return LockFileEx(m_file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) ||
         (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING);
}

void FileLock::close() {
  if (m_file != nullptr) {
    CloseHandle(m_file);
    m_file = nullptr;
  }
}

#else

void FileLock::open(const std::string& path) {
  m_file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  if (m_file < 0 && errno == ELOOP) {
    refuseLink(path);
  }
  if (m_file < 0) {
    refuseToOpen(path, std::generic_category().message(errno));
  }
}

bool FileLock::tryLock() const {
  return ::flock(m_file, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR);
}

void FileLock::close() {
  if (m_file >= 0) {
    ::close(m_file);
    m_file = -1;
  }
}

#endif

} // namespace common
