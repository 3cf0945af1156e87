#include "CMap.h"

#include "ContentLexer.h"
#include "Unicode.h"

#include <algorithm>

namespace glyphrun {

namespace {

std::uint32_t codeOf(std::string_view bytes) {
  std::uint32_t code = 0;
  for (const char byte : bytes.substr(0, 4)) {
    code = (code << 8) | static_cast<unsigned char>(byte);
  }
  return code;
}

// A later entry overrides an earlier one that it overlaps, so entries keep their order among equals
// and a search goes back over a few neighbours.
template <typename Range> void sortRanges(std::vector<Range>& ranges) {
  std::stable_sort(ranges.begin(), ranges.end(),
                   [](const Range& a, const Range& b) { return a.low < b.low; });
}

template <typename Range>
const Range* findRange(const std::vector<Range>& ranges, std::uint32_t code) {
  constexpr int neighbours = 8;
  auto after = std::upper_bound(ranges.begin(), ranges.end(), code,
                                [](std::uint32_t c, const Range& r) { return c < r.low; });
  for (int i = 0; i < neighbours && after != ranges.begin(); ++i) {
    --after;
    if (code <= after->high) {
      return &*after;
    }
  }
  return nullptr;
}

} // namespace

/// Reads the operators of a CMap file one after the other.
class CMapParser {
public:
  CMapParser(std::string_view stream, CMap& map) : m_lexer(stream), m_map(map) {}

  void run() {
    Token previous;
    Token token;
    while (m_lexer.next(token) != TokenKind::End) {
      if (token.kind == TokenKind::Keyword) {
        handle(token.text, previous);
      } else if (token.kind == TokenKind::Number && previous.kind == TokenKind::Name &&
                 previous.text == "WMode") {
        m_map.m_vertical = token.number == 1;
      }
      previous = token;
    }
    sortRanges(m_map.m_cids);
    sortRanges(m_map.m_texts);
  }

private:
  void handle(std::string_view keyword, const Token& previous) {
    if (keyword == "usecmap" && previous.kind == TokenKind::Name) {
      m_map.m_base = std::string(previous.text);
    } else if (keyword == "begincodespacerange") {
      readCodeSpaces();
    } else if (keyword == "begincidchar") {
      readCids(false);
    } else if (keyword == "begincidrange") {
      readCids(true);
    } else if (keyword == "beginbfchar") {
      readTexts(false);
    } else if (keyword == "beginbfrange") {
      readTexts(true);
    }
  }

  // Every section ends with a keyword ("endbfchar", ...), so anything else that is no string does
  // too.
  bool takeString(std::string_view& text) {
    Token token;
    if (m_lexer.next(token) != TokenKind::String) {
      return false;
    }
    text = token.text;
    return true;
  }

  void readCodeSpaces() {
    std::string_view low;
    std::string_view high;
    while (takeString(low) && takeString(high)) {
      if (!low.empty() && low.size() <= 4) {
        m_map.m_codeSpaces.push_back(
            {codeOf(low), codeOf(high), static_cast<unsigned>(low.size())});
      }
    }
  }

  void readCids(bool ranges) {
    std::string_view low;
    while (takeString(low)) {
      std::string_view high = low;
      if (ranges && !takeString(high)) {
        return;
      }
      Token cid;
      if (m_lexer.next(cid) != TokenKind::Number) {
        return;
      }
      if (cid.number >= 0 && cid.number <= 0xFFFF && codeOf(low) <= codeOf(high)) {
        m_map.m_cids.push_back({codeOf(low), codeOf(high), static_cast<std::uint32_t>(cid.number)});
      }
    }
  }

  void readTexts(bool ranges) {
    std::string_view low;
    while (takeString(low)) {
      std::string_view high = low;
      if (ranges && !takeString(high)) {
        return;
      }
      Token target;
      m_lexer.next(target);
      if (target.kind == TokenKind::String) {
        addText(codeOf(low), codeOf(high), target.text);
      } else if (target.kind == TokenKind::ArrayOpen) {
        readTextArray(codeOf(low), codeOf(high));
      } else if (target.kind != TokenKind::Name) {
        return;
      }
    }
  }

  void readTextArray(std::uint32_t low, std::uint32_t high) {
    Token item;
    for (std::uint64_t code = low; m_lexer.next(item) == TokenKind::String; ++code) {
      if (code <= high) {
        addText(static_cast<std::uint32_t>(code), static_cast<std::uint32_t>(code), item.text);
      }
    }
  }

  void addText(std::uint32_t low, std::uint32_t high, std::string_view utf16) {
    constexpr std::size_t longestText = 64;
    if (low > high || utf16.empty()) {
      return;
    }
    const auto offset = static_cast<std::uint32_t>(m_map.m_pool.size());
    if (utf16.size() == 1) {
      m_map.m_pool.push_back(static_cast<unsigned char>(utf16[0]));
    }
    for (std::size_t i = 0; i + 1 < utf16.size() && i < 2 * longestText; i += 2) {
      m_map.m_pool.push_back(static_cast<char16_t>(static_cast<unsigned char>(utf16[i]) << 8 |
                                                   static_cast<unsigned char>(utf16[i + 1])));
    }
    m_map.m_texts.push_back(
        {low, high, offset, static_cast<std::uint32_t>(m_map.m_pool.size()) - offset});
  }

  ContentLexer m_lexer;
  CMap& m_map;
};

CMap CMap::parse(std::string_view stream) {
  CMap map;
  CMapParser(stream, map).run();
  return map;
}

bool CMap::hasClusters() const {
  return std::any_of(m_pool.begin(), m_pool.end(), [](char16_t unit) {
    constexpr char16_t latinEnd = 0x0300;
    return unit >= latinEnd && (traitsOf(char32_t{unit}) & (TraitRightToLeft | TraitMark)) != 0;
  });
}

unsigned CMap::takeCode(std::string_view bytes, std::uint32_t& code) const {
  code = 0;
  for (unsigned n = 1; n <= 4 && n <= bytes.size(); ++n) {
    code = (code << 8) | static_cast<unsigned char>(bytes[n - 1]);
    for (const CodeSpace& space : m_codeSpaces) {
      if (space.bytes == n && code >= space.low && code <= space.high) {
        return n;
      }
    }
  }
  return 0;
}

bool CMap::findCid(std::uint32_t code, std::uint32_t& cid) const {
  const CidRange* range = findRange(m_cids, code);
  if (range == nullptr) {
    return false;
  }
  cid = range->cid + (code - range->low);
  return true;
}

bool CMap::appendText(std::uint32_t code, std::u16string& text) const {
  const TextRange* range = findRange(m_texts, code);
  if (range == nullptr) {
    return false;
  }
  text.append(m_pool, range->offset, range->length);
  // Of the text of a range only its last unit counts on; across a surrogate pair it carries over.
  const std::uint32_t step = code - range->low;
  if (step == 0) {
    return true;
  }
  const std::size_t last = text.size() - 1;
  if (range->length >= 2 && (text[last] & 0xFC00) == 0xDC00) {
    const std::uint32_t pair = ((text[last - 1] & 0x3FFU) << 10 | (text[last] & 0x3FFU)) + step;
    text[last - 1] = static_cast<char16_t>(0xD800 | ((pair >> 10) & 0x3FF));
    text[last] = static_cast<char16_t>(0xDC00 | (pair & 0x3FF));
  } else {
    text[last] = static_cast<char16_t>(text[last] + step);
  }
  return true;
}

} // namespace glyphrun
