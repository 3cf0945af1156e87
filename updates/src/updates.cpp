// The exported operations. Everything that can go wrong below becomes a code and a text here.
#include "updates/updates.h"

#include "fetch.h"
#include "utf16.h"

#include <exception>
#include <new>

namespace {

struct LastFetch {
  std::string document;
  int32_t code = UPDATES_OK;
  std::u16string text;
};

LastFetch& lastFetch() {
  thread_local LastFetch fetch;
  return fetch;
}

int32_t keepFailure(int32_t code, const char* text) noexcept {
  LastFetch& last = lastFetch();
  last.code = code;
  try {
    last.text = updates::toUtf16(text);
  } catch (...) {
    last.text.clear();
  }
  return code;
}

updates::Fetch fetchOf(const UpdatesRequest& request) {
  updates::Fetch fetch;
  fetch.address = updates::toUtf8(request.address);
  fetch.version = updates::toUtf8(request.version);
  fetch.certificates = updates::toUtf8(request.certificates);
  if (request.connectSeconds > 0) {
    fetch.connectSeconds = request.connectSeconds;
  }
  if (request.totalSeconds > 0) {
    fetch.totalSeconds = request.totalSeconds;
  }
  if (request.stop != nullptr) {
    fetch.stop = [&request] { return request.stop(request.stopContext) != 0; };
  }
  return fetch;
}

} // namespace

int32_t UpdatesInterfaceVersion(void) {
  return UPDATES_INTERFACE_VERSION;
}

int32_t UpdatesFetch(const UpdatesRequest* request, UpdatesDocument* document) {
  if (document != nullptr) {
    *document = {nullptr, 0};
  }
  if (request == nullptr || document == nullptr) {
    return keepFailure(UPDATES_FAILED, "nothing was asked for");
  }
  try {
    LastFetch& last = lastFetch();
    last.document = updates::fetchDocument(fetchOf(*request));
    last.code = UPDATES_OK;
    last.text.clear();
    *document = {last.document.c_str(), static_cast<int32_t>(last.document.size())};
    return UPDATES_OK;
  } catch (const updates::Failure& failure) {
    return keepFailure(failure.code(), failure.what());
  } catch (const std::bad_alloc&) {
    return keepFailure(UPDATES_OUT_OF_MEMORY, "out of memory while asking the server");
  } catch (const std::exception& problem) {
    return keepFailure(UPDATES_FAILED, problem.what());
  } catch (...) {
    return keepFailure(UPDATES_FAILED, "unknown error while asking the server");
  }
}

int32_t UpdatesLastError(void) {
  return lastFetch().code;
}

const char16_t* UpdatesLastErrorText(void) {
  return lastFetch().text.c_str();
}
