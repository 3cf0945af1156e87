#include "platform/FileStamp.h"

#include <QFile>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <sys/stat.h>

namespace folivex::platform {

namespace {

using namespace std::chrono;

#if defined(Q_OS_WIN)
using Unit = seconds;
constexpr Unit tick(1);
#else
using Unit = nanoseconds;
constexpr Unit tick = milliseconds(20); // no system's is longer
#endif

} // namespace

bool FileStamp::isOlderThan(system_clock::time_point moment) const {
  return Unit(std::max(written, statusChanged)) + tick < moment.time_since_epoch();
}

std::optional<FileStamp> FileStamp::of(const QString& path) {
#if defined(Q_OS_WIN)
  struct _stat64 found {};
  if (_wstat64(reinterpret_cast<const wchar_t*>(path.utf16()), &found) != 0) {
    return std::nullopt;
  }
  const int64_t written = found.st_mtime;
  const int64_t statusChanged = 0;
#else
  struct stat found {};
  if (::stat(QFile::encodeName(path).constData(), &found) != 0) {
    return std::nullopt;
  }
  constexpr int64_t second = 1'000'000'000;
  const int64_t written = found.st_mtim.tv_sec * second + found.st_mtim.tv_nsec;
  const int64_t statusChanged = found.st_ctim.tv_sec * second + found.st_ctim.tv_nsec;
#endif
  return FileStamp{static_cast<uint64_t>(found.st_dev), static_cast<uint64_t>(found.st_ino),
                   static_cast<uint64_t>(found.st_size), written, statusChanged};
}

std::optional<FileStamp> FileStamp::beforeReading(const QString& path) {
#if !defined(Q_OS_WIN)
  const std::optional<FileStamp> first = of(path);
  const nanoseconds now = system_clock::now().time_since_epoch();
  if (first && std::abs((now - nanoseconds(first->written)).count()) < tick.count()) {
    QThread::usleep(static_cast<unsigned long>(duration_cast<microseconds>(tick).count()));
  }
#endif
  return of(path);
}

} // namespace folivex::platform
