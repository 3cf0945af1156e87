// Append: the two operations of the library.
#pragma once

#include "common/FileIdentity.h"
#include "pages/Sha256.h"

#include <optional>
#include <string>

namespace melder {

enum class Digest { Made, LeftOut };

/// The file that an append has written.
struct Written {
  common::FileIdentity identity;
  std::optional<pages::Sha256> digest;
};

/// Adds the pages of `addition` to the end of `existing`, in place; a link there is refused. Throws
/// common::Failure, std::bad_alloc or what qpdf throws; `existing` is then as it was. Paths are
/// UTF-8.
Written appendToFile(const std::string& addition, const std::string& existing, Digest digest);

/// Writes the pages of `first`, then those of `second`, to `target`, which appears whole or not at
/// all and replaces what was there, be it a link.
Written appendToNewFile(const std::string& first, const std::string& second,
                        const std::string& target, Digest digest);

} // namespace melder
