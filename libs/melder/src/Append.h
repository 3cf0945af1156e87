// Append: the two operations of the library.
#pragma once

#include <string>

namespace melder {

/// Adds the pages of `addition` to the end of `existing`, in place. Throws common::Failure,
/// std::bad_alloc or what qpdf throws; `existing` is then as it was. Paths are UTF-8.
void appendToFile(const std::string& addition, const std::string& existing);

/// Writes the pages of `first`, then those of `second`, to `target`, which appears whole or not at
/// all and replaces what was there.
void appendToNewFile(const std::string& first, const std::string& second,
                     const std::string& target);

} // namespace melder
