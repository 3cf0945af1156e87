// Asks by libcurl. Everything that can go wrong becomes a code and a text here.
#include "updates/updates.h"

#include <QString>

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>

namespace {

constexpr long mostRedirects = 3;
constexpr long usualConnectSeconds = 10;
constexpr long usualTotalSeconds = 30;

/// A code of the interface and a text for a person.
class Failure : public std::runtime_error {
public:
  Failure(int32_t code, const std::string& text) : std::runtime_error(text), m_code(code) {}
  int32_t code() const { return m_code; }

private:
  int32_t m_code;
};

struct Body {
  std::string bytes;
  bool isTooLarge = false;
};

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
    last.text = QString::fromUtf8(text).toStdU16String();
  } catch (...) {
    last.text.clear();
  }
  return code;
}

/// Null is the empty text.
std::string utf8(const char16_t* text) {
  return text != nullptr ? QString::fromUtf16(text).toStdString() : std::string();
}

size_t takeBody(const char* bytes, size_t one, size_t count, void* context) noexcept {
  auto& body = *static_cast<Body*>(context);
  const size_t size = one * count;
  body.isTooLarge = body.bytes.size() + size > UPDATES_MOST_BYTES;
  try {
    body.bytes.append(bytes, body.isTooLarge ? 0 : size);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return body.isTooLarge ? 0 : size;
}

int askStop(void* context, curl_off_t /*downAll*/, curl_off_t /*down*/, curl_off_t /*upAll*/,
            curl_off_t /*up*/) {
  const auto& request = *static_cast<const UpdatesRequest*>(context);
  return request.stop != nullptr && request.stop(request.stopContext) != 0 ? 1 : 0;
}

bool hasControlCharacter(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) <= 0x20 || c == 0x7f; });
}

/// The library would take an address without a scheme for one of http.
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

struct ResultMeaning {
  CURLcode result;
  int32_t code;
  const char* words;
  bool saysAll = false; ///< the library's own words add nothing
};

constexpr const char* notReached = "the server cannot be reached";
constexpr const char* notTrusted = "the server's certificate is not trusted";
constexpr const char* notAsked = "the server cannot be asked";

constexpr ResultMeaning resultMeanings[] = {
    {CURLE_COULDNT_RESOLVE_HOST, UPDATES_NOT_REACHED, notReached},
    {CURLE_COULDNT_RESOLVE_PROXY, UPDATES_NOT_REACHED, notReached},
    {CURLE_COULDNT_CONNECT, UPDATES_NOT_REACHED, notReached},
    {CURLE_PEER_FAILED_VERIFICATION, UPDATES_NOT_TRUSTED, notTrusted},
    {CURLE_SSL_CACERT_BADFILE, UPDATES_NOT_TRUSTED, notTrusted},
    {CURLE_SSL_ISSUER_ERROR, UPDATES_NOT_TRUSTED, notTrusted},
    {CURLE_SSL_INVALIDCERTSTATUS, UPDATES_NOT_TRUSTED, notTrusted},
    {CURLE_OPERATION_TIMEDOUT, UPDATES_TIMED_OUT, "the server did not answer in time"},
    {CURLE_FILESIZE_EXCEEDED, UPDATES_TOO_LARGE, "the server's answer is too large", true},
    {CURLE_UNSUPPORTED_PROTOCOL, UPDATES_NOT_ENCRYPTED,
     "the server sends on to an address that is not encrypted", true},
    {CURLE_ABORTED_BY_CALLBACK, UPDATES_STOPPED, "stopped", true},
    {CURLE_OUT_OF_MEMORY, UPDATES_OUT_OF_MEMORY, notAsked},
};

[[noreturn]] void fail(CURLcode result, const char* detail) {
  ResultMeaning meaning = {result, UPDATES_FAILED, notAsked};
  for (const ResultMeaning& known : resultMeanings) {
    meaning = known.result == result ? known : meaning;
  }
  const std::string words = meaning.words;
  throw Failure(meaning.code,
                meaning.saysAll
                    ? words
                    : words + " (" + (*detail != 0 ? detail : curl_easy_strerror(result)) + ")");
}

void setOptions(CURL* curl, const UpdatesRequest& request) {
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "https");
  curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, "https");
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(curl, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(curl, CURLOPT_MAXREDIRS, mostRedirects);
  if (const std::string certificates = utf8(request.certificates); !certificates.empty()) {
    curl_easy_setopt(curl, CURLOPT_CAINFO, certificates.c_str());
    curl_easy_setopt(curl, CURLOPT_CAPATH, nullptr);
  }
  // Signals would hit the whole program, and a host name that takes long would hold up a stop.
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT,
                   request.connectSeconds > 0 ? long{request.connectSeconds} : usualConnectSeconds);
  curl_easy_setopt(curl, CURLOPT_TIMEOUT,
                   request.totalSeconds > 0 ? long{request.totalSeconds} : usualTotalSeconds);
  curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, askStop);
  curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &request);
  curl_easy_setopt(curl, CURLOPT_MAXFILESIZE, static_cast<long>(UPDATES_MOST_BYTES));
}

std::string fetchDocument(const UpdatesRequest& request) {
  const std::string address = utf8(request.address);
  const std::string version = utf8(request.version);
  checkAddress(address);
  if (hasControlCharacter(version)) {
    throw Failure(UPDATES_FAILED, "a version has neither blanks nor control characters");
  }
  static std::once_flag started;
  std::call_once(started, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
  const auto handle =
      std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>(curl_easy_init(), curl_easy_cleanup);
  CURL* curl = handle.get();
  if (curl == nullptr) {
    throw std::bad_alloc();
  }
  Body body;
  std::array<char, CURL_ERROR_SIZE> detail = {};
  setOptions(curl, request);
  curl_easy_setopt(curl, CURLOPT_URL, address.c_str());
  curl_easy_setopt(curl, CURLOPT_USERAGENT, ("Folivex/" + version).c_str());
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, takeBody);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
  curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, detail.data());
  const CURLcode result = curl_easy_perform(curl);
  if (result != CURLE_OK) {
    fail(body.isTooLarge ? CURLE_FILESIZE_EXCEEDED : result, detail.data());
  }
  long status = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
  if (status != 200) {
    throw Failure(UPDATES_NO_DOCUMENT,
                  "the server answers with the status " + std::to_string(status));
  }
  return std::move(body.bytes);
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
    last.document = fetchDocument(*request);
    last.code = UPDATES_OK;
    last.text.clear();
    *document = {last.document.c_str(), static_cast<int32_t>(last.document.size())};
    return UPDATES_OK;
  } catch (const Failure& failure) {
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
