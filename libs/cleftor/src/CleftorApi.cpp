#include "cleftor/cleftor.h"

#include "Splitter.h"
#include "common/Passwords.h"
#include "common/Paths.h"
#include "common/Utf16.h"

#include <algorithm>
#include <utility>

namespace {

using cleftor::Splitter;
using common::pathText;

Splitter::Passwords passwordsOf(const char16_t* password) {
  return common::passwordCandidates(common::textOf(password));
}

/// Runs one operation; whatever goes wrong in it becomes a code and a text.
template <typename Operation> int32_t guarded(int32_t unforeseen, Operation operation) noexcept {
  Splitter& splitter = Splitter::instance();
  splitter.lastError().clear();
  try {
    operation(splitter);
  } catch (...) {
    return splitter.lastError().keepCaught(unforeseen);
  }
  return CLEFTOR_OK;
}

} // namespace

int32_t CleftorInterfaceVersion() {
  return CLEFTOR_INTERFACE_VERSION;
}

int32_t PdfTextDumpOpenFile(const char16_t* path, const char16_t* password) {
  return guarded(CLEFTOR_CANNOT_OPEN,
                 [&](Splitter& splitter) { splitter.open(pathText(path), passwordsOf(password)); });
}

void BeginOpenFile(const char16_t* path, const char16_t* password) {
  guarded(CLEFTOR_CANNOT_OPEN, [&](Splitter& splitter) {
    splitter.beginOpening(pathText(path), passwordsOf(password));
  });
}

void PdfTextDumpCloseFile() {
  guarded(CLEFTOR_DAMAGED, [](Splitter& splitter) { splitter.close(); });
}

int32_t GetPageCount2() {
  return Splitter::instance().pageCount();
}

int32_t ReserveTarget(const char16_t* target) {
  bool isOurs = true;
  const int32_t code = guarded(CLEFTOR_CANNOT_WRITE, [&](Splitter& splitter) {
    isOurs = splitter.reserve(pathText(target));
  });
  return isOurs ? code : CLEFTOR_TAKEN;
}

void ReleaseTarget(const char16_t* target) {
  guarded(CLEFTOR_OUT_OF_MEMORY, [&](Splitter& splitter) { splitter.release(pathText(target)); });
}

int32_t SplitPdfPages(const char16_t* target, int32_t first, int32_t last, int32_t totalPages) {
  const int32_t code = guarded(CLEFTOR_DAMAGED, [&](Splitter& splitter) {
    splitter.split({pathText(target), {{first, last}}}, totalPages);
  });
  Splitter::instance().setStatus(code);
  return code;
}

int32_t SplitPdfRanges(const char16_t* target, const int32_t* ranges, int32_t count,
                       int32_t totalPages) {
  const int32_t code = guarded(CLEFTOR_DAMAGED, [&](Splitter& splitter) {
    cleftor::RangeOrder order{pathText(target), {}};
    for (int32_t i = 0; ranges != nullptr && i < count; ++i, ranges += 2) {
      order.ranges.push_back({ranges[0], ranges[1]});
    }
    splitter.split(std::move(order), totalPages);
  });
  Splitter::instance().setStatus(code);
  return code;
}

int32_t SplitPdf(const char16_t* source, const char16_t* password, const char16_t* target,
                 int32_t first, int32_t last) {
  const int32_t code = guarded(CLEFTOR_DAMAGED, [&](Splitter& splitter) {
    splitter.splitAlone(pathText(source), passwordsOf(password),
                        {pathText(target), {{first, last}}});
  });
  Splitter::instance().setStatus(code);
  return code;
}

int32_t RepairFile(const char16_t* source, const char16_t* password, const char16_t* target) {
  common::LastError own; // the other one belongs to the caller of the other operations
  try {
    return cleftor::repairFile(pathText(source), passwordsOf(password), pathText(target));
  } catch (...) {
    return own.keepCaught(CLEFTOR_DAMAGED);
  }
}

int32_t GetProcessingStatus() {
  return Splitter::instance().status();
}

int32_t GetProcessingPage() {
  return Splitter::instance().lastWrittenPage();
}

void SetDigests(int32_t on) {
  Splitter::instance().setDigests(on != 0);
}

void SetKeepBookmarks(int32_t keep) {
  Splitter::instance().keepBookmarks(keep != 0);
}

void SetWriteBehind(int32_t on) {
  guarded(CLEFTOR_OUT_OF_MEMORY, [&](Splitter& splitter) { splitter.setWriteBehind(on != 0); });
}

int32_t WaitForOpening(int32_t milliseconds) {
  bool hasEnded = true; // what goes wrong shows when the file is opened
  guarded(CLEFTOR_DAMAGED, [&](Splitter& splitter) {
    hasEnded = splitter.waitForOpening(std::chrono::milliseconds(milliseconds));
  });
  return hasEnded ? 0 : 1;
}

int32_t WaitForRoom(int32_t pages, int32_t milliseconds) {
  bool hasRoom = true; // what goes wrong shows when the range is handed over
  guarded(CLEFTOR_DAMAGED, [&](Splitter& splitter) {
    hasRoom = splitter.waitForRoom(pages, std::chrono::milliseconds(milliseconds));
  });
  return hasRoom ? 0 : 1;
}

int32_t DrainRanges(int32_t milliseconds) {
  int32_t left = 0;
  guarded(CLEFTOR_DAMAGED, [&](Splitter& splitter) {
    std::optional<std::chrono::milliseconds> longest;
    if (milliseconds >= 0) {
      longest = std::chrono::milliseconds(milliseconds);
    }
    left = splitter.drain(longest);
  });
  return left;
}

int32_t TakeFinishedRange(CleftorFinishedRange* finished) {
  bool isTaken = false;
  guarded(CLEFTOR_OUT_OF_MEMORY, [&](Splitter& splitter) {
    const cleftor::FinishedRange* const taken = splitter.takeFinished();
    isTaken = taken != nullptr;
    if (!isTaken || finished == nullptr) {
      return;
    }
    const auto& [device, number, size, changed] = taken->file.identity;
    *finished = {splitter.finishedTarget().c_str(),
                 splitter.finishedReason().c_str(),
                 taken->code,
                 taken->firstPage,
                 taken->lastPage,
                 {device, number, size, changed, taken->file.digest ? 1 : 0, {}}};
    if (taken->file.digest) {
      std::copy(taken->file.digest->begin(), taken->file.digest->end(), finished->file.sha256);
    }
  });
  return isTaken ? 1 : 0;
}

int32_t GetFileFacts() {
  return Splitter::instance().facts();
}

int32_t CleftorLastError() {
  return Splitter::instance().lastError().code();
}

const char16_t* CleftorLastErrorText() {
  return Splitter::instance().lastError().text();
}
