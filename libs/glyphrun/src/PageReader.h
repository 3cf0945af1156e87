// One document read page by page: a context, a document and its fonts, for one thread.
#pragma once

#include "ContentReader.h"
#include "PageWords.h"
#include "PdfFile.h"

#include <memory>

namespace glyphrun {

/// Reads the words of single pages of one file. What a page costs does not grow with the document.
class PageReader {
public:
  explicit PageReader(std::unique_ptr<PdfFile> file);

  PdfFile& file() const { return *m_file; }
  void setWordSpacing(double factor) { m_tolerance = JoiningTolerance::fromFactor(factor); }
  /// Words of the page `index` (from 0, and there). Storage of `out` is used again.
  void read(std::int32_t index, PageWords& out);

private:
  void readContents(std::int32_t index, const PageFrame& frame);
  void readAnnotations(std::int32_t index, const PageFrame& frame);
  void forgetNowAndThen(std::int32_t index);

  std::unique_ptr<PdfFile> m_file;
  StreamReader m_streams;
  FontCache m_fonts;
  LayerVisibility m_layers;
  WordAssembler m_words;
  ContentReader m_content;
  JoiningTolerance m_tolerance = JoiningTolerance::fromFactor(0);
  StreamData m_data;
  std::int32_t m_sinceForgotten = 0;
};

} // namespace glyphrun
