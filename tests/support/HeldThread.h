// HeldThread: a thread that stands still until the test lets it go.
#pragma once

#include <QDir>
#include <QFile>
#include <QSet>
#include <QString>
#include <QThread>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <poll.h>
#include <unistd.h>

namespace folivex::test {

/// Stops the thread that `start` makes once it has nothing to do. One at a time.
class HeldThread {
public:
  explicit HeldThread(const std::function<void()>& start) {
    const QSet<QString> before = threads();
    start();
    const QString made = (threads() - before).values().value(0);
    // While it sleeps it holds no lock that others need.
    while (!isAsleep(made)) {
      QThread::yieldCurrentThread();
    }
    if (pipe(s_release) != 0 || pipe(s_held) != 0) {
      std::abort();
    }
    m_handler = std::signal(SIGUSR2, hold);
    tgkill(getpid(), made.toInt(), SIGUSR2);
    takeByte(s_held[0]);
  }
  HeldThread(const HeldThread&) = delete;
  HeldThread& operator=(const HeldThread&) = delete;
  ~HeldThread() {
    letGo();
    takeByte(s_held[0]);
    std::signal(SIGUSR2, m_handler);
    for (const int end : {s_release[0], s_release[1], s_held[0], s_held[1]}) {
      close(end);
    }
  }

  void letGo() {
    if (!m_isFree) {
      putByte(s_release[1]);
    }
    m_isFree = true;
  }
  bool isFree() const { return m_isFree; }

  /// Nobody let it go for so long that whoever should have is waiting for it.
  static bool wasForgotten() { return s_forgotten != 0; }

private:
  static QSet<QString> threads() {
    const QStringList numbers =
        QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return {numbers.begin(), numbers.end()};
  }
  static bool isAsleep(const QString& thread) {
    QFile file(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(") S ");
  }
  static void putByte(int end) {
    if (write(end, "", 1) != 1) {
      std::abort();
    }
  }
  static void takeByte(int end) {
    char byte = 0;
    if (read(end, &byte, 1) != 1) {
      std::abort();
    }
  }
  static void hold(int) {
    constexpr int patienceMs = 60'000;
    putByte(s_held[1]);
    pollfd released{s_release[0], POLLIN, 0};
    s_forgotten = poll(&released, 1, patienceMs) == 0 ? 1 : 0;
    putByte(s_held[1]);
  }

  static inline int s_release[2];
  static inline int s_held[2];
  static inline volatile std::sig_atomic_t s_forgotten = 0;
  void (*m_handler)(int) = nullptr;
  bool m_isFree = false;
};

} // namespace folivex::test
