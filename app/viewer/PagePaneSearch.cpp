// Finding words on the pages.
#include "app/viewer/FindBar.h"
#include "app/viewer/PageArea.h"
#include "app/viewer/PagePane.h"

namespace folivex {

void PagePane::find() {
  if (m_pageCount > 0) {
    m_findBar->open();
    seek();
  }
}

/// The text is another one: from the page shown on.
void PagePane::seek() {
  endSearch();
  if (m_findBar->isHidden() || m_findBar->text().trimmed().isEmpty() || m_pageCount == 0) {
    return;
  }
  m_canvas->seek(m_findBar->text());
  m_searchWay = 1;
  if (m_canvas->hitCount() > 0) {
    goToHit();
  } else {
    startSearch(m_page, 1);
  }
}

void PagePane::findNext(int way) {
  if (m_findBar->isHidden() || m_findBar->text().trimmed().isEmpty()) {
    return find();
  }
  const int hit = m_canvas->hit() + way;
  if (m_canvas->hit() >= 0 && hit >= 0 && hit < m_canvas->hitCount()) {
    m_canvas->goToHit(hit);
    return tellHit();
  }
  m_searchWay = way;
  startSearch(way > 0 ? m_page % m_pageCount + 1 : (m_page + m_pageCount - 2) % m_pageCount + 1,
              way);
}

void PagePane::startSearch(int firstPage, int way) {
  m_pageFound = 0;
  m_findBar->tell(QStringLiteral("Looking at page %1 ...").arg(firstPage));
  m_searcher->start(m_file, m_findBar->text(), firstPage, m_pageCount,
                    way > 0 ? PageSearch::Way::Forwards : PageSearch::Way::Backwards);
}

void PagePane::goToFound(int page) {
  m_pageFound = page;
  if (page != m_page) {
    goToPage(page);
  } else {
    goToHit();
  }
}

/// As soon as the words of the page are there.
void PagePane::goToHit() {
  const int hits = m_canvas->hitCount();
  if (hits > 0) {
    m_pageFound = 0;
    m_canvas->goToHit(m_searchWay > 0 ? 0 : hits - 1);
    tellHit();
  }
}

void PagePane::tellHit() {
  m_findBar->tell(QStringLiteral("Page %1: place %2 of %3")
                      .arg(m_page)
                      .arg(m_canvas->hit() + 1)
                      .arg(m_canvas->hitCount()));
}

void PagePane::endSearch() {
  if (m_searcher) {
    m_searcher->stop();
  }
  m_pageFound = 0;
  m_canvas->seek({});
  m_findBar->tell({});
}

} // namespace folivex
