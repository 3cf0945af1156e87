// What the pages of a document share and need not find out again: hidden layers, contents of forms.
#pragma once

#include "PdfObject.h"

#include <cstddef>
#include <memory>
#include <unordered_map>

namespace glyphrun {

/// Layers of a document: which are hidden on the screen.
class LayerVisibility {
public:
  LayerVisibility(MuContext& mu, pdf_document* document) : m_mu(mu), m_document(document) {}
  /// Of an optional-content group or membership dictionary.
  bool hides(const PdfObject& content);

private:
  MuContext& m_mu;
  pdf_document* m_document;
  std::unordered_map<int, bool> m_known;
};

/// Contents of form XObjects that pages share, up to some megabytes.
class FormCache {
public:
  explicit FormCache(StreamReader& streams) : m_streams(streams) {}

  struct Form {
    StreamData data;
    bool textless = false; ///< showed no text when it was last drawn in full
  };
  /// Null when the stream cannot be read. `limit` bounds what is read.
  std::shared_ptr<Form> find(const PdfObject& stream, std::size_t limit);

private:
  StreamReader& m_streams;
  std::unordered_map<int, std::shared_ptr<Form>> m_forms;
  std::size_t m_bytes = 0;
};

} // namespace glyphrun
