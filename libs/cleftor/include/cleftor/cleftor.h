/**
 * CleftorU: page ranges of one PDF to new files.
 *
 * A C interface, loaded by name at run time. Text is UTF-16, terminated by zero. No exception
 * crosses it. Page numbers count from 1. There is one state for the whole process (the open source
 * and the settings); it belongs to one thread.
 *
 * The source is opened once and read only; every range starts from an empty document and takes what
 * its pages show and do: annotations, form fields with their values (a field whose widgets stand on
 * several pages of the range stays one field), links inside the range in both directions, named
 * destinations, page boxes, rotation, page labels, document information, the tags of a tagged
 * document, and the bookmarks into the range when asked. Links out of the range lead nowhere.
 * Nothing of other pages is carried along. Outputs of a protected source are unprotected. They
 * claim a standard (PDF/A and the like) only as far as the source does and they keep to it.
 */
#ifndef CLEFTOR_CLEFTOR_H
#define CLEFTOR_CLEFTOR_H

// NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using): C compilers read this as well.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#else
#include <uchar.h>
#endif

#if defined(_WIN32)
#define CLEFTOR_API __declspec(dllexport)
#else
#define CLEFTOR_API __attribute__((visibility("default")))
#endif

#define CLEFTOR_INTERFACE_VERSION 3

/** Results. Zero is success, every failure is negative. */
enum {
  CLEFTOR_OK = 0,
  CLEFTOR_NOT_OPEN = -1,
  CLEFTOR_BAD_RANGE =
      -2, /**< pages that the source does not have, or a page count that is not its own */
  CLEFTOR_OUT_OF_MEMORY = -3,
  CLEFTOR_CANNOT_OPEN =
      -4, /**< the source cannot be opened, whatever the reason; see CleftorLastErrorText */
  CLEFTOR_CANNOT_WRITE =
      -5, /**< the target could not be written; nothing is left at its place that was not there */
  CLEFTOR_DAMAGED = -8,        /**< the source's pages could not be copied */
  CLEFTOR_TAKEN = -9,          /**< a target that is there, or that another process has reserved */
  CLEFTOR_SOURCE_CHANGED = -10 /**< the source is not the file any more that was opened */
};

/** Facts about the open source, combined by "or". */
enum { CLEFTOR_FILE_ENCRYPTED = 1, CLEFTOR_FILE_REPAIRED = 4 };

CLEFTOR_API int32_t CleftorInterfaceVersion(void);

/**
 * Opens the source, and closes the one that was open. Returns CLEFTOR_OK or CLEFTOR_CANNOT_OPEN
 * (-4). The password is tried as given, in each encoding that fits it, and without its trailing
 * blank.
 */
CLEFTOR_API int32_t PdfTextDumpOpenFile(const char16_t* path, const char16_t* password);

/**
 * Begins to open a source on another thread and returns at once: the PdfTextDumpOpenFile of the
 * same path and password that follows waits for it and tells how it went. Closes what is open.
 */
CLEFTOR_API void BeginOpenFile(const char16_t* path, const char16_t* password);

/** Waits until the opening that was begun has ended, but at most the given milliseconds. Returns 0
 * when it has, or none was begun, else 1. */
CLEFTOR_API int32_t WaitForOpening(int32_t milliseconds);

/** Closes the source when every range handed over is written; gives back what is still reserved. */
CLEFTOR_API void PdfTextDumpCloseFile(void);

/** Page count of the open source, 0 without one. */
CLEFTOR_API int32_t GetPageCount2(void);

/**
 * Takes a target for this process, among all that ask here: nothing may be at the place, and no
 * other process gets it until it is written, given back or this process ends. Needs no open source.
 * CLEFTOR_TAKEN: something is there, or it was taken before. CLEFTOR_CANNOT_WRITE: it cannot be
 * taken for another reason; writing it will fail for the same one.
 */
CLEFTOR_API int32_t ReserveTarget(const char16_t* target);

/** Gives a reserved target back that is not handed over to be written. */
CLEFTOR_API void ReleaseTarget(const char16_t* target);

/**
 * Writes pages first..last, inclusive, to a new file at target, which appears whole or not at all.
 * A file that was there is replaced, unless the target was reserved: what came there meanwhile
 * stays, and the range fails. It fails too when the source is another one than when it was opened.
 * totalPages is the page count that the caller knows; when it is not the source's own the range is
 * refused.
 */
CLEFTOR_API int32_t SplitPdfPages(const char16_t* target, int32_t first, int32_t last,
                                  int32_t totalPages);

/**
 * Writes several ranges, in the order given, to one new file: as SplitPdfPages, for which they are
 * one range. ranges holds count pairs of a first and a last page, counted from 1, both included. A
 * page of two ranges stands in the output twice, with the same annotations; links lead to the first
 * of the two. TakeFinishedRange tells the first page of the first range and the last page of the
 * last.
 */
CLEFTOR_API int32_t SplitPdfRanges(const char16_t* target, const int32_t* ranges, int32_t count,
                                   int32_t totalPages);

/** Opens a source, writes pages first..last to target and closes the source again; settings as set.
 */
CLEFTOR_API int32_t SplitPdf(const char16_t* source, const char16_t* password,
                             const char16_t* target, int32_t first, int32_t last);

/**
 * Writes a sound and unprotected copy of a file, with all its pages and bookmarks, over the file at
 * target, whose owner and mode it keeps. Returns the number of pages, or a failure that leaves the
 * target as it was; no other operation tells of it. For any thread.
 */
CLEFTOR_API int32_t RepairFile(const char16_t* source, const char16_t* password,
                               const char16_t* target);

/** Result of the last range. */
CLEFTOR_API int32_t GetProcessingStatus(void);

/** Last page of the last range that was written, 0 before the first. */
CLEFTOR_API int32_t GetProcessingPage(void);

/** 1: TakeFinishedRange tells the digests of what was written. 0 (the start value): it does not. */
CLEFTOR_API void SetDigests(int32_t on);

/** 1: outputs carry the bookmarks that lead into their range. 0 (the start value): none. */
CLEFTOR_API void SetKeepBookmarks(int32_t keep);

/**
 * 1: SplitPdfPages checks the range, hands it to a thread of the library's own and returns
 * CLEFTOR_OK; it waits only while 64 ranges or 256 pages are waiting. 0 (the start value): every
 * range is written when the call returns. Switching it off waits for what was handed over; do so
 * before the library is unloaded.
 *
 * Ranges are begun in the order of the calls, each with the settings of its call; of two with one
 * target the later stays. When the caller keeps waiting, a second thread opens the source once more
 * and writes beside the first. A target is there when DrainRanges has returned 0,
 * or PdfTextDumpCloseFile or a new PdfTextDumpOpenFile has returned, unless TakeFinishedRange tells
 * otherwise: whoever reads, renames or appends to outputs drains first. GetProcessingStatus then is
 * the result of handing over, GetProcessingPage that of the writing.
 */
CLEFTOR_API void SetWriteBehind(int32_t on);

/**
 * Waits until SplitPdfPages would take a range of so many pages over without waiting, but at most
 * the given milliseconds. Returns 0 when it would, else 1.
 */
CLEFTOR_API int32_t WaitForRoom(int32_t pages, int32_t milliseconds);

/**
 * Waits until every range that was handed over is written or has failed, but at most the given
 * milliseconds; as long as it takes when they are negative. Returns how many are left: always the
 * ones handed over last.
 */
CLEFTOR_API int32_t DrainRanges(int32_t milliseconds);

/** A file as it was written: what is at its place later may be another one. */
typedef struct CleftorWrittenFile {
  uint64_t device;
  uint64_t number; /**< of the file on its device; 0 where the system does not tell */
  uint64_t size;   /**< in bytes */
  int64_t changed; /**< last write, in nanoseconds since 1970 */
  int32_t hasDigest;
  uint8_t sha256[32]; /**< of all its bytes, when hasDigest is 1 */
} CleftorWrittenFile;

/** A range that was handed over and is written or has failed. The texts are valid until the next
 * call. */
typedef struct CleftorFinishedRange {
  const char16_t* target;
  const char16_t* reason; /**< why it failed, else empty */
  int32_t code;           /**< CLEFTOR_OK, or the failure */
  int32_t first;
  int32_t last;
  CleftorWrittenFile file; /**< when it did not fail */
} CleftorFinishedRange;

/**
 * Takes the oldest range off the list of those that DrainRanges counts as done: 1, or 0 when there
 * is none (finished is then untouched). They come in the order of the calls; the list outlives the
 * source.
 */
CLEFTOR_API int32_t TakeFinishedRange(CleftorFinishedRange* finished);

/** CLEFTOR_FILE_... of the open source, 0 without one. */
CLEFTOR_API int32_t GetFileFacts(void);

/** Code and text of the last failure; English, names no password; valid until the next call. */
CLEFTOR_API int32_t CleftorLastError(void);
CLEFTOR_API const char16_t* CleftorLastErrorText(void);

#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-deprecated-headers,modernize-use-using)

#endif
