#include "engine/output/PageAccount.h"

#include "engine/plan/PageSpans.h"

#include <algorithm>

namespace folivex {

void PageAccount::start(int pageCount) {
  m_pages.assign(static_cast<std::size_t>(std::max(pageCount, 0)), Page());
}

void PageAccount::add(const PageAccount& more) {
  m_pages.insert(m_pages.end(), more.m_pages.begin(), more.m_pages.end());
}

void PageAccount::written(int first, int last) {
  change(first, last, [](Page& page) { ++page.holders; });
}

void PageAccount::overwritten(int first, int last) {
  leave(first, last, Fate::Replaced);
}

void PageAccount::withdrawn(int first, int last) {
  leave(first, last, Fate::Failed);
}

void PageAccount::replaced(int first, int last) {
  raise(first, last, Fate::Replaced);
}

void PageAccount::handedOn(int first, int last) {
  raise(first, last, Fate::HandedOn);
}

void PageAccount::failed(int first, int last) {
  raise(first, last, Fate::Failed);
}

void PageAccount::elsewhere(int first, int last) {
  raise(first, last, Fate::Elsewhere);
}

void PageAccount::stopped(int first, int last) {
  raise(first, last, Fate::Stopped);
}

template <typename Change> void PageAccount::change(int first, int last, Change change) {
  last = std::min(last, pageCount());
  for (int page = std::max(first, 1); page <= last; ++page) {
    change(m_pages[static_cast<std::size_t>(page - 1)]);
  }
}

/// One output less holds it.
void PageAccount::leave(int first, int last, Fate fate) {
  change(first, last, [fate](Page& page) {
    page.holders -= page.holders > 0 ? 1 : 0;
    page.fate = std::max(page.fate, fate);
  });
}

void PageAccount::raise(int first, int last, Fate fate) {
  change(first, last, [fate](Page& page) { page.fate = std::max(page.fate, fate); });
}

int PageAccount::count(Fate fate) const {
  return static_cast<int>(std::count_if(m_pages.begin(), m_pages.end(),
                                        [fate](const Page& page) { return page.told() == fate; }));
}

std::vector<int> PageAccount::numbersOf(Fate fate) const {
  std::vector<int> pages;
  for (int page = 1; page <= pageCount(); ++page) {
    if (m_pages[static_cast<std::size_t>(page - 1)].told() == fate) {
      pages.push_back(page);
    }
  }
  return pages;
}

std::vector<IntRange> PageAccount::runsOf(Fate fate) const {
  return pageRuns(numbersOf(fate));
}

QString PageAccount::pagesOf(Fate fate) const {
  return pageSpans(numbersOf(fate));
}

QString PageAccount::summary(int fileCount) const {
  QString line = QStringLiteral("%1 page(s): %2 in %3 file(s)")
                     .arg(pageCount())
                     .arg(inOutputs())
                     .arg(fileCount);
  const auto add = [&](Fate fate, const QString& what) {
    if (const int pages = count(fate); pages > 0) {
      line += QStringLiteral(", %1 %2 (%3)").arg(pages).arg(what, pagesOf(fate));
    }
  };
  add(Fate::InNone, QStringLiteral("in no range"));
  add(Fate::Elsewhere, QStringLiteral("of other parts"));
  add(Fate::HandedOn, QStringLiteral("handed to the command"));
  add(Fate::Replaced, QStringLiteral("only in files that a later one of the same name replaced"));
  add(Fate::Stopped, QStringLiteral("not written, since the run was stopped"));
  add(Fate::Failed, QStringLiteral("FAILED"));
  return line + QLatin1Char('.');
}

} // namespace folivex
