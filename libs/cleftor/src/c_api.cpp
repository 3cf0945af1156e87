#include "cleftor/cleftor.h"

#include "Session.h"
#include "common/Passwords.h"
#include "common/Paths.h"
#include "common/Utf16.h"

#include <utility>

namespace {

using cleftor::Session;
using common::pathText;

Session::Passwords passwordsOf(const char16_t* password) {
  return common::passwordCandidates(common::textOf(password));
}

/** Runs one operation; whatever goes wrong in it becomes a code and a text. */
template <typename Operation> int32_t guarded(int32_t unforeseen, Operation operation) noexcept {
  Session& session = Session::instance();
  session.lastError().clear();
  try {
    operation(session);
  } catch (...) {
    return session.lastError().keepCaught(unforeseen);
  }
  return CLEFTOR_OK;
}

} // namespace

int32_t CleftorInterfaceVersion() {
  return CLEFTOR_INTERFACE_VERSION;
}

int32_t PdfTextDumpOpenFile(const char16_t* path, const char16_t* password) {
  return guarded(CLEFTOR_CANNOT_OPEN,
                 [&](Session& session) { session.open(pathText(path), passwordsOf(password)); });
}

void BeginOpenFile(const char16_t* path, const char16_t* password) {
  guarded(CLEFTOR_CANNOT_OPEN,
          [&](Session& session) { session.beginOpening(pathText(path), passwordsOf(password)); });
}

void PdfTextDumpCloseFile() {
  guarded(CLEFTOR_DAMAGED, [](Session& session) { session.close(); });
}

int32_t GetPageCount2() {
  return Session::instance().pageCount();
}

int32_t SplitPdfPages(const char16_t* target, int32_t first, int32_t last, int32_t totalPages) {
  const int32_t code = guarded(CLEFTOR_DAMAGED, [&](Session& session) {
    session.split({pathText(target), {{first, last}}, {}}, totalPages);
  });
  Session::instance().setStatus(code);
  return code;
}

int32_t SplitPdfRanges(const char16_t* target, const int32_t* ranges, int32_t count,
                       int32_t totalPages) {
  const int32_t code = guarded(CLEFTOR_DAMAGED, [&](Session& session) {
    cleftor::RangeOrder order{pathText(target), {}, {}};
    for (int32_t i = 0; ranges != nullptr && i < count; ++i, ranges += 2) {
      order.ranges.push_back({ranges[0], ranges[1]});
    }
    session.split(std::move(order), totalPages);
  });
  Session::instance().setStatus(code);
  return code;
}

int32_t SplitPdf(const char16_t* source, const char16_t* password, const char16_t* target,
                 int32_t first, int32_t last) {
  const int32_t code = guarded(CLEFTOR_DAMAGED, [&](Session& session) {
    session.splitAlone(pathText(source), passwordsOf(password),
                       {pathText(target), {{first, last}}, {}});
  });
  Session::instance().setStatus(code);
  return code;
}

int32_t GetProcessingStatus() {
  return Session::instance().status();
}

int32_t GetProcessingPage() {
  return Session::instance().lastWrittenPage();
}

void SetKeepBookmarks(int32_t keep) {
  Session::instance().keepBookmarks(keep != 0);
}

void SetPageRotation(int32_t degrees) {
  Session::instance().setRotation(degrees);
}

void SetWriteBehind(int32_t on) {
  guarded(CLEFTOR_OUT_OF_MEMORY, [&](Session& session) { session.setWriteBehind(on != 0); });
}

int32_t WaitForRoom(int32_t pages, int32_t milliseconds) {
  bool hasRoom = true; // what goes wrong shows when the range is handed over
  guarded(CLEFTOR_DAMAGED, [&](Session& session) {
    hasRoom = session.waitForRoom(pages, std::chrono::milliseconds(milliseconds));
  });
  return hasRoom ? 0 : 1;
}

int32_t DrainRanges(int32_t milliseconds) {
  int32_t left = 0;
  guarded(CLEFTOR_DAMAGED, [&](Session& session) {
    std::optional<std::chrono::milliseconds> longest;
    if (milliseconds >= 0) {
      longest = std::chrono::milliseconds(milliseconds);
    }
    left = session.drain(longest);
  });
  return left;
}

int32_t TakeFailedRange(CleftorFailedRange* failed) {
  int32_t code = CLEFTOR_OK;
  const int32_t fault = guarded(CLEFTOR_OUT_OF_MEMORY, [&](Session& session) {
    const cleftor::FailedRange* const taken = session.takeFailure();
    if (taken == nullptr) {
      return;
    }
    code = taken->code;
    if (failed != nullptr) {
      *failed = {session.failedTarget().c_str(), session.failedReason().c_str(),
                 taken->order.firstPage(), taken->order.lastPage()};
    }
  });
  return fault == CLEFTOR_OK ? code : fault;
}

int32_t GetFileFacts() {
  return Session::instance().facts();
}

int32_t CleftorLastError() {
  return Session::instance().lastError().code();
}

const char16_t* CleftorLastErrorText() {
  return Session::instance().lastError().text();
}
