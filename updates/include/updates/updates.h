/**
 * UpdatesU: fetches the document that tells of the newest version.
 *
 * A C interface, loaded by name at run time. Paths and addresses are UTF-16, terminated by zero. No
 * exception crosses it. What it hands out belongs to the calling thread; threads do not disturb
 * each other.
 *
 * What leaves the machine is one GET request that names the program and its version, and nothing
 * that tells one installation or person from another: no cookie, no login, no referring page.
 */
#ifndef UPDATES_UPDATES_H
#define UPDATES_UPDATES_H

// NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using): C compilers read this as well.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#else
#include <uchar.h>
#endif

#if defined(_WIN32)
#define UPDATES_API __declspec(dllexport)
#else
#define UPDATES_API __attribute__((visibility("default")))
#endif

#define UPDATES_INTERFACE_VERSION 1

/** A document of more bytes than this is refused. */
#define UPDATES_MOST_BYTES 65536

/** What UpdatesFetch returns. */
enum {
  UPDATES_OK = 0,
  UPDATES_FAILED = -1, /**< for a reason that the text tells */
  UPDATES_OUT_OF_MEMORY = -3,
  UPDATES_BAD_ADDRESS = -4, /**< no https address; nothing was sent */
  UPDATES_NOT_REACHED = -5, /**< no such host, or nobody listens */
  UPDATES_NOT_TRUSTED = -6, /**< the server's certificate is not good for the address */
  UPDATES_TIMED_OUT = -7,
  UPDATES_NO_DOCUMENT = -8, /**< the server answered, but not with a document */
  UPDATES_TOO_LARGE = -9,
  UPDATES_NOT_ENCRYPTED = -10, /**< the server sends on to an address that is not https */
  UPDATES_STOPPED = -11
};

/** Asked about once a second, on the fetching thread, while a fetch runs; non-zero stops it. */
typedef int32_t (*UpdatesStop)(void* context);

/** All pointers are the caller's and must live through the call. */
typedef struct UpdatesRequest {
  const char16_t* address;      /**< "https://..."; must not hold a login */
  const char16_t* version;      /**< of the program: it is named as "Folivex/VERSION" */
  const char16_t* certificates; /**< PEM file of the authorities to trust in place of the
                                     system's; null or empty: the system's */
  int32_t connectSeconds;       /**< most seconds until connected; 0: 10 */
  int32_t totalSeconds;         /**< most seconds for everything; 0: 30 */
  UpdatesStop stop;             /**< may be null */
  void* stopContext;
} UpdatesRequest;

/** The server's document, as it came. */
typedef struct UpdatesDocument {
  const char* bytes; /**< valid until the thread's next fetch; never null after UPDATES_OK */
  int32_t size;      /**< at most UPDATES_MOST_BYTES */
} UpdatesDocument;

UPDATES_API int32_t UpdatesInterfaceVersion(void);

/**
 * Fetches the document at the request's address, following at most three redirects to other https
 * addresses. Certificates and host names are verified; TLS 1.2 is the least. Waits; see
 * totalSeconds. Returns UPDATES_OK or the reason why not, and the document is then empty.
 */
UPDATES_API int32_t UpdatesFetch(const UpdatesRequest* request, UpdatesDocument* document);

/** Code and text of the thread's last failure; English; valid until its next fetch. */
UPDATES_API int32_t UpdatesLastError(void);
UPDATES_API const char16_t* UpdatesLastErrorText(void);

#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-deprecated-headers,modernize-use-using)

#endif
