#include "FontLoader.h"

#include "common/Utf16.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace glyphrun {

namespace {

constexpr std::size_t longestCMap = std::size_t{32} << 20;
constexpr int symbolicFlag = 4;
constexpr int nonsymbolicFlag = 32;
constexpr std::uint16_t blankCode = 32;

/// Font name without the tag of a subset ("ABCDEF+").
std::u16string plainName(const char* baseFont) {
  std::string_view name = baseFont;
  if (name.size() > 7 && name[6] == '+') {
    bool tag = true;
    for (const char c : name.substr(0, 6)) {
      tag = tag && c >= 'A' && c <= 'Z';
    }
    if (tag) {
      name.remove_prefix(7);
    }
  }
  return common::toUtf16(name);
}

/// Text of a glyph name; "f_f_i" stands for its parts, what follows a dot only names a variant.
std::u16string textOfGlyphName(std::string_view name) {
  std::u16string text;
  name = name.substr(0, name.find('.'));
  while (!name.empty()) {
    const std::size_t underscore = name.find('_');
    const std::string_view part = name.substr(0, underscore);
    name = underscore == std::string_view::npos ? std::string_view() : name.substr(underscore + 1);
    char buffer[64] = {};
    if (part.empty() || part.size() >= sizeof buffer) {
      return {};
    }
    std::memcpy(buffer, part.data(), part.size());
    // "uniXXXXYYYY" names several characters at once.
    if (part.size() > 7 && part.substr(0, 3) == "uni" && (part.size() - 3) % 4 == 0) {
      for (std::size_t i = 3; i < part.size(); i += 4) {
        char quad[8] = {'u', 'n', 'i', part[i], part[i + 1], part[i + 2], part[i + 3], 0};
        appendCodePoint(text, static_cast<char32_t>(fz_unicode_from_glyph_name(quad)));
      }
      continue;
    }
    appendCodePoint(text, static_cast<char32_t>(fz_unicode_from_glyph_name(buffer)));
  }
  return text;
}

/// A map that leads to a control character knows nothing of what is seen.
bool explains(std::u16string_view text) {
  return !text.empty() && text[0] >= blankCode && (traitsOf(text) & TraitUnknown) == 0;
}

} // namespace

std::unique_ptr<Font> FontLoader::makeSubstitute() {
  auto font = std::make_unique<Font>();
  GlyphNames names{};
  pdf_load_encoding(names.data(), "StandardEncoding");
  readSimpleTexts(PdfObject(), names, false, *font);
  readBuiltInWidths("Helvetica", *font);
  return font;
}

std::unique_ptr<Font> FontLoader::load(const PdfObject& dictionary) {
  auto font = std::make_unique<Font>();
  const PdfObject subtype = dictionary.get("Subtype");
  const bool type3 = subtype.isNamed("Type3") || dictionary.get("CharProcs");
  if (!type3 && (subtype.isNamed("Type0") || dictionary.get("DescendantFonts"))) {
    loadComposite(dictionary, *font);
  } else {
    loadSimple(dictionary, type3, *font);
  }
  return font;
}

void FontLoader::loadSimple(const PdfObject& dictionary, bool type3, Font& font) {
  const char* baseFont = dictionary.get(type3 ? "Name" : "BaseFont").name();
  font.name = plainName(baseFont);
  font.drawnByContent = type3;
  const PdfObject descriptor = dictionary.get("FontDescriptor");
  const bool embedded =
      descriptor.get("FontFile") || descriptor.get("FontFile2") || descriptor.get("FontFile3");
  const int flags = descriptor.get("Flags").integer();
  const char* builtIn = pdf_clean_font_name(baseFont);
  const bool ownSymbols =
      std::strcmp(builtIn, "Symbol") == 0 || std::strcmp(builtIn, "ZapfDingbats") == 0;
  const bool symbolic =
      ownSymbols || ((flags & symbolicFlag) != 0 && (flags & nonsymbolicFlag) == 0);

  GlyphNames names{};
  font.dingbats = std::strcmp(builtIn, "ZapfDingbats") == 0;
  if (!font.dingbats) {
    readNames(dictionary, embedded || symbolic, names);
  }
  readSimpleTexts(dictionary, names, type3, font);
  if (!type3 && !embedded && !symbolic) {
    forgetUndrawn(names, font);
  }
  font.mayAskProgram = !type3 && (embedded || symbolic);

  if (descriptor) {
    font.ascent = static_cast<float>(descriptor.get("Ascent").number(800) / 1000);
    font.descent = static_cast<float>(descriptor.get("Descent").number(-200) / 1000);
  }
  const double scale = type3 ? dictionary.get("FontMatrix").at(0).number(0.001) : 0.001;
  const double missing = descriptor.get("MissingWidth").number();
  if (dictionary.get("Widths").isArray()) {
    readWidths(dictionary, missing, scale, font);
  } else if (!type3 && !embedded && !ownSymbols) {
    readBuiltInWidths(builtIn, font);
  }
  if (type3) {
    measureEm(dictionary, font);
  }
}

// The units of a Type 3 font are what its matrix makes of them: with a unit matrix and glyphs of so
// many pixels, size 1 is the size of a pixel.
void FontLoader::measureEm(const PdfObject& dictionary, Font& font) {
  constexpr double widthsInEm = 2;
  constexpr double smallest = 0.3;
  constexpr double largest = 3;
  double sum = 0;
  int count = 0;
  for (const CodeInfo& info : font.codes) {
    sum += std::abs(static_cast<double>(info.advance));
    count += info.advance != 0;
  }
  const PdfObject box = dictionary.get("FontBBox");
  const double height = std::abs((box.at(3).number() - box.at(1).number()) *
                                 dictionary.get("FontMatrix").at(3).number(0.001));
  const double em = count > 0 ? widthsInEm * sum / count : height;
  if (em > 0 && std::isfinite(em) && (em < smallest || em > largest)) {
    font.em = static_cast<float>(em);
  }
}

// Of a font that the file does not carry, only named glyphs can be drawn; a blank needs no name.
void FontLoader::forgetUndrawn(const GlyphNames& names, Font& font) {
  if (std::all_of(names.begin(), names.end(), [](const char* name) { return name == nullptr; })) {
    return;
  }
  for (std::size_t code = 0; code < font.codes.size(); ++code) {
    CodeInfo& info = font.codes[code];
    if ((info.traits & TraitUnknown) != 0 && code == blankCode) {
      font.setText(info, u" ");
    } else if ((info.traits & TraitUnknown) != 0 && names[code] == nullptr) {
      info.traits = CodeFilled | unsigned{TraitNothing};
    }
  }
}

void FontLoader::readNames(const PdfObject& dictionary, bool programHasEncoding,
                           GlyphNames& names) {
  const PdfObject encoding = dictionary.get("Encoding");
  const PdfObject base = encoding.isName() ? encoding : encoding.get("BaseEncoding");
  if (base.isName()) {
    pdf_load_encoding(names.data(), base.name());
  } else if (!programHasEncoding) {
    pdf_load_encoding(names.data(), "StandardEncoding");
  }

  const PdfObject differences = encoding.get("Differences");
  const int count = differences.size();
  int code = 0;
  for (int i = 0; i < count; ++i) {
    const PdfObject item = differences.at(i);
    if (item.isNumber()) {
      code = item.integer();
    } else if (item.isName() && code >= 0 && code < 256) {
      names[static_cast<std::size_t>(code++)] = item.name();
    }
  }
}

void FontLoader::readSimpleTexts(const PdfObject& dictionary, const GlyphNames& names, bool type3,
                                 Font& font) {
  const PdfObject map = dictionary.get("ToUnicode");
  CMap toUnicode;
  if (map.isStream()) {
    toUnicode = readCMap(map);
  }
  font.hasClusters = toUnicode.hasClusters();
  bool mapIsAscii = true;
  for (std::uint32_t code = blankCode + 1; code < 127; ++code) {
    std::u16string text;
    mapIsAscii = mapIsAscii && (!toUnicode.appendText(code, text) || !explains(text) ||
                                text == std::u16string(1, static_cast<char16_t>(code)));
  }
  const PdfObject glyphs = dictionary.get("CharProcs");
  for (std::uint32_t code = 0; code < 256; ++code) {
    std::u16string text;
    const bool leftOut = !toUnicode.appendText(code, text) && toUnicode.hasTexts();
    if (!explains(text) && names[code] != nullptr) {
      const std::u16string named = textOfGlyphName(names[code]);
      if (explains(named) || text.empty()) {
        text = named;
      }
    }
    // Glyphs of a bitmap font often bear meaningless names at the places of ASCII.
    const bool guess = !leftOut || mapIsAscii;
    if (type3 && guess && !explains(text) && code > blankCode && code < 127) {
      text.assign(1, static_cast<char16_t>(code));
    }
    font.setText(font.codes[code], text);
    font.codes[code].traits |= leftOut ? CodeLeftOut : 0;
    if (type3 && !explains(text) && (names[code] == nullptr || !glyphs.get(names[code]))) {
      font.codes[code].traits = CodeFilled | unsigned{TraitNothing};
    }
  }
}

void FontLoader::readWidths(const PdfObject& dictionary, double missing, double scale, Font& font) {
  for (CodeInfo& info : font.codes) {
    info.advance = static_cast<float>(missing * scale);
  }
  const PdfObject widths = dictionary.get("Widths");
  const int first = std::clamp(dictionary.get("FirstChar").integer(), -256, 256);
  const int count = std::min(widths.size(), 256);
  for (int i = 0; i < count; ++i) {
    const int code = first + i;
    if (code >= 0 && code < 256) {
      font.codes[static_cast<std::size_t>(code)].advance =
          static_cast<float>(widths.at(i).number() * scale);
    }
  }
}

void FontLoader::readBuiltInWidths(const char* baseFont, Font& font) {
  int length = 0;
  const bool known = fz_lookup_base14_font(m_mu.raw(), baseFont, &length) != nullptr;
  fz_font* metrics = nullptr;
  m_mu.attempt([&] { metrics = fz_new_base14_font(m_mu.raw(), known ? baseFont : "Helvetica"); });
  if (metrics == nullptr) {
    return;
  }
  for (CodeInfo& info : font.codes) {
    const std::u16string_view text = font.textOf(info);
    float advance = 0;
    m_mu.attempt([&] {
      for (const char16_t unit : text) {
        const int glyph = fz_encode_character(m_mu.raw(), metrics, unit);
        if (glyph > 0) {
          advance += fz_advance_glyph(m_mu.raw(), metrics, glyph, 0);
        }
      }
    });
    info.advance = advance;
  }
  fz_drop_font(m_mu.raw(), metrics);
}

CMap FontLoader::readCMap(const PdfObject& stream) {
  StreamData data;
  if (!m_streams.append(stream, longestCMap, data)) {
    return {};
  }
  return CMap::parse(data.view());
}

pdf_cmap* FontLoader::predefined(const char* name) {
  pdf_cmap* found = nullptr;
  m_mu.attempt([&] { found = pdf_load_system_cmap(m_mu.raw(), name); });
  return found;
}

void FontLoader::loadComposite(const PdfObject& dictionary, Font& font) {
  font.oneByte = false;
  font.name = plainName(dictionary.get("BaseFont").name());
  const PdfObject descendant = dictionary.get("DescendantFonts").at(0);
  readEncoding(dictionary.get("Encoding"), font, 0);
  if (font.predefinedEncoding == nullptr && font.encoding.empty()) {
    font.identityEncoding = true;
  }

  const PdfObject map = dictionary.get("ToUnicode");
  if (map.isStream()) {
    font.toUnicode = readCMap(map);
    font.hasClusters = font.toUnicode.hasClusters();
  } else if (map.isName()) {
    font.codesAreUnicode = std::strncmp(map.name(), "Identity", 8) == 0;
  }
  readCollection(descendant, font);

  const PdfObject descriptor = descendant.get("FontDescriptor");
  font.ascent = static_cast<float>(descriptor.get("Ascent").number(800) / 1000);
  font.descent = static_cast<float>(descriptor.get("Descent").number(-200) / 1000);
  readCidWidths(descendant, font);
  // MuPDF would expand a map in the file range by range, which a hostile one makes endless.
  font.mayAskProgram = dictionary.get("Encoding").isName() &&
                       (descriptor.get("FontFile2") || descriptor.get("FontFile3"));
}

void FontLoader::readEncoding(const PdfObject& encoding, Font& font, int depth) {
  constexpr int deepest = 4;
  if (depth > deepest) {
    return;
  }
  if (encoding.isName()) {
    const std::string_view name = encoding.name();
    font.vertical = font.vertical || (!name.empty() && (name == "V" || name.ends_with("-V")));
    if (name.substr(0, 9) == "Identity-") {
      font.identityEncoding = true;
    } else {
      font.predefinedEncoding = predefined(encoding.name());
    }
    return;
  }
  if (!encoding.isStream()) {
    return;
  }
  CMap map = readCMap(encoding);
  if (depth == 0) {
    font.vertical = map.vertical() || encoding.get("WMode").integer() == 1;
    font.encoding = std::move(map);
  }
  const PdfObject base = encoding.get("UseCMap");
  if (base) {
    readEncoding(base, font, depth + 1);
  } else if (!font.encoding.base().empty() && depth == 0) {
    font.predefinedEncoding = predefined(font.encoding.base().c_str());
  }
  font.identityEncoding = font.identityEncoding && font.encoding.empty();
}

void FontLoader::readCollection(const PdfObject& descendant, Font& font) {
  const PdfObject info = descendant.get("CIDSystemInfo");
  if (info.get("Registry").bytes() != "Adobe") {
    return;
  }
  const std::string_view ordering = info.get("Ordering").bytes();
  for (const char* known : {"CNS1", "GB1", "Japan1", "Korea1"}) {
    if (ordering == known) {
      font.collectionToUnicode = predefined(("Adobe-" + std::string(known) + "-UCS2").c_str());
    }
  }
}

void FontLoader::readCidWidths(const PdfObject& descendant, Font& font) {
  CidMetrics& metrics = font.advances;
  const int values = font.vertical ? 3 : 1; // W2 gives the advance and the origin's two coordinates
  const double standard =
      font.vertical ? descendant.get("DW2").at(1).number(-1000) : descendant.get("DW").number(1000);
  metrics.otherwise = static_cast<float>(standard / 1000);
  const PdfObject widths = descendant.get(font.vertical ? "W2" : "W");
  const int count = widths.size();
  for (int i = 0; i + 1 < count;) {
    const int first = widths.at(i).integer();
    const PdfObject next = widths.at(i + 1);
    if (next.isArray()) {
      const int inner = next.size();
      for (int k = 0; k < inner; k += values) {
        metrics.add(first + k / values, first + k / values,
                    static_cast<float>(next.at(k).number() / 1000));
      }
      i += 2;
    } else {
      metrics.add(first, next.integer(), static_cast<float>(widths.at(i + 2).number() / 1000));
      i += 2 + values;
    }
  }
  metrics.sort();
}

} // namespace glyphrun
