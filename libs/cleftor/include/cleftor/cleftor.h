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
 * destinations, page boxes, rotation, page labels, document information, and the bookmarks into the
 * range when asked. Links out of the range lead nowhere. Nothing of other pages is carried along.
 * Outputs of a protected source are unprotected.
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

#define CLEFTOR_INTERFACE_VERSION 2

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
  CLEFTOR_DAMAGED = -8 /**< the source's pages could not be copied */
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

/** Closes the source when every range handed over is written. */
CLEFTOR_API void PdfTextDumpCloseFile(void);

/** Page count of the open source, 0 without one. */
CLEFTOR_API int32_t GetPageCount2(void);

/**
 * Writes pages first..last, inclusive, to a new file at target, which appears whole or not at all;
 * a file that was there is replaced. totalPages is the page count that the caller knows; when it is
 * not the source's own the range is refused.
 */
CLEFTOR_API int32_t SplitPdfPages(const char16_t* target, int32_t first, int32_t last,
                                  int32_t totalPages);

/**
 * Writes several ranges, in the order given, to one new file: as SplitPdfPages, for which they are
 * one range. ranges holds count pairs of a first and a last page, counted from 1, both included. A
 * page of two ranges stands in the output twice, with the same annotations; links lead to the first
 * of the two. When the output fails, TakeFailedRange tells the first page of the first range and
 * the last page of the last.
 */
CLEFTOR_API int32_t SplitPdfRanges(const char16_t* target, const int32_t* ranges, int32_t count,
                                   int32_t totalPages);

/** Opens a source, writes pages first..last to target and closes the source again; settings as set.
 */
CLEFTOR_API int32_t SplitPdf(const char16_t* source, const char16_t* password,
                             const char16_t* target, int32_t first, int32_t last);

/** Result of the last range. */
CLEFTOR_API int32_t GetProcessingStatus(void);

/** Last page of the last range that was written, 0 before the first. */
CLEFTOR_API int32_t GetProcessingPage(void);

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
 * or PdfTextDumpCloseFile or a new PdfTextDumpOpenFile has returned, unless TakeFailedRange tells
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

/** A range that was handed over and could not be written. The texts are valid until the next call.
 */
typedef struct CleftorFailedRange {
  const char16_t* target;
  const char16_t* reason;
  int32_t first;
  int32_t last;
} CleftorFailedRange;

/**
 * Takes the oldest failure off the list and returns its code, CLEFTOR_OK when there is none (failed
 * is then untouched). The list outlives the source and tells of every range that DrainRanges counts
 * as done.
 */
CLEFTOR_API int32_t TakeFailedRange(CleftorFailedRange* failed);

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
