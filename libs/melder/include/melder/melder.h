/**
 * MelderU: the pages of one PDF to the end of another.
 *
 * A C interface, loaded by name at run time. Text is UTF-16, terminated by zero. No exception
 * crosses it. One state for the whole process (the last result); it belongs to one thread.
 *
 * At every moment the receiving file is the old one or the new one, byte for byte, also when the
 * process is killed: the new one is written whole beside the old one (under a hidden name; what a
 * killed process leaves there is removed by the next append) and takes its place. So an append
 * costs what the whole file costs to write: add parts to one file together where they are at hand
 * together.
 *
 * The same files always give the same bytes, but where the receiving file is protected: protection
 * takes random numbers.
 */
#ifndef MELDER_MELDER_H
#define MELDER_MELDER_H

#include <stdint.h> // NOLINT(modernize-deprecated-headers): C programs read this, too

#ifdef __cplusplus
extern "C" {
#else
#include <uchar.h>
#endif

#if defined(_WIN32)
#define MELDER_API __declspec(dllexport)
#else
#define MELDER_API __attribute__((visibility("default")))
#endif

#define MELDER_INTERFACE_VERSION 3

/** What GetStatus returns. */
enum {
  MELDER_OK = 0,
  MELDER_OUT_OF_MEMORY = -3,
  MELDER_CANNOT_OPEN = -4, /**< one of the files is missing or cannot be read */
  MELDER_CANNOT_WRITE = -5,
  MELDER_WRONG_PASSWORD = -6,
  MELDER_DAMAGED = -8 /**< one of the files is no PDF or too damaged */
};

MELDER_API int32_t MelderInterfaceVersion(void);

/**
 * Appends all pages of `addition` to the end of `existing`, in place. `options` is reserved and
 * empty. Returns non-zero on success; on failure 0, and `existing` is as it was. If `existing` is a
 * link, nothing is added to what it leads to: MELDER_CANNOT_WRITE. Mode and owner stay. Both files
 * may be the same one.
 *
 * The part keeps its annotations, field values, links, boxes, rotation, layers, page labels and
 * bookmarks (these follow those of `existing`). A field or named destination whose name is taken
 * gets another one ("Total+1", "p0000012.chapter1"); pages without labels are numbered by their
 * place if others have labels. Fonts and images that `existing` has on its first or last pages are
 * not stored again. Document information, attachments and protection are those of `existing`;
 * signatures of either file are no longer valid, tags of the part are not carried over, and of the
 * standards that `existing` claims those stay that the part claims, too. An addition that is cut
 * off, has lost objects or holds fewer pages than it says is refused.
 */
MELDER_API int32_t getAppendPDFToFile(const char16_t* addition, const char16_t* existing,
                                      const char16_t* options);

/**
 * Writes the pages of `first`, then those of `second`, to a new file `target`, whole or not at all;
 * a file or link of that name is replaced. All else is as if `second` were appended to `first`.
 * Non-zero on success.
 */
MELDER_API int32_t getAppendPDFFile(const char16_t* first, const char16_t* second,
                                    const char16_t* target);

/** A file as it was written: what is at its place later may be another one. */
typedef struct MelderWrittenFile {
  uint64_t device;
  uint64_t number; /**< of the file on its device; 0 where the system does not tell */
  uint64_t size;   /**< in bytes */
  int64_t changed; /**< last write, in nanoseconds since 1970 */
  int32_t hasDigest;
  uint8_t sha256[32]; /**< of all its bytes, when hasDigest is 1 */
} MelderWrittenFile;

/** 1: GetWrittenFile tells the digest, too. 0 (the start value): it does not. */
MELDER_API void SetDigests(int32_t on);

/** What the last append wrote, if it succeeded. */
MELDER_API void GetWrittenFile(MelderWrittenFile* written);

/** Result of the last append. */
MELDER_API int32_t GetStatus(void);

/** Code and text of the last failure; English; valid until the next call. */
MELDER_API int32_t MelderLastError(void);
MELDER_API const char16_t* MelderLastErrorText(void);

#ifdef __cplusplus
}
#endif

#endif
