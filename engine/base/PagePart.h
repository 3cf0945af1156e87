// PagePart: which outputs of a source are this run's.
#pragma once

#include <QStringView>

#include <limits>

namespace folivex {

/// Those whose first page lies within first..last (from 1, inclusive). All pages are read, planned
/// and named in any case, so that several runs, each with a part of its own, make together what
/// one makes alone.
struct PagePart {
  int first = 1;
  int last = std::numeric_limits<int>::max();

  bool isAll() const { return *this == PagePart(); }
  bool contains(int page) const { return page >= first && page <= last; }

  /// Of a text like "1-5000"; one that is not valid when it is none.
  static PagePart of(QStringView text);
  bool isValid() const { return first >= 1 && first <= last; }

  bool operator==(const PagePart&) const = default;
};

} // namespace folivex
