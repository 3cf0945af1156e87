#include "platform/DiskSync.h"

#include "platform/FileSystem.h"

#include <QFileInfo>
#include <QSet>

#include <chrono>
#include <future>
#include <set>

#if defined(Q_OS_LINUX)
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

#if defined(Q_OS_LINUX)

/// Whole file systems at once: thousands of files one by one would take minutes.
QString syncAll(const QStringList& files) {
  QSet<QString> folders;
  for (const QString& file : files) {
    folders.insert(QFileInfo(file).path()); // as it was written: no byte of a name is lost
  }
  std::set<dev_t> done;
  for (const QString& folder : folders) {
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    struct stat status {};
    const bool isDone = descriptor >= 0 && ::fstat(descriptor, &status) == 0 &&
                        (!done.insert(status.st_dev).second || ::syncfs(descriptor) == 0);
    const int error = errno;
    if (descriptor >= 0) {
      ::close(descriptor);
    }
    if (!isDone) {
      return folder + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(error));
    }
  }
  return {};
}

#else

QString syncAll(const QStringList& files) {
  for (const QString& name : files) {
    QFile file(name);
    FileFailure failure;
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
      return name + QStringLiteral(": ") + file.errorString();
    }
    if (!syncToDisk(file, failure)) {
      return name + QStringLiteral(": ") + failure.text;
    }
  }
  return {};
}

#endif

} // namespace

QString bringToDisk(const QStringList& files, const std::function<void()>& tick) {
  constexpr auto step = std::chrono::milliseconds(20);
  std::future<QString> result = std::async(std::launch::async, [&files] { return syncAll(files); });
  while (result.wait_for(step) != std::future_status::ready) {
    tick();
  }
  return result.get();
}

} // namespace folivex::platform
