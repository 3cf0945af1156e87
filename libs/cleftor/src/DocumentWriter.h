#pragma once

#include "common/AsideFile.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cleftor {

/// Lays out one PDF file: header, objects in the order in which they come, cross-reference table,
/// trailer. Object numbers count from 1 and are handed out by reserve(); one that is never written
/// is free in the table.
class DocumentWriter {
public:
  /// version: "1.7" and the like.
  DocumentWriter(common::AsideFile& file, const std::string& version);

  int reserve();

  void object(int number, std::string_view body);

  /// A stream whose length is known; dictionary is its entries without "<<", "/Length" and ">>".
  void stream(int number, std::string_view dictionary, std::string_view data);

  /// A stream whose length shows only at the end: begin, any number of data, end.
  void beginStream(int number, std::string_view dictionary);
  void streamData(std::string_view data) { m_file.append(data); }
  void endStream();

  /// Cross-reference table and trailer; info may be 0; id is 16 raw bytes.
  void finish(int root, int info, const std::string& id);

private:
  void beginObject(int number);

  common::AsideFile& m_file;
  std::vector<uint64_t> m_offsets; ///< by object number, 0 for one not written
  uint64_t m_lengthPlace = 0;
  uint64_t m_dataStart = 0;
};

} // namespace cleftor
