#pragma once

#include "common/AsideFile.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cleftor {

class Deflater;

/// Lays out one PDF file: header, objects in the order in which they come, cross-reference table,
/// trailer. Object numbers count from 1 and are handed out by reserve(); one that is never written
/// is free in the table.
class DocumentWriter {
public:
  /// version: "1.7" and the like. With a deflater, which is not owned, objects that are no streams
  /// are collected in object streams, and the table is a stream itself: from version 1.5 on.
  DocumentWriter(common::AsideFile& file, const std::string& version, Deflater* deflater);

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
  /// Where an object is.
  struct Place {
    uint64_t at = 0;   ///< offset in the file, or the number of an object stream; 0: not written
    uint32_t rank = 0; ///< in the object stream, from 1; 0: in the file itself
  };

  void beginObject(int number);
  void collect(int number, std::string_view body);
  void writeCollected();
  void writeTable(const std::string& entries);
  void writeTableStream(const std::string& entries);
  std::string tableRows(int offsetBytes, bool asDifferences) const;

  common::AsideFile& m_file;
  Deflater* m_deflater;         ///< may be null
  std::vector<Place> m_places;  ///< by object number
  std::vector<int> m_collected; ///< numbers of the objects of the next object stream
  std::string m_collectedHead;  ///< their numbers and offsets
  std::string m_collectedBodies;
  uint64_t m_lengthPlace = 0;
  uint64_t m_dataStart = 0;
};

} // namespace cleftor
