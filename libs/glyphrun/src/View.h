// A file opened for looking at: pages as pictures, and their words.
#pragma once

#include "Outline.h"
#include "PageReader.h"
#include "ReadAhead.h"

#include <glyphrun/glyphrun.h>

#include <atomic>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace glyphrun {

/// Pages count from 1. What fails throws common::Failure.
class View {
public:
  View(std::u16string path, std::u16string password)
      : m_path(std::move(path)), m_password(std::move(password)),
        m_reader(PdfFile::open(m_path, m_password, {}, &m_isAborted)) {}

  std::int32_t pageCount() const { return m_reader.file().pageCount(); }
  PageFrame frameOf(std::int32_t page);
  /// `scale` pixels a point; the pixels are the caller's, to be freed.
  GlyphrunImage render(std::int32_t page, double scale);
  void setWordSpacing(double factor);
  void setReadAhead(std::int32_t threads);
  /// In reading order; the view's own until the next call.
  const std::vector<GlyphrunWord>& words(std::int32_t page);
  /// GLYPHRUN_PAGE_... of the page whose words were read last.
  std::int32_t pageState() const { return static_cast<std::int32_t>(m_pageWords.state); }
  /// Read when it is asked for first.
  const std::vector<OutlineEntry>& outline();
  /// For any thread; see AbortView.
  void abort();

private:
  void requirePage(std::int32_t page);
  Outcome draw(std::int32_t page, int width, int height, unsigned char* pixels);

  std::atomic<bool> m_isAborted = false; ///< ends what heeds no cookie; outlives the reader
  std::stop_source m_abort;              ///< reaches the cookie
  std::u16string m_path;
  std::u16string m_password;
  PageReader m_reader;
  double m_wordSpacing = 0;
  std::unique_ptr<ReadAhead> m_ahead; ///< may be null
  PageWords m_pageWords;
  std::vector<GlyphrunWord> m_list;
  std::optional<std::vector<OutlineEntry>> m_outline;
};

} // namespace glyphrun
