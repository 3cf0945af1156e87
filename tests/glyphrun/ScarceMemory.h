// Memory that the threads of the library can be refused.
#pragma once

namespace glyphruntest {

/// While it lives, only the thread that made it gets memory from operator new.
struct NoMemoryForOtherThreads {
  NoMemoryForOtherThreads();
  ~NoMemoryForOtherThreads();
  NoMemoryForOtherThreads(const NoMemoryForOtherThreads&) = delete;
  NoMemoryForOtherThreads& operator=(const NoMemoryForOtherThreads&) = delete;
};

} // namespace glyphruntest
