#include "Sha256.h"

#include "common/AsideFile.h"

#include <qpdf/QPDFCryptoProvider.hh>

#include <algorithm>

namespace pages {

Sha256 sha256Of(common::AsideFile& file) {
  const auto crypto = QPDFCryptoProvider::getImpl();
  constexpr int bits = 256;
  crypto->SHA2_init(bits);
  file.read([&](std::string_view bytes) {
    crypto->SHA2_update(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  });
  crypto->SHA2_finalize();
  const std::string digest = crypto->SHA2_digest();
  Sha256 result{};
  std::copy_n(digest.begin(), std::min(digest.size(), result.size()), result.begin());
  return result;
}

} // namespace pages
