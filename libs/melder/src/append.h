#ifndef MELDER_APPEND_H
#define MELDER_APPEND_H

#include <string>

namespace melder {

/**
 * The pages of `addition` to the end of `existing`, in place. Throws Failure, std::bad_alloc or
 * what qpdf throws; the receiving file is then as it was. Paths are in the file system's encoding.
 */
void appendToFile(const std::string& addition, const std::string& existing);

/** The pages of `first`, then those of `second`, to `target`, which appears whole or not at all. */
void appendToNewFile(const std::string& first, const std::string& second,
                     const std::string& target);

/** Removes every working copy and forgets what is known of the files appended to. */
void dropWorkingCopies() noexcept;

} // namespace melder

#endif
