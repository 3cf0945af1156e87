#include "ScarceMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

/// The thread that gets memory; none while all do.
std::atomic<std::thread::id> provided;

} // namespace

// The library's own calls end here as well: a program's operators go before those of its libraries.
void* operator new(std::size_t bytes, const std::nothrow_t& /*unused*/) noexcept {
  const std::thread::id only = provided;
  const bool isRefused = only != std::thread::id() && only != std::this_thread::get_id();
  return isRefused ? nullptr : std::malloc(bytes);
}

void* operator new(std::size_t bytes) {
  void* block = operator new(bytes, std::nothrow);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

namespace glyphruntest {

NoMemoryForOtherThreads::NoMemoryForOtherThreads() {
  provided = std::this_thread::get_id();
}

NoMemoryForOtherThreads::~NoMemoryForOtherThreads() {
  provided = std::thread::id();
}

} // namespace glyphruntest
