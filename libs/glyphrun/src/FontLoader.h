// From font dictionaries to fonts, and the fonts of a document that are kept from page to page.
#pragma once

#include "Font.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace glyphrun {

/// Fonts of one document. A font is loaded once, by the number of its object; the font program
/// (FontFile) is touched only when the dictionary alone leaves a code of the text unexplained,
/// since merged files carry the same program thousands of times.
class FontCache {
public:
  FontCache(MuContext& mu, pdf_document* document, StreamReader& streams);
  ~FontCache();
  FontCache(const FontCache&) = delete;
  FontCache& operator=(const FontCache&) = delete;

  /// The font of a dictionary; never null: a missing or broken one gives a plain substitute.
  Font* find(const PdfObject& dictionary);
  /// Lets the font program explain codes without text. Called when the text first uses such a code.
  void askProgram(Font& font);
  /// To be called between pages: fonts without a number of their own, and long unused ones, go.
  void endPage();

private:
  struct Entry {
    std::unique_ptr<Font> font;
    pdf_obj* dictionary = nullptr; ///< kept
  };

  Font* add(const PdfObject& dictionary, std::unique_ptr<Font> font);
  void drop(Entry& entry);
  pdf_font_desc* loadWithMuPdf(pdf_obj* dictionary);
  void explainOneByte(Font& font, pdf_font_desc& program);
  void explainCids(Font& font, pdf_font_desc& program);

  MuContext& m_mu;
  pdf_document* m_document;
  StreamReader& m_streams;
  std::unordered_map<int, Entry> m_numbered;
  std::vector<Entry> m_unnumbered;
  std::unique_ptr<Font> m_substitute;
};

/// Builds one font from its dictionary.
class FontLoader {
public:
  FontLoader(MuContext& mu, StreamReader& streams) : m_mu(mu), m_streams(streams) {}

  /// A font with the standard encoding and the widths of Helvetica.
  std::unique_ptr<Font> makeSubstitute();
  std::unique_ptr<Font> load(const PdfObject& dictionary);

private:
  using GlyphNames = std::array<const char*, 256>;

  void loadSimple(const PdfObject& dictionary, bool type3, Font& font);
  void loadComposite(const PdfObject& dictionary, Font& font);
  void readNames(const PdfObject& dictionary, bool programHasEncoding, GlyphNames& names);
  void readSimpleTexts(const PdfObject& dictionary, const GlyphNames& names, bool type3,
                       Font& font);
  void readWidths(const PdfObject& dictionary, double missing, double scale, Font& font);
  static void forgetUndrawn(const GlyphNames& names, Font& font);
  static void measureEm(const PdfObject& dictionary, Font& font);
  void readBuiltInWidths(const char* baseFont, Font& font);
  void readEncoding(const PdfObject& encoding, Font& font, int depth);
  void readCollection(const PdfObject& descendant, Font& font);
  void readCidWidths(const PdfObject& descendant, Font& font);
  CMap readCMap(const PdfObject& stream);
  pdf_cmap* predefined(const char* name);

  MuContext& m_mu;
  StreamReader& m_streams;
};

} // namespace glyphrun
