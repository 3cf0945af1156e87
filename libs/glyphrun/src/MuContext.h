// The one place where MuPDF's exceptions (longjmp) and memory meet C++.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <new>
#include <string>

extern "C" {
#include <mupdf/fitz.h>
#include <mupdf/pdf.h>
}

namespace glyphrun {

enum class Outcome { Ok, Failed, OutOfMemory };

/// A MuPDF context of its own with an allocator that refuses to go beyond a ceiling of bytes or
/// past a moment. MuPDF asks for memory all the time, so refusing it is what ends a computation
/// that offers no other way to be stopped. One thread at a time.
class MuContext {
public:
  /// Every allocation fails once `*stop` is true, which any thread may do. Throws std::bad_alloc.
  static std::unique_ptr<MuContext> create(const std::atomic<bool>* stop);
  ~MuContext();
  MuContext(const MuContext&) = delete;
  MuContext& operator=(const MuContext&) = delete;

  fz_context* raw() const { return m_context; }

  /// Runs a body that calls MuPDF. The body must own nothing with a destructor: a MuPDF error
  /// leaves it without running any. Objects that it captures by reference are safe.
  template <typename Body> Outcome attempt(Body&& body) noexcept {
    m_outOfMemory = false;
    fz_try(m_context) {
      runGuarded(body);
    }
    fz_catch(m_context) {
      return caught();
    }
    return m_outOfMemory ? Outcome::OutOfMemory : Outcome::Ok;
  }

  /// Message of the failure that attempt() last returned.
  const std::string& message() const { return m_message; }

  /// Lets the context take `bytes` more than it holds now, for at most `time`.
  void allow(std::size_t bytes, std::chrono::milliseconds time);
  /// Back to the standing limits, without a deadline.
  void relax();
  /// True once the moment set by allow() has passed, or the work was stopped.
  bool overdue() const;

private:
  struct Budget {
    std::size_t used = 0;
    std::size_t ceiling = 0;
    std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
    unsigned untilClock = 0;
    bool late = false;
    const std::atomic<bool>* stop = nullptr;

    bool isStopped() const { return stop != nullptr && stop->load(std::memory_order_relaxed); }
    bool refuses(std::size_t bytes);
  };

  MuContext() = default;

  // A C++ exception must not pass through MuPDF's frames either.
  template <typename Body> void runGuarded(Body& body) noexcept(false) {
    try {
      body();
    } catch (const std::bad_alloc&) {
      m_outOfMemory = true;
    }
  }

  Outcome caught() noexcept;

  static void* allocate(void* user, std::size_t bytes);
  static void* reallocate(void* user, void* block, std::size_t bytes);
  static void release(void* user, void* block);

  fz_context* m_context = nullptr;
  fz_alloc_context m_allocator{};
  Budget m_budget;
  std::string m_message;
  bool m_outOfMemory = false;
};

} // namespace glyphrun
