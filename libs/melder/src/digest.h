#ifndef MELDER_DIGEST_H
#define MELDER_DIGEST_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace melder {

using Digest = std::array<uint8_t, 32>;

/** SHA-256: strong enough that equal digests may stand for equal contents of hostile files. */
[[nodiscard]] Digest sha256(std::string_view bytes);
[[nodiscard]] std::string hexOf(std::string_view bytes);

} // namespace melder

#endif
