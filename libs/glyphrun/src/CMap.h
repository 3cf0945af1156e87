// Character maps: from the bytes of a string to codes, and from codes to CIDs or to text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace glyphrun {

/// A map read from a stream of the file. It keeps ranges as ranges: a file may claim one of four
/// billion codes in twenty bytes.
class CMap {
public:
  /// Takes what the stream holds; what makes no sense in it is passed over.
  static CMap parse(std::string_view stream);

  bool empty() const { return m_cids.empty() && m_texts.empty() && m_codeSpaces.empty(); }
  bool hasTexts() const { return !m_texts.empty(); }
  /// True when a text has letters of a right-to-left script, or marks.
  bool hasClusters() const;
  bool vertical() const { return m_vertical; }
  /// Name of the map that this one builds on, or empty.
  const std::string& base() const { return m_base; }

  /// Takes the next code of a string by the code spaces: its value and, as result, its number of
  /// bytes (at least 1 and at most what is there). 0 when no code space fits.
  unsigned takeCode(std::string_view bytes, std::uint32_t& code) const;

  /// The CID of a code.
  bool findCid(std::uint32_t code, std::uint32_t& cid) const;
  /// Appends the text of a code.
  bool appendText(std::uint32_t code, std::u16string& text) const;

private:
  struct CodeSpace {
    std::uint32_t low;
    std::uint32_t high;
    unsigned bytes;
  };
  struct CidRange {
    std::uint32_t low;
    std::uint32_t high;
    std::uint32_t cid;
  };
  struct TextRange {
    std::uint32_t low;
    std::uint32_t high;
    std::uint32_t offset; ///< of the text of `low` in m_pool
    std::uint32_t length;
  };
  friend class CMapParser;

  std::vector<CodeSpace> m_codeSpaces;
  std::vector<CidRange> m_cids;
  std::vector<TextRange> m_texts;
  std::u16string m_pool;
  std::string m_base;
  bool m_vertical = false;
};

} // namespace glyphrun
