#include "app/viewer/PageSearch.h"

#include "app/viewer/PageLoader.h"
#include "app/viewer/PageWordMap.h"

#include <algorithm>

namespace folivex {

PageSearch::PageSearch(CPDFTextDumpInit& library)
    : m_loader(std::make_unique<PageLoader>(library, PageLoader::Reads::Words)) {
  m_loader->onOpened = [this](const OpenedFile& file) {
    if (file.pageCount == 0 && !m_pages.empty()) {
      stop();
      onNotFound();
    }
  };
  m_loader->onPage = [this](const std::shared_ptr<const ViewedPage>& page) { arrived(*page); };
}

PageSearch::~PageSearch() = default;

void PageSearch::start(const ViewedFile& file, const QString& text, int firstPage, int pageCount,
                       Way way) {
  if (file != m_file) {
    m_file = file;
    m_loader->open(file);
  }
  m_text = text;
  std::vector<int> pages;
  for (int i = 0; i < pageCount; ++i) {
    const int offset = way == Way::Forwards ? i : pageCount - i;
    pages.push_back((firstPage - 1 + offset) % pageCount + 1);
  }
  m_pages.assign(pages.rbegin(), pages.rend());
  request();
}

/// A few at a time: answers that come faster than they are looked at would leave the window's other
/// events no turn.
void PageSearch::request() {
  constexpr std::size_t most = 32;
  m_asked = std::min(m_pages.size(), most);
  m_loader->want({m_pages.rbegin(), m_pages.rbegin() + static_cast<std::ptrdiff_t>(m_asked)},
                 PageSizing());
}

void PageSearch::stop() {
  m_pages.clear();
  request();
}

void PageSearch::arrived(const ViewedPage& page) {
  if (m_pages.empty() || m_pages.back() != page.page) {
    return; // of a search given up
  }
  m_pages.pop_back();
  if (!PageWordMap(page.words).wordsWith(m_text).empty()) {
    stop();
    onFound(page.page);
  } else if (m_pages.empty()) {
    onNotFound();
  } else {
    onLookedAt(page.page);
    if (--m_asked == 0) {
      request();
    }
  }
}

} // namespace folivex
