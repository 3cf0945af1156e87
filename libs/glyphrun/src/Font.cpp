#include "Font.h"

#include <algorithm>

namespace glyphrun {

namespace {

constexpr std::size_t mostLongTexts = 0xFFFF;

} // namespace

void CidMetrics::sort() {
  std::stable_sort(ranges.begin(), ranges.end(),
                   [](const Range& a, const Range& b) { return a.first < b.first; });
}

float CidMetrics::find(int cid) const {
  auto after = std::upper_bound(ranges.begin(), ranges.end(), cid,
                                [](int c, const Range& r) { return c < r.first; });
  constexpr int neighbours = 8;
  for (int i = 0; i < neighbours && after != ranges.begin(); ++i) {
    --after;
    if (cid <= after->last) {
      return after->value;
    }
  }
  return otherwise;
}

unsigned Font::takeCode(std::string_view bytes, std::uint32_t& code) const {
  if (identityEncoding) {
    code = static_cast<unsigned char>(bytes[0]);
    if (bytes.size() < 2) {
      return 1;
    }
    code = code << 8 | static_cast<unsigned char>(bytes[1]);
    return 2;
  }
  unsigned taken = encoding.takeCode(bytes, code);
  if (taken == 0 && predefinedEncoding != nullptr) {
    // MuPDF reads through non-const pointers without writing.
    auto* from = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
    unsigned value = 0;
    taken = static_cast<unsigned>(
        pdf_decode_cmap(predefinedEncoding, from, from + bytes.size(), &value));
    code = value;
  }
  if (taken == 0) {
    code = static_cast<unsigned char>(bytes[0]);
    taken = 1;
  }
  return std::min<unsigned>(taken, static_cast<unsigned>(bytes.size()));
}

std::uint32_t Font::cidOf(std::uint32_t code) const {
  if (identityEncoding) {
    return code;
  }
  std::uint32_t cid = 0;
  if (encoding.findCid(code, cid)) {
    return cid;
  }
  if (predefinedEncoding != nullptr) {
    const int found = pdf_lookup_cmap(predefinedEncoding, code);
    return found < 0 ? 0 : static_cast<std::uint32_t>(found);
  }
  return 0;
}

std::u16string Font::textOfCode(std::uint32_t code, std::uint32_t cid) const {
  std::u16string text;
  if (toUnicode.appendText(code, text) && (traitsOf(text) & TraitUnknown) == 0) {
    return text;
  }
  std::u16string better;
  if (codesAreUnicode) {
    appendCodePoint(better, code);
  }
  if (better.empty() && collectionToUnicode != nullptr) {
    // Room for the longest text that a predefined map gives.
    int units[256];
    const int count = pdf_lookup_cmap_full(collectionToUnicode, cid, units);
    for (int i = 0; i < count; ++i) {
      if (units[i] < 0x10000) {
        better.push_back(static_cast<char16_t>(units[i]));
      } else {
        appendCodePoint(better, static_cast<char32_t>(units[i]));
      }
    }
  }
  if (better.empty()) {
    const auto known = programTexts.find(cid);
    if (known != programTexts.end()) {
      appendCodePoint(better, known->second);
    }
  }
  return better.empty() ? text : better;
}

CodeInfo& Font::slotFor(std::uint32_t code) {
  if (code > 0xFFFF) {
    constexpr std::size_t mostLongCodes = 65536;
    if (m_longCodes.size() > mostLongCodes) {
      m_longCodes.clear();
    }
    return m_longCodes[code];
  }
  auto& page = m_pages[code >> 8];
  if (!page) {
    page = std::make_unique<Page>();
  }
  return (*page)[code & 0xFF];
}

const CodeInfo& Font::lookUp(std::uint32_t code) {
  CodeInfo& info = slotFor(code);
  if ((info.traits & CodeFilled) == 0) {
    const std::uint32_t cid = cidOf(code);
    info.advance = advances.find(static_cast<int>(cid & 0xFFFFFF));
    std::u16string mapped;
    const bool leftOut = toUnicode.hasTexts() && !toUnicode.appendText(code, mapped);
    setText(info, textOfCode(code, cid));
    info.traits |= leftOut ? CodeLeftOut : 0;
  }
  return info;
}

void Font::setText(CodeInfo& info, std::u16string_view text) {
  const std::u16string spelled = spelledOut(text);
  info.traits = static_cast<std::uint16_t>(CodeFilled | traitsOf(spelled));
  if (spelled.empty() || (info.traits & TraitUnknown) != 0) {
    // A character of a private area says nothing to a reader, but two of them are different words.
    const bool shows = spelled.size() == 1 && spelled[0] >= 0xE000 && spelled[0] <= 0xF8FF;
    info.traits = CodeFilled;
    info.traits |= TraitUnknown;
    info.text = shows ? spelled[0] : replacementCharacter;
  } else if (spelled.size() == 1 || longTexts.size() >= mostLongTexts) {
    info.text = spelled[0];
  } else {
    info.traits |= CodeManyUnits;
    info.text = static_cast<char16_t>(longTexts.size());
    longTexts.push_back(spelled);
  }
}

CodeInfo Font::withoutText(const CodeInfo& info) {
  const auto empty = std::find(longTexts.begin(), longTexts.end(), std::u16string());
  const auto index = static_cast<std::size_t>(empty - longTexts.begin());
  CodeInfo silent = info;
  silent.traits = CodeFilled;
  if (empty == longTexts.end() && index < mostLongTexts) {
    longTexts.emplace_back();
  }
  if (index < mostLongTexts) {
    silent.traits |= CodeManyUnits;
    silent.text = static_cast<char16_t>(index);
  }
  return silent;
}

void Font::forgetLookUps() {
  for (auto& page : m_pages) {
    page.reset();
  }
  m_longCodes.clear();
  longTexts.clear();
}

} // namespace glyphrun
