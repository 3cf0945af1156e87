// PageCache: the pages looked at last, within a limit of memory.
#pragma once

#include "app/viewer/ViewedPage.h"

#include <list>
#include <memory>

namespace folivex {

/// Keeps one picture a page. The page put in or found last stays whatever its size.
class PageCache {
public:
  explicit PageCache(qint64 mostBytes) : m_mostBytes(mostBytes) {}

  void put(std::shared_ptr<const ViewedPage> page);
  /// Null when the page is not kept.
  std::shared_ptr<const ViewedPage> find(int page);
  void clear();

  qint64 bytes() const { return m_bytes; }

private:
  using Pages = std::list<std::shared_ptr<const ViewedPage>>;

  Pages::iterator placeOf(int page);
  void drop(Pages::iterator place);

  qint64 m_mostBytes;
  qint64 m_bytes = 0;
  Pages m_pages; ///< the one used last in front
};

} // namespace folivex
