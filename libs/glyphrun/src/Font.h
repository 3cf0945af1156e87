// Fonts as far as text needs them: from the bytes of a string to text and advance.
#pragma once

#include "CMap.h"
#include "PdfObject.h"
#include "Unicode.h"

#include <array>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace glyphrun {

/// Further traits of a code, besides those of its text.
enum CodeTrait : std::uint16_t {
  CodeFilled = 0x100,    ///< looked up already
  CodeManyUnits = 0x200, ///< `text` is an index into Font::longTexts
  CodeLeftOut = 0x800    ///< a map to Unicode has other codes only; the text is from elsewhere
};

/// What one character code stands for.
struct CodeInfo {
  float advance = 0;        ///< along the writing direction, for size 1; negative downwards
  char16_t text = 0;        ///< its only UTF-16 unit, unless CodeManyUnits
  std::uint16_t traits = 0; ///< TextTrait and CodeTrait
};

/// Widths of a CID font's W and W2 arrays.
struct CidMetrics {
  struct Range {
    int first;
    int last;
    float value;
  };
  std::vector<Range> ranges;
  float otherwise = 1;

  void add(int first, int last, float value) { ranges.push_back({first, last, value}); }
  void sort();
  float find(int cid) const;
};

/// One font. Made by FontLoader, kept by FontCache; lives in one thread.
class Font {
public:
  bool oneByte = true;
  bool vertical = false;
  bool hasClusters = false;    ///< of a script that draws one character with several glyphs
  bool dingbats = false;       ///< its glyphs have names that look like numbers of characters
  bool drawnByContent = false; ///< Type 3: its glyphs are content streams, which are never run
  float em =
      1; ///< what the eye takes for the font size, for size 1: a Type 3 font has its own units
  /// Height above and depth (negative) below the baseline, in ems.
  float ascent = 0.8F;
  float descent = -0.2F;
  std::u16string name;
  std::array<CodeInfo, 256> codes{}; ///< all of a one-byte font, in advance
  std::vector<std::u16string> longTexts;

  /// Takes the next code of a string of a font that is not one-byte; returns its number of bytes.
  unsigned takeCode(std::string_view bytes, std::uint32_t& code) const;
  /// What a code of a font that is not one-byte stands for.
  const CodeInfo& lookUp(std::uint32_t code);

  /// True when the font program itself may tell more about codes without text.
  bool mayAskProgram = false;
  int objectNumber = 0;
  bool usedOnPage = false;

  std::u16string_view textOf(const CodeInfo& info) const {
    return (info.traits & CodeManyUnits) != 0 ? std::u16string_view(longTexts[info.text])
                                              : std::u16string_view(&info.text, 1);
  }

  /// Gives a code its text, spelled out and composed.
  void setText(CodeInfo& info, std::u16string_view text);
  /// A glyph whose text stands at the one before it: it has none, but takes room.
  CodeInfo withoutText(const CodeInfo& info);

  // Parts of a CID font.
  CMap toUnicode;
  CMap encoding;
  pdf_cmap* predefinedEncoding = nullptr; ///< MuPDF's own static data
  pdf_cmap* collectionToUnicode = nullptr;
  bool identityEncoding = false;
  bool codesAreUnicode = false;
  CidMetrics advances;
  std::unordered_map<std::uint32_t, char32_t> programTexts; ///< by CID, from the font program

  /// Drops what was looked up, since programTexts changed.
  void forgetLookUps();

private:
  std::uint32_t cidOf(std::uint32_t code) const;
  std::u16string textOfCode(std::uint32_t code, std::uint32_t cid) const;
  CodeInfo& slotFor(std::uint32_t code);

  using Page = std::array<CodeInfo, 256>;
  std::array<std::unique_ptr<Page>, 256> m_pages;
  std::unordered_map<std::uint32_t, CodeInfo> m_longCodes;
};

} // namespace glyphrun
