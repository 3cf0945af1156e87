// SmallDisk: no file grows beyond a size, as on a disk that is full.
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace folivex::test {

/// Holds for this process and the programs it starts, until destruction.
class SmallDisk {
public:
  explicit SmallDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    rlimit limit = m_before;
    limit.rlim_cur = bytes;
    m_handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }

private:
  rlimit m_before = {};
  void (*m_handler)(int) = nullptr;
};

} // namespace folivex::test
