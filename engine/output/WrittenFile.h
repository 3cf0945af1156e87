// WrittenFile: a file as one of the libraries has written it.
#pragma once

#include "platform/FileDigest.h"
#include "platform/FileStamp.h"

#include <cstdint>

namespace folivex {

/// Laid out as CleftorWrittenFile and MelderWrittenFile.
struct WrittenFile {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::uint64_t size = 0;
  std::int64_t changed = 0;
  std::int32_t hasDigest = 0;
  std::uint8_t sha256[32] = {};

  platform::FileStamp stamp() const { return {device, number, size, changed, 0}; }
  platform::FileDigest digest() const {
    platform::FileDigest digest;
    if (hasDigest != 0) {
      digest = {static_cast<qint64>(size),
                QByteArray(reinterpret_cast<const char*>(sha256), sizeof sha256)};
    }
    return digest;
  }
};

} // namespace folivex
