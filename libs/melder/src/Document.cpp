#include "Document.h"

#include "common/Failure.h"
#include "melder/melder.h"
#include "pages/QuietDocument.h"

#include <algorithm>
#include <cstdio>

namespace melder {

namespace {

/// Where a sound file may still have its last words; padding and mail footers come behind them.
constexpr qpdf_offset_t tailSize = qpdf_offset_t{64} * 1024;

[[noreturn]] void failDamaged(const std::string& path, const std::string& reason) {
  throw common::Failure(MELDER_DAMAGED, path + ": " + reason);
}

bool isVersion(const std::string& text) {
  return text.size() == 3 && text[1] == '.' && text[0] >= '1' && text[0] <= '2';
}

} // namespace

Document::Document(const std::string& path, common::Links links)
    : m_path(path), m_links(links),
      m_input(std::make_shared<pages::SourceInput>(path, nullptr, links)),
      m_pdf(pages::quietDocument()) {
  requireEnd();
  m_pdf->processInputSource(m_input);
  m_pages = std::make_unique<pages::PageTable>(*m_pdf);
  m_isRebuilt = pages::isRepaired(*m_pdf);
  countPages();
}

/// A file that lost its end may still be repaired to something smaller.
void Document::requireEnd() {
  m_input->seek(0, SEEK_END);
  const qpdf_offset_t size = m_input->tell();
  if (size == 0) {
    failDamaged(m_path, "the file is empty");
  }
  const qpdf_offset_t length = std::min(size, tailSize);
  std::string tail(static_cast<size_t>(length), '\0');
  m_input->seek(size - length, SEEK_SET);
  tail.resize(m_input->read(tail.data(), tail.size()));
  m_input->rewind();
  if (tail.find("startxref") == std::string::npos) {
    failDamaged(m_path, "no PDF, or cut off: the end of a PDF is missing");
  }
}

void Document::countPages() {
  QPDFObjectHandle count = catalog().getKey("/Pages").getKey("/Count");
  if (!count.isInteger() || count.getIntValue() != pageCount()) {
    failDamaged(m_path, "damaged: pages are missing (found " + std::to_string(pageCount()) +
                            ", announced " + count.unparse() + ")");
  }
}

std::string Document::version() {
  std::string version = m_pdf->getPDFVersion();
  QPDFObjectHandle later = catalog().getKey("/Version");
  if (later.isName()) {
    version = std::max(version, later.getName().substr(1));
  }
  return isVersion(version) ? version : std::string();
}

void Document::requireUnchanged() const {
  if (m_input->isCut() || common::FileIdentity::of(m_path, m_links) != m_input->identity()) {
    throw common::Failure(MELDER_CANNOT_WRITE,
                          m_path + ": another program changed the file while it was read");
  }
}

} // namespace melder
