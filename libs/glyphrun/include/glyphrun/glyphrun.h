/**
 * GlyphrunU: the words of a PDF's pages with their positions.
 *
 * A C interface, loaded by name at run time. Text is UTF-16, terminated by zero. No exception and
 * no longjmp crosses it. Page numbers count from 1.
 *
 * Positions are points (1/72 inch) with their origin at the top left of the page as a reader shows
 * it: crop box, /Rotate applied, /UserUnit not (PDF 32000-1, 7.7.3.3 and 14.11.2). h is the left
 * end of a word's baseline, v the distance of its baseline from the top; both rounded to the
 * nearest integer. All words of one visible line have the same v. A word that does not run from
 * left to right or from right to left has the place where it starts.
 *
 * The operations without a handle work on one state for the whole process (the open file, the words
 * of the last extracted pages, the selected word) and belong to one thread. Each GlyphrunView is a
 * state of its own and may be used by any one thread at a time.
 */
#ifndef GLYPHRUN_GLYPHRUN_H
#define GLYPHRUN_GLYPHRUN_H

// NOLINTBEGIN(modernize-deprecated-headers,modernize-use-using): C compilers read this as well.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#else
#include <uchar.h>
#endif

#if defined(_WIN32)
#define GLYPHRUN_API __declspec(dllexport)
#else
#define GLYPHRUN_API __attribute__((visibility("default")))
#endif

/** Raised when an operation changes its meaning or its arguments; checked when the library is
 * loaded. */
#define GLYPHRUN_INTERFACE_VERSION 1

/** Results. Zero is success, every failure is negative. */
enum {
  GLYPHRUN_OK = 0,
  GLYPHRUN_NOT_OPEN = -1,       /**< the operation needs an open file */
  GLYPHRUN_BAD_PAGE = -2,       /**< no such page */
  GLYPHRUN_OUT_OF_MEMORY = -3,  /**< memory, or the limit set for one page, is used up */
  GLYPHRUN_CANNOT_OPEN = -4,    /**< the file is missing or may not be read */
  GLYPHRUN_NOT_A_PDF = -5,      /**< no PDF, or damaged beyond repair */
  GLYPHRUN_WRONG_PASSWORD = -6, /**< a password is needed, or the one given is wrong */
  GLYPHRUN_UNSUPPORTED = -7,    /**< an encryption that no password opens (public key handlers) */
  GLYPHRUN_DAMAGED = -8         /**< the page, or a part of it, could not be read */
};

/** What is to be known about the pages last extracted; the gravest of them when there are several.
 */
enum {
  GLYPHRUN_PAGE_GOOD = 0,       /**< has words */
  GLYPHRUN_PAGE_EMPTY = 1,      /**< has no text at all: blank, or graphics only */
  GLYPHRUN_PAGE_UNREADABLE = 2, /**< has text with no way to Unicode: U+FFFD stands in its words */
  GLYPHRUN_PAGE_DAMAGED = 3 /**< damaged, or over a limit; the words read before that are kept */
};

/** Facts about the open file, combined by "or". */
enum {
  GLYPHRUN_FILE_ENCRYPTED = 1,
  GLYPHRUN_FILE_FORBIDS_EXTRACTION = 2, /**< by permission bit (PDF 32000-1, table 22) */
  GLYPHRUN_FILE_REPAIRED = 4            /**< the cross-reference table was rebuilt */
};

GLYPHRUN_API int32_t GlyphrunInterfaceVersion(void);

/* ---- one file, page by page ------------------------------------------------------------------ */

/**
 * Number of pages of a file, or 0 when it cannot be opened (the reason: GlyphrunLastError). A page
 * count that the file claims but cannot show is never believed. The file is kept ready so that a
 * PdfTextDumpOpenFile of the same unchanged file that follows does not read it again.
 */
GLYPHRUN_API int32_t GetPageCount(const char16_t* path, const char16_t* password);

/** Opens a file for reading by page, and closes the one that was open. See GetProcessingStatus. */
GLYPHRUN_API void PdfTextDumpOpenFile(const char16_t* path, const char16_t* password);

/** Extracts the words of pages first..last, inclusive, of the open file; the words extracted before
 * are dropped. */
GLYPHRUN_API void PdfTextDumpFilePages(int32_t first, int32_t last);

/** Opens a file and extracts the words of pages first..last, inclusive. */
GLYPHRUN_API void PdfTextDumpFile(const char16_t* path, const char16_t* password, int32_t first,
                                  int32_t last);

/** Closes the open file and drops its words. Without an open file it does nothing. */
GLYPHRUN_API void PdfTextDumpCloseFile(void);

/** Page count of the open file; 0 without one. */
GLYPHRUN_API int32_t GetPageCount2(void);

/** Result of the last operation that opened a file or extracted words: GLYPHRUN_OK or a failure. */
GLYPHRUN_API int32_t GetProcessingStatus(void);

/** The page last extracted, 0 when there was none. */
GLYPHRUN_API int32_t GetProcessingPage(void);

/* ---- the extracted words --------------------------------------------------------------------- */

/** Number of extracted words. */
GLYPHRUN_API int32_t getNumWords(void);

/** Puts the words in the order in which the pages draw them (the order after extraction). */
GLYPHRUN_API void DoSort(void);

/**
 * Puts the words in reading order: page, then v ascending, then h ascending; in a right-to-left
 * line the order in which the line is read.
 */
GLYPHRUN_API void DoReverseSort(void);

/** Drops words that repeat another one of the same page with equal text, h and v. */
GLYPHRUN_API void RemoveDupes(void);

/** Selects the word (from 0) that the next reads return. An index out of range selects an empty
 * word at 0,0. */
GLYPHRUN_API void wordToGet(int32_t index);
GLYPHRUN_API int32_t getWordX(void); /**< h of the selected word */
GLYPHRUN_API int32_t getWordY(void); /**< v of the selected word */
/** Text of the selected word; the library's own, valid until the next selection or extraction. */
GLYPHRUN_API const char16_t* getWordStr(void);
/** Font name of the selected word without its subset tag; lifetime as getWordStr. */
GLYPHRUN_API const char16_t* getFont(void);
GLYPHRUN_API int32_t getFontSize(void); /**< in points on the page, rounded */

/** A word with everything that is known of it. The box is in points like h and v, not rounded. */
typedef struct GlyphrunWord {
  const char16_t* text;
  int32_t h, v;
  int32_t page; /**< from 1 */
  float left, top, right, bottom;
} GlyphrunWord;

/* ---- beyond the words ------------------------------------------------------------------------ */

/**
 * Joining tolerance of words, 1.02 unless set: more is more tolerant. At 1.02 a gap of a tenth of
 * the font size parts two words; each further hundredth bridges a hundredth of the font size more.
 * Takes effect with the next extraction. Values that are not finite or not above 0 are taken
 * as 1.02.
 */
GLYPHRUN_API void SetWordSpacing(double factor);

/**
 * Number of threads, at most 64, that read the pages behind the one last extracted while the caller
 * is busy with it; 0, as it is unless set, means none. It changes nothing but the time: pages come
 * in the order asked for, with the same words. The threads start with the second of two pages asked
 * for in a row, run a bounded number of pages ahead, and end when the file is closed. Each one
 * opens the file for itself, which costs the memory of its page tree once more.
 */
GLYPHRUN_API void SetReadAhead(int32_t threads);

/** GLYPHRUN_PAGE_... of the pages last extracted. */
GLYPHRUN_API int32_t GetPageState(void);

/** GLYPHRUN_FILE_... of the open file, 0 without one. */
GLYPHRUN_API int32_t GetFileFacts(void);

/**
 * Writes a sound and unprotected copy of a file, with all pages that are found in it, over the file
 * at target, whose owner and mode it keeps. Returns their number, or a failure that leaves the
 * target as it was. For any thread.
 */
GLYPHRUN_API int32_t RepairFile(const char16_t* path, const char16_t* password,
                                const char16_t* target);

/** Code and text of the last failure; the text is English, names no password, and is valid until
 * the next call. */
GLYPHRUN_API int32_t GlyphrunLastError(void);
GLYPHRUN_API const char16_t* GlyphrunLastErrorText(void);

typedef struct GlyphrunOutlineEntry {
  const char16_t* title; /**< valid until the file is closed */
  int32_t level;         /**< 0 for the top level */
  int32_t page;          /**< from 1; 0 when the entry leads to no page of this file */
} GlyphrunOutlineEntry;

/** Number of outline entries of the open file, in the order in which a reader lists them. */
GLYPHRUN_API int32_t GetOutlineCount(void);
/** Fills *entry with the outline entry (from 0). Returns GLYPHRUN_OK, or a failure that leaves
 * *entry as it was. */
GLYPHRUN_API int32_t GetOutlineEntry(int32_t index, GlyphrunOutlineEntry* entry);

/* ---- views: pages as they look ----------------------------------------------------------------
 */

typedef struct GlyphrunView GlyphrunView;

/** A page as a picture: 4 bytes a pixel (blue, green, red, 255), rows from the top, no gap between
 * rows. */
typedef struct GlyphrunImage {
  int32_t width, height;
  unsigned char* pixels; /**< released with ReleaseImage */
} GlyphrunImage;

/** Opens a file for viewing; null on failure (*result tells, when it is not null). Closed with
 * CloseView. */
GLYPHRUN_API GlyphrunView* OpenView(const char16_t* path, const char16_t* password,
                                    int32_t* result);
GLYPHRUN_API void CloseView(GlyphrunView* view);
/**
 * Makes what another thread is at in this view end soon, and what follows at once: pictures fail,
 * words are missing. For any thread, as long as the view is not being closed.
 */
GLYPHRUN_API void AbortView(GlyphrunView* view);
GLYPHRUN_API int32_t GetViewPageCount(const GlyphrunView* view);
/** Size in points of a page as shown. */
GLYPHRUN_API int32_t GetViewPageSize(GlyphrunView* view, int32_t page, double* width,
                                     double* height);
/**
 * Draws a page at `scale` pixels a point, annotations and form fields included. The picture is
 * limited to 64 million pixels. On failure *image is left empty.
 */
GLYPHRUN_API int32_t RenderViewPage(GlyphrunView* view, int32_t page, double scale,
                                    GlyphrunImage* image);
GLYPHRUN_API void ReleaseImage(GlyphrunImage* image);
/** The joining tolerance of this view's words: see SetWordSpacing, which views do not heed. */
GLYPHRUN_API void SetViewWordSpacing(GlyphrunView* view, double factor);
/**
 * Has up to that many threads read the words of a view's pages before they are asked for, from the
 * first on, or behind the page asked for last; 0 (the start value): none. Nothing else changes.
 */
GLYPHRUN_API void SetViewReadAhead(GlyphrunView* view, int32_t threads);
/**
 * The words of a page in reading order, the same that the page-by-page operations give. Returns
 * their number or a failure; *words stays the view's own until its next call.
 */
GLYPHRUN_API int32_t GetViewWords(GlyphrunView* view, int32_t page, const GlyphrunWord** words);
/** GLYPHRUN_PAGE_... of the page whose words were read last. */
GLYPHRUN_API int32_t GetViewPageState(const GlyphrunView* view);
/** The outline of the view's file; as GetOutlineCount and GetOutlineEntry. Titles are valid until
 * the view is closed. */
GLYPHRUN_API int32_t GetViewOutlineCount(GlyphrunView* view);
GLYPHRUN_API int32_t GetViewOutlineEntry(GlyphrunView* view, int32_t index,
                                         GlyphrunOutlineEntry* entry);

#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-deprecated-headers,modernize-use-using)

#endif
