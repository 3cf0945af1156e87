// Document: one of the two files of an append, parsed and found whole.
#pragma once

#include "pages/PageTable.h"
#include "pages/SourceInput.h"

#include <qpdf/QPDF.hh>

#include <memory>
#include <string>

namespace melder {

/// A parsed file. Nothing is printed; what can be repaired is repaired.
class Document {
public:
  /// Opens `path` (UTF-8) with the empty password. Throws common::Failure or what qpdf throws when
  /// the file cannot be read, is cut off at its end or holds other pages than it says.
  explicit Document(const std::string& path, common::Links links = common::Links::Followed);

  [[nodiscard]] const std::string& path() const { return m_path; }
  [[nodiscard]] QPDF& pdf() { return *m_pdf; }
  [[nodiscard]] QPDFObjectHandle catalog() { return m_pdf->getRoot(); }
  [[nodiscard]] const pages::PageTable& pages() const { return *m_pages; }
  [[nodiscard]] int32_t pageCount() const { return m_pages->count(); }
  [[nodiscard]] QPDFObjectHandle page(int32_t index) {
    return m_pdf->getObject(m_pages->object(index));
  }
  /// Value of an entry of the nodes above the page, null when none of them has it.
  [[nodiscard]] QPDFObjectHandle inherited(int32_t index, const std::string& key) const {
    return m_pages->inherited(*m_pdf, index, key);
  }
  /// "1.7" and the like, empty when the file says something else.
  [[nodiscard]] std::string version();
  /// Whether its cross-reference table was of no use, so that objects may be missing.
  [[nodiscard]] bool isRebuilt() const { return m_isRebuilt; }
  /// Throws common::Failure when the file at the path is no longer the one that was opened.
  void requireUnchanged() const;

private:
  void requireEnd();
  void countPages();

  std::string m_path;
  common::Links m_links;
  std::shared_ptr<pages::SourceInput> m_input;
  std::shared_ptr<QPDF> m_pdf;
  std::unique_ptr<pages::PageTable> m_pages;
  bool m_isRebuilt = false;
};

} // namespace melder
