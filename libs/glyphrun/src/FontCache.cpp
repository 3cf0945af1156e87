#include "FontLoader.h"

#include <algorithm>
#include <cstring>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace glyphrun {

namespace {

constexpr std::size_t mostFonts = 512;
constexpr int mostCids = 65536;
constexpr int mostOutlines = 4096;

/// What a font program knows of its glyphs: its own map from characters to them, read backwards,
/// and which of them draw nothing.
class ProgramTexts {
public:
  ProgramTexts(MuContext& mu, pdf_font_desc& program) : m_mu(mu), m_program(program) {
    const bool symbols = program.font != nullptr && !program.is_embedded &&
                         std::strcmp(fz_font_name(mu.raw(), program.font), "ZapfDingbats") == 0;
    if (program.font != nullptr && (program.is_embedded != 0 || symbols)) {
      m_face = static_cast<FT_Face>(fz_font_ft_face(mu.raw(), program.font));
    }
    if (m_face == nullptr || FT_Select_Charmap(m_face, FT_ENCODING_UNICODE) != 0) {
      return;
    }
    FT_UInt glyph = 0;
    for (FT_ULong c = FT_Get_First_Char(m_face, &glyph);
         glyph != 0 && m_characters.size() < mostCids; c = FT_Get_Next_Char(m_face, c, &glyph)) {
      if (traitsOf(static_cast<char32_t>(c)) != TraitUnknown) {
        m_characters.emplace(glyph, static_cast<char32_t>(c));
      }
    }
  }

  bool any() const { return m_face != nullptr; }

  /// True when a one-byte code leads to no glyph.
  bool missing(int code) const {
    return m_face != nullptr && pdf_font_cid_to_gid(m_mu.raw(), &m_program, code) <= 0;
  }

  /// The character of a code or CID; 0 when nothing is known.
  char32_t of(int cid) const {
    const int glyph = m_face == nullptr ? -1 : pdf_font_cid_to_gid(m_mu.raw(), &m_program, cid);
    if (glyph <= 0 || glyph >= m_face->num_glyphs) {
      return 0;
    }
    const auto found = m_characters.find(static_cast<FT_UInt>(glyph));
    if (found != m_characters.end()) {
      return found->second;
    }
    return drawsNothing(glyph) ? U' ' : 0;
  }

private:
  bool drawsNothing(int glyph) const {
    return m_face->num_glyphs <= mostOutlines &&
           FT_Load_Glyph(m_face, static_cast<FT_UInt>(glyph), FT_LOAD_NO_SCALE) == 0 &&
           m_face->glyph->format == FT_GLYPH_FORMAT_OUTLINE &&
           m_face->glyph->outline.n_contours == 0 && m_face->glyph->advance.x > 0;
  }

  MuContext& m_mu;
  pdf_font_desc& m_program;
  FT_Face m_face = nullptr;
  std::unordered_map<FT_UInt, char32_t> m_characters;
};

} // namespace

FontCache::FontCache(MuContext& mu, pdf_document* document, StreamReader& streams)
    : m_mu(mu), m_document(document), m_streams(streams) {}

FontCache::~FontCache() {
  for (auto& [number, entry] : m_numbered) {
    drop(entry);
  }
  for (Entry& entry : m_unnumbered) {
    drop(entry);
  }
}

void FontCache::drop(Entry& entry) {
  pdf_drop_obj(m_mu.raw(), entry.dictionary);
  entry.dictionary = nullptr;
}

Font* FontCache::find(const PdfObject& dictionary) {
  if (!dictionary.isDict()) {
    if (!m_substitute) {
      m_substitute = FontLoader(m_mu, m_streams).makeSubstitute();
    }
    return m_substitute.get();
  }
  const int number = dictionary.objectNumber();
  if (number != 0) {
    const auto known = m_numbered.find(number);
    if (known != m_numbered.end()) {
      known->second.font->usedOnPage = true;
      return known->second.font.get();
    }
  } else {
    for (const Entry& entry : m_unnumbered) {
      if (entry.dictionary == dictionary.raw()) {
        return entry.font.get();
      }
    }
  }
  return add(dictionary, FontLoader(m_mu, m_streams).load(dictionary));
}

Font* FontCache::add(const PdfObject& dictionary, std::unique_ptr<Font> font) {
  font->objectNumber = dictionary.objectNumber();
  font->usedOnPage = true;
  Font* result = font.get();
  Entry& entry =
      font->objectNumber != 0 ? m_numbered[font->objectNumber] : m_unnumbered.emplace_back();
  entry.font = std::move(font);
  entry.dictionary = pdf_keep_obj(m_mu.raw(), dictionary.raw());
  // Without widths only the program knows how far a code goes.
  const bool widthless = result->oneByte && !result->drawnByContent &&
                         std::all_of(result->codes.begin(), result->codes.end(),
                                     [](const CodeInfo& info) { return info.advance == 0; });
  if (widthless) {
    askProgram(*result);
  }
  return result;
}

void FontCache::endPage() {
  for (Entry& entry : m_unnumbered) {
    drop(entry);
  }
  m_unnumbered.clear();
  const bool full = m_numbered.size() > mostFonts;
  for (auto it = m_numbered.begin(); it != m_numbered.end();) {
    if (full && !it->second.font->usedOnPage) {
      drop(it->second);
      it = m_numbered.erase(it);
    } else {
      it->second.font->usedOnPage = false;
      ++it;
    }
  }
}

// The font as MuPDF loads it, without the parts that have been read already and that a hostile file
// could make endless for MuPDF.
pdf_font_desc* FontCache::loadWithMuPdf(pdf_obj* dictionary) {
  fz_context* ctx = m_mu.raw();
  pdf_obj* copy = nullptr;
  pdf_obj* descendant = nullptr;
  pdf_font_desc* loaded = nullptr;
  m_mu.attempt([&] {
    copy = pdf_copy_dict(ctx, dictionary);
    pdf_dict_dels(ctx, copy, "ToUnicode");
    pdf_obj* first = pdf_array_get(ctx, pdf_dict_gets(ctx, dictionary, "DescendantFonts"), 0);
    if (pdf_is_dict(ctx, first)) {
      descendant = pdf_copy_dict(ctx, first);
      pdf_dict_dels(ctx, descendant, "W");
      pdf_dict_dels(ctx, descendant, "W2");
      pdf_obj* list = pdf_new_array(ctx, m_document, 1);
      pdf_dict_puts_drop(ctx, copy, "DescendantFonts", list);
      pdf_array_push(ctx, list, descendant);
    }
    loaded = pdf_load_font(ctx, m_document, nullptr, copy);
  });
  pdf_drop_obj(ctx, descendant);
  pdf_drop_obj(ctx, copy);
  return loaded;
}

void FontCache::askProgram(Font& font) {
  font.mayAskProgram = false;
  pdf_obj* dictionary = nullptr;
  if (font.objectNumber != 0) {
    dictionary = m_numbered[font.objectNumber].dictionary;
  }
  for (const Entry& entry : m_unnumbered) {
    if (entry.font.get() == &font) {
      dictionary = entry.dictionary;
    }
  }
  pdf_font_desc* program = dictionary == nullptr ? nullptr : loadWithMuPdf(dictionary);
  if (program == nullptr) {
    return;
  }
  if (font.oneByte) {
    explainOneByte(font, *program);
  } else {
    explainCids(font, *program);
  }
  pdf_drop_font(m_mu.raw(), program);
}

void FontCache::explainOneByte(Font& font, pdf_font_desc& program) {
  const bool widthless = std::all_of(font.codes.begin(), font.codes.end(),
                                     [](const CodeInfo& info) { return info.advance == 0; });
  const ProgramTexts texts(m_mu, program);
  for (std::size_t code = 0; code < font.codes.size(); ++code) {
    CodeInfo& info = font.codes[code];
    if (widthless) {
      info.advance =
          static_cast<float>(pdf_lookup_hmtx(m_mu.raw(), &program, static_cast<int>(code)).w) /
          1000;
    }
    if ((info.traits & TraitUnknown) == 0) {
      continue;
    }
    std::u16string text;
    if (code < program.cid_to_ucs_len && !font.dingbats) {
      appendCodePoint(text, program.cid_to_ucs[code]);
    }
    if (text.empty() || (traitsOf(text) & TraitUnknown) != 0) {
      if (const char32_t known = texts.of(static_cast<int>(code))) {
        text.clear();
        appendCodePoint(text, known);
      } else if (code == u' ' && texts.missing(u' ')) {
        text = u" ";
      }
    }
    const std::uint16_t leftOut = info.traits & CodeLeftOut;
    font.setText(info, text);
    info.traits |= leftOut;
  }
}

void FontCache::explainCids(Font& font, pdf_font_desc& program) {
  const ProgramTexts texts(m_mu, program);
  for (int cid = 0; cid < mostCids && texts.any(); ++cid) {
    if (const char32_t known = texts.of(cid)) {
      font.programTexts.emplace(static_cast<std::uint32_t>(cid), known);
    }
  }
  font.forgetLookUps();
}

} // namespace glyphrun
