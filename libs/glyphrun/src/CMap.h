// Character maps: from the bytes of a string to codes, and from codes to CIDs or to text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace glyphrun {

/**
 * A map read from a stream of the file. It keeps ranges as ranges: a file may claim one of four
 * billion codes in twenty bytes.
 */
class CMap {
public:
  /** Takes what the stream holds; what makes no sense in it is passed over. */
  static CMap parse(std::string_view stream);

  bool empty() const { return cids_.empty() && texts_.empty() && codeSpaces_.empty(); }
  bool hasTexts() const { return !texts_.empty(); }
  bool vertical() const { return vertical_; }
  /** Name of the map that this one builds on, or empty. */
  const std::string& base() const { return base_; }

  /**
   * Takes the next code of a string by the code spaces: its value and, as result, its number of
   * bytes (at least 1 and at most what is there). 0 when no code space fits.
   */
  unsigned takeCode(std::string_view bytes, std::uint32_t& code) const;

  /** The CID of a code. */
  bool findCid(std::uint32_t code, std::uint32_t& cid) const;
  /** Appends the text of a code. */
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
    std::uint32_t offset; /**< of the text of `low` in pool_ */
    std::uint32_t length;
  };
  friend class CMapParser;

  std::vector<CodeSpace> codeSpaces_;
  std::vector<CidRange> cids_;
  std::vector<TextRange> texts_;
  std::u16string pool_;
  std::string base_;
  bool vertical_ = false;
};

} // namespace glyphrun
