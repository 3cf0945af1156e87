// Findings: what a run saw that did not stop it.
#pragma once

#include "engine/base/RunFinding.h"

#include <vector>

namespace folivex {

/// Collects pages that could not be read well, so that a thousand of them make one line and not a
/// thousand. Page numbers count from 1 and come in ascending order.
class Findings {
public:
  void damagedPage(int page) { m_damaged.push_back(page); }
  void unreadablePage(int page) { m_unreadable.push_back(page); }
  void emptyPage() { ++m_empty; }
  void readPage() { ++m_read; }

  /// One for each kind, in plain words; empty when all was well.
  std::vector<Finding> all() const;

private:
  std::vector<int> m_damaged;
  std::vector<int> m_unreadable;
  int m_empty = 0;
  int m_read = 0;
};

} // namespace folivex
