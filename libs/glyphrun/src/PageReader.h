// One document read page by page: a context, a document and its fonts, for one thread.
#pragma once

#include "ContentReader.h"
#include "PageWords.h"
#include "PdfFile.h"

#include <memory>

namespace glyphrun {

/** Reads the words of single pages of one file. What a page costs does not grow with the document.
 */
class PageReader {
public:
  explicit PageReader(std::unique_ptr<PdfFile> file);

  PdfFile& file() { return *file_; }
  void setWordSpacing(double factor) { tolerance_ = JoiningTolerance::fromFactor(factor); }
  /** Words of the page `index` (from 0, and there). Storage of `out` is used again. */
  void read(std::int32_t index, PageWords& out);

private:
  void readContents(std::int32_t index, const PageFrame& frame);
  void readAnnotations(std::int32_t index, const PageFrame& frame);
  void forgetNowAndThen();

  std::unique_ptr<PdfFile> file_;
  StreamReader streams_;
  FontCache fonts_;
  LayerVisibility layers_;
  WordAssembler words_;
  ContentReader content_;
  JoiningTolerance tolerance_ = JoiningTolerance::fromFactor(0);
  StreamData data_;
  std::int32_t sinceForgotten_ = 0;
};

} // namespace glyphrun
