// SourceInput: a file as the parser reads it.
#pragma once

#include "common/FileIdentity.h"

#include <qpdf/InputSource.hh>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace pages {

/// A file, read in blocks. The parser jumps between neighbouring objects and steps back a
/// byte at a time; a block keeps such steps out of the system. The file is read, never mapped, so
/// one that shrinks meanwhile is a damaged file and not a dead process.
class SourceInput : public InputSource {
public:
  /// Opens path (UTF-8); throws common::Failure `cannotOpen` with the system's reason. Once `*stop`
  /// is true, which any thread may do, nothing more is read from the file.
  explicit SourceInput(const std::string& path, const std::atomic<bool>* stop = nullptr,
                       common::Links links = common::Links::Followed);

  /// Whether the file turned out to be shorter than it was when it was opened. The read that finds
  /// it throws std::runtime_error; the parser may have swallowed that.
  bool isCut() const { return m_isCut; }

  /// Of the file that was opened; tells it from what may have taken its place.
  const common::FileIdentity& identity() const { return m_identity; }

  qpdf_offset_t findAndSkipNextEOL() override;
  const std::string& getName() const override { return m_name; }
  qpdf_offset_t tell() override { return m_position; }
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override { m_position = 0; }
  size_t read(char* target, size_t length) override;
  void unreadCh(char /*ch*/) override { m_position = std::max<qpdf_offset_t>(m_position - 1, 0); }

private:
  /// Makes the block hold the byte at position; false at the end of the file. Throws
  /// std::runtime_error when the file ends before its end.
  bool load(qpdf_offset_t position);

  std::string m_name;
  const std::atomic<bool>* m_stop; ///< may be null
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_file;
  qpdf_offset_t m_size = 0;
  common::FileIdentity m_identity;
  qpdf_offset_t m_position = 0;
  qpdf_offset_t m_blockStart = 0;
  std::vector<char> m_block = std::vector<char>(size_t{64} * 1024);
  size_t m_blockLength = 0;
  bool m_isCut = false;
};

} // namespace pages
