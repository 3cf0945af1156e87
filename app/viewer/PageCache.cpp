#include "app/viewer/PageCache.h"

#include <algorithm>
#include <iterator>

namespace folivex {

PageCache::Pages::iterator PageCache::placeOf(int page) {
  return std::find_if(m_pages.begin(), m_pages.end(),
                      [page](const auto& kept) { return kept->page == page; });
}

void PageCache::drop(Pages::iterator place) {
  m_bytes -= (*place)->bytes();
  m_pages.erase(place);
}

void PageCache::put(std::shared_ptr<const ViewedPage> page) {
  if (const auto older = placeOf(page->page); older != m_pages.end()) {
    drop(older);
  }
  m_bytes += page->bytes();
  m_pages.push_front(std::move(page));
  while (m_pages.size() > 1 && m_bytes > m_mostBytes) {
    drop(std::prev(m_pages.end()));
  }
}

std::shared_ptr<const ViewedPage> PageCache::find(int page) {
  const auto found = placeOf(page);
  if (found == m_pages.end()) {
    return nullptr;
  }
  m_pages.splice(m_pages.begin(), m_pages, found);
  return m_pages.front();
}

void PageCache::clear() {
  m_pages.clear();
  m_bytes = 0;
}

} // namespace folivex
