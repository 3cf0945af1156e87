#pragma once

#include <string>
#include <string_view>

struct libdeflate_compressor;

namespace cleftor {

/// Packs bytes as /FlateDecode unpacks them. One thread at a time.
class Deflater {
public:
  Deflater();
  ~Deflater();
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  [[nodiscard]] std::string pack(std::string_view bytes);

private:
  libdeflate_compressor* m_compressor;
};

} // namespace cleftor
