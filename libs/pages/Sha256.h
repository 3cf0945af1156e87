// Sha256: the digest (FIPS 180-4) of a file that is being written.
#pragma once

#include <array>
#include <cstdint>

namespace common {
class AsideFile;
}

namespace pages {

using Sha256 = std::array<uint8_t, 32>;

/// Of all bytes that the file has by now.
Sha256 sha256Of(common::AsideFile& file);

} // namespace pages
