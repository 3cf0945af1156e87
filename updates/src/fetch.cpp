// The one place that knows libcurl.
#include "fetch.h"

#include "updates/updates.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <new>

namespace updates {

namespace {

constexpr long mostRedirects = 3;

struct Body {
  std::string bytes;
  bool isTooLarge = false;
};

size_t takeBody(const char* bytes, size_t one, size_t count, void* context) noexcept {
  auto& body = *static_cast<Body*>(context);
  const size_t size = one * count;
  if (body.bytes.size() + size > UPDATES_MOST_BYTES) {
    body.isTooLarge = true;
    return 0;
  }
  try {
    body.bytes.append(bytes, size);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return size;
}

int askStop(void* context, curl_off_t /*downAll*/, curl_off_t /*down*/, curl_off_t /*upAll*/,
            curl_off_t /*up*/) {
  const auto& stop = *static_cast<const std::function<bool()>*>(context);
  return stop && stop() ? 1 : 0;
}

void startCurl() {
  static std::once_flag started;
  std::call_once(started, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

bool hasControlCharacter(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) <= 0x20 || c == 0x7f; });
}

// curl would take an address without a scheme for one of http.
void checkAddress(const std::string& address) {
  const auto url =
      std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>(curl_url(), curl_url_cleanup);
  if (!url) {
    throw std::bad_alloc();
  }
  char* scheme = nullptr;
  const bool isGood =
      !hasControlCharacter(address) &&
      curl_url_set(url.get(), CURLUPART_URL, address.c_str(), CURLU_DISALLOW_USER) == CURLUE_OK &&
      curl_url_get(url.get(), CURLUPART_SCHEME, &scheme, 0) == CURLUE_OK &&
      std::string_view(scheme) == "https";
  curl_free(scheme);
  if (!isGood) {
    throw Failure(UPDATES_BAD_ADDRESS, "the address must be of the form https://host/path");
  }
}

int32_t codeOf(CURLcode result) {
  switch (result) {
  case CURLE_COULDNT_RESOLVE_HOST:
  case CURLE_COULDNT_RESOLVE_PROXY:
  case CURLE_COULDNT_CONNECT:
    return UPDATES_NOT_REACHED;
  case CURLE_PEER_FAILED_VERIFICATION:
  case CURLE_SSL_CACERT_BADFILE:
  case CURLE_SSL_ISSUER_ERROR:
  case CURLE_SSL_INVALIDCERTSTATUS:
    return UPDATES_NOT_TRUSTED;
  case CURLE_OPERATION_TIMEDOUT:
    return UPDATES_TIMED_OUT;
  case CURLE_FILESIZE_EXCEEDED:
    return UPDATES_TOO_LARGE;
  case CURLE_UNSUPPORTED_PROTOCOL:
    return UPDATES_NOT_ENCRYPTED;
  case CURLE_ABORTED_BY_CALLBACK:
    return UPDATES_STOPPED;
  case CURLE_OUT_OF_MEMORY:
    return UPDATES_OUT_OF_MEMORY;
  default:
    return UPDATES_FAILED;
  }
}

const char* wordsFor(int32_t code) {
  switch (code) {
  case UPDATES_NOT_REACHED:
    return "the server cannot be reached";
  case UPDATES_NOT_TRUSTED:
    return "the server's certificate is not trusted";
  case UPDATES_TIMED_OUT:
    return "the server did not answer in time";
  case UPDATES_TOO_LARGE:
    return "the server's answer is too large";
  case UPDATES_NOT_ENCRYPTED:
    return "the server sends on to an address that is not encrypted";
  case UPDATES_STOPPED:
    return "stopped";
  default:
    return "the server cannot be asked";
  }
}

[[noreturn]] void fail(CURLcode result, const char* detail, bool isTooLarge) {
  const int32_t code = isTooLarge ? UPDATES_TOO_LARGE : codeOf(result);
  std::string text = wordsFor(code);
  const bool saysAll =
      code == UPDATES_STOPPED || code == UPDATES_TOO_LARGE || code == UPDATES_NOT_ENCRYPTED;
  if (!saysAll) {
    text += std::string(" (") + (*detail != 0 ? detail : curl_easy_strerror(result)) + ")";
  }
  throw Failure(code, text);
}

void forbidAllButHttps(CURL* curl) {
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "https");
  curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, "https");
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(curl, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(curl, CURLOPT_MAXREDIRS, mostRedirects);
}

void limitTime(CURL* curl, const Fetch& fetch) {
  // Signals would hit the whole program, and a host name that takes long would hold up a stop.
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, fetch.connectSeconds);
  curl_easy_setopt(curl, CURLOPT_TIMEOUT, fetch.totalSeconds);
  curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, askStop);
  curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &fetch.stop);
}

} // namespace

std::string fetchDocument(const Fetch& fetch) {
  checkAddress(fetch.address);
  if (hasControlCharacter(fetch.version)) {
    throw Failure(UPDATES_FAILED, "a version has neither blanks nor control characters");
  }
  startCurl();
  const auto handle =
      std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>(curl_easy_init(), curl_easy_cleanup);
  CURL* curl = handle.get();
  if (curl == nullptr) {
    throw std::bad_alloc();
  }
  Body body;
  std::array<char, CURL_ERROR_SIZE> detail = {};
  const std::string agent = "Folivex/" + fetch.version;
  forbidAllButHttps(curl);
  limitTime(curl, fetch);
  if (!fetch.certificates.empty()) {
    curl_easy_setopt(curl, CURLOPT_CAINFO, fetch.certificates.c_str());
    curl_easy_setopt(curl, CURLOPT_CAPATH, nullptr);
  }
  curl_easy_setopt(curl, CURLOPT_URL, fetch.address.c_str());
  curl_easy_setopt(curl, CURLOPT_USERAGENT, agent.c_str());
  curl_easy_setopt(curl, CURLOPT_MAXFILESIZE, static_cast<long>(UPDATES_MOST_BYTES));
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, takeBody);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
  curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, detail.data());
  const CURLcode result = curl_easy_perform(curl);
  if (result != CURLE_OK) {
    fail(result, detail.data(), body.isTooLarge);
  }
  long status = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
  if (status != 200) {
    throw Failure(UPDATES_NO_DOCUMENT,
                  "the server answers with the status " + std::to_string(status));
  }
  return std::move(body.bytes);
}

} // namespace updates
