#include "platform/FileStamp.h"

#include "platform/Paths.h"

#include <QFile>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdlib>

#if defined(Q_OS_WIN)
#include <windows.h>
#else
#include <sys/stat.h>
#endif

namespace folivex::platform {

namespace {

using namespace std::chrono;

constexpr milliseconds tick(20); // no system's is longer

#if defined(Q_OS_WIN)
uint64_t joined(DWORD high, DWORD low) {
  return (uint64_t{high} << 32U) | low;
}

/// From hundreds of nanoseconds since 1601.
int64_t sinceUnixBegan(uint64_t ticks) {
  constexpr int64_t to1970 = 116'444'736'000'000'000;
  return (static_cast<int64_t>(ticks) - to1970) * 100;
}

FileStamp stampOf(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION found{};
  FILE_BASIC_INFO times{};
  GetFileInformationByHandle(file, &found);
  GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times);
  return {found.dwVolumeSerialNumber, joined(found.nFileIndexHigh, found.nFileIndexLow),
          joined(found.nFileSizeHigh, found.nFileSizeLow),
          sinceUnixBegan(
              joined(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime)),
          times.ChangeTime.QuadPart == 0
              ? 0
              : sinceUnixBegan(static_cast<uint64_t>(times.ChangeTime.QuadPart))};
}
#endif

} // namespace

bool FileStamp::isOlderThan(system_clock::time_point moment) const {
  return nanoseconds(std::max(written, statusChanged)) + tick < moment.time_since_epoch();
}

std::optional<FileStamp> FileStamp::of(const QString& path) {
#if defined(Q_OS_WIN)
  const HANDLE file =
      CreateFileW(systemPath(path).c_str(), FILE_READ_ATTRIBUTES,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                  FILE_FLAG_BACKUP_SEMANTICS, nullptr); // which opens folders, too
  if (file == INVALID_HANDLE_VALUE) {
    return std::nullopt;
  }
  const FileStamp stamp = stampOf(file);
  CloseHandle(file);
  return stamp;
#else
  struct stat found {};
  if (::stat(QFile::encodeName(path).constData(), &found) != 0) {
    return std::nullopt;
  }
  constexpr int64_t second = 1'000'000'000;
  return FileStamp{static_cast<uint64_t>(found.st_dev), static_cast<uint64_t>(found.st_ino),
                   static_cast<uint64_t>(found.st_size),
                   found.st_mtim.tv_sec * second + found.st_mtim.tv_nsec,
                   found.st_ctim.tv_sec * second + found.st_ctim.tv_nsec};
#endif
}

std::optional<FileStamp> FileStamp::beforeReading(const QString& path) {
  const std::optional<FileStamp> first = of(path);
  const nanoseconds now = system_clock::now().time_since_epoch();
  if (first && std::abs((now - nanoseconds(first->written)).count()) < nanoseconds(tick).count()) {
    QThread::usleep(static_cast<unsigned long>(duration_cast<microseconds>(tick).count()));
  }
  return of(path);
}

} // namespace folivex::platform
