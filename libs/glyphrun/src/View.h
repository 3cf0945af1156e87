// A file opened for looking at: pages as pictures, and their words.
#pragma once

#include "PageReader.h"

#include <glyphrun/glyphrun.h>

#include <memory>
#include <string>
#include <vector>

namespace glyphrun {

class View {
public:
  /** Null on failure; `result` and `reason` tell. */
  static std::unique_ptr<View> open(const std::u16string& path, const std::u16string& password,
                                    Result& result, std::string& reason);

  std::int32_t pageCount() { return m_reader.file().pageCount(); }
  /** `page` from 1, here and below. */
  Result pageSize(std::int32_t page, double& width, double& height);
  Result render(std::int32_t page, double scale, GlyphrunImage& image, std::string& reason);
  void setWordSpacing(double factor) { m_reader.setWordSpacing(factor); }
  Result words(std::int32_t page, const GlyphrunWord*& first, std::int32_t& count);

private:
  explicit View(std::unique_ptr<PdfFile> file) : m_reader(std::move(file)) {}
  bool has(std::int32_t page) { return page >= 1 && page <= pageCount(); }
  Outcome draw(std::int32_t page, int width, int height, unsigned char* pixels);

  PageReader m_reader;
  PageWords m_pageWords;
  std::vector<GlyphrunWord> m_list;
};

} // namespace glyphrun
