#include "MuContext.h"

#include <cstdlib>

namespace glyphrun {

namespace {

constexpr std::size_t standingCeiling = std::size_t{1536} << 20;
constexpr std::size_t storeBytes = std::size_t{48} << 20;
constexpr std::size_t headerBytes = alignof(std::max_align_t);
constexpr unsigned allocationsPerClock = 256;

static_assert(headerBytes >= sizeof(std::size_t));

std::size_t& sizeOf(void* base) {
  return *static_cast<std::size_t*>(base);
}
void* bodyOf(void* base) {
  return static_cast<char*>(base) + headerBytes;
}
void* baseOf(void* body) {
  return static_cast<char*>(body) - headerBytes;
}

// A damaged file yields warnings by the hundred; what matters is told by the result codes.
void swallow(void*, const char*) {}

// MuPDF completes these maps on first use, in data that all contexts share. Completing them once,
// before a second thread can look, keeps that from being a race.
void completePredefinedMaps(MuContext& mu) {
  static const bool done = [&mu] {
    for (const char* name :
         {"90ms-RKSJ-V",    "90msp-RKSJ-V",   "Add-RKSJ-V",       "B5pc-V",
          "ETen-B5-V",      "ETenms-B5-H",    "ETenms-B5-V",      "EUC-V",
          "Ext-RKSJ-V",     "GB-EUC-V",       "GBK-EUC-H",        "GBK-EUC-V",
          "GBK2K-H",        "GBK2K-V",        "GBKp-EUC-H",       "GBKp-EUC-V",
          "GBpc-EUC-V",     "HKscs-B5-V",     "KSC-EUC-V",        "KSCms-UHC-HW-V",
          "KSCms-UHC-V",    "UniCNS-UCS2-H",  "UniCNS-UCS2-V",    "UniCNS-UTF16-H",
          "UniCNS-UTF16-V", "UniGB-UCS2-H",   "UniGB-UCS2-V",     "UniGB-UTF16-H",
          "UniGB-UTF16-V",  "UniJIS-UCS2-H",  "UniJIS-UCS2-HW-H", "UniJIS-UCS2-HW-V",
          "UniJIS-UCS2-V",  "UniJIS-UTF16-H", "UniJIS-UTF16-V",   "UniKS-UCS2-H",
          "UniKS-UCS2-V",   "UniKS-UTF16-H",  "UniKS-UTF16-V",    "V"}) {
      mu.attempt([&] { pdf_load_system_cmap(mu.raw(), name); });
    }
    return true;
  }();
  static_cast<void>(done);
}

} // namespace

bool MuContext::Budget::refuses(std::size_t bytes) {
  if (bytes > ceiling || used > ceiling - bytes || isStopped() || late) {
    return true;
  }
  if (deadline != std::chrono::steady_clock::time_point::max() && untilClock-- == 0) {
    untilClock = allocationsPerClock;
    late = std::chrono::steady_clock::now() > deadline;
  }
  return late;
}

void* MuContext::allocate(void* user, std::size_t bytes) {
  auto& budget = *static_cast<Budget*>(user);
  if (bytes > SIZE_MAX - headerBytes || budget.refuses(bytes)) {
    return nullptr;
  }
  void* base = std::malloc(bytes + headerBytes);
  if (base == nullptr) {
    return nullptr;
  }
  sizeOf(base) = bytes;
  budget.used += bytes;
  return bodyOf(base);
}

void* MuContext::reallocate(void* user, void* block, std::size_t bytes) {
  if (block == nullptr) {
    return allocate(user, bytes);
  }
  auto& budget = *static_cast<Budget*>(user);
  void* base = baseOf(block);
  const std::size_t before = sizeOf(base);
  if (bytes > SIZE_MAX - headerBytes || (bytes > before && budget.refuses(bytes - before))) {
    return nullptr;
  }
  void* moved = std::realloc(base, bytes + headerBytes);
  if (moved == nullptr) {
    return nullptr;
  }
  sizeOf(moved) = bytes;
  budget.used = budget.used - before + bytes;
  return bodyOf(moved);
}

void MuContext::release(void* user, void* block) {
  if (block == nullptr) {
    return;
  }
  void* base = baseOf(block);
  static_cast<Budget*>(user)->used -= sizeOf(base);
  std::free(base);
}

std::unique_ptr<MuContext> MuContext::create(const std::atomic<bool>* stop) {
  std::unique_ptr<MuContext> self(new MuContext);
  self->m_budget.ceiling = standingCeiling;
  self->m_allocator = {&self->m_budget, allocate, reallocate, release};
  self->m_context = fz_new_context(&self->m_allocator, nullptr, storeBytes);
  if (self->m_context == nullptr) {
    throw std::bad_alloc();
  }
  fz_set_warning_callback(self->m_context, swallow, nullptr);
  fz_set_error_callback(self->m_context, swallow, nullptr);
  completePredefinedMaps(*self);
  // Not before: a context that cannot be made tells so on the terminal.
  self->m_budget.stop = stop;
  return self;
}

MuContext::~MuContext() {
  if (m_context != nullptr) {
    fz_drop_context(m_context);
  }
}

Outcome MuContext::caught() noexcept {
  try {
    m_message = fz_caught_message(m_context);
  } catch (const std::bad_alloc&) {
    m_message.clear();
  }
  return fz_caught(m_context) == FZ_ERROR_MEMORY ? Outcome::OutOfMemory : Outcome::Failed;
}

void MuContext::allow(std::size_t bytes, std::chrono::milliseconds time) {
  m_budget.ceiling = std::min(standingCeiling, m_budget.used + bytes);
  m_budget.deadline = std::chrono::steady_clock::now() + time;
  m_budget.untilClock = allocationsPerClock;
  m_budget.late = false;
}

void MuContext::relax() {
  m_budget.ceiling = standingCeiling;
  m_budget.deadline = std::chrono::steady_clock::time_point::max();
  m_budget.late = false;
}

bool MuContext::overdue() const {
  return m_budget.late || m_budget.isStopped() ||
         std::chrono::steady_clock::now() > m_budget.deadline;
}

} // namespace glyphrun
