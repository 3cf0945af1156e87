#include "Deflater.h"

#include <libdeflate.h>

#include <new>

namespace cleftor {

namespace {

/// Of a few thousand bytes the fastest level leaves little to be gained.
constexpr int level = 1;

} // namespace

Deflater::Deflater() : m_compressor(libdeflate_alloc_compressor(level)) {
  if (m_compressor == nullptr) {
    throw std::bad_alloc();
  }
}

Deflater::~Deflater() {
  libdeflate_free_compressor(m_compressor);
}

std::string Deflater::pack(std::string_view bytes) {
  std::string packed(libdeflate_zlib_compress_bound(m_compressor, bytes.size()), '\0');
  packed.resize(libdeflate_zlib_compress(m_compressor, bytes.data(), bytes.size(), packed.data(),
                                         packed.size()));
  return packed;
}

} // namespace cleftor
