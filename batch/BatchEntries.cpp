#include "batch/BatchEntries.h"

#include <algorithm>
#include <iterator>

namespace folivex {

namespace {

/// Sorted, without overlaps and neighbours, within `count` rows.
std::vector<RowRange> merged(std::vector<RowRange> ranges, int count) {
  std::sort(ranges.begin(), ranges.end(),
            [](const RowRange& a, const RowRange& b) { return a.first < b.first; });
  std::vector<RowRange> all;
  for (RowRange range : ranges) {
    range = {std::max(range.first, 0), std::min(range.last, count - 1)};
    if (range.first > range.last) {
      continue;
    }
    if (!all.empty() && range.first <= all.back().last + 1) {
      all.back().last = std::max(all.back().last, range.last);
    } else {
      all.push_back(range);
    }
  }
  return all;
}

} // namespace

const BatchEntry& BatchEntries::at(int row) const {
  static const BatchEntry none;
  return has(row) ? m_entries[static_cast<std::size_t>(row)] : none;
}

void BatchEntries::countIn(RowRange rows, int sign) {
  for (int row = rows.first; row <= rows.last; ++row) {
    const BatchEntry& entry = at(row);
    m_inUse += entry.useFlag == useYes() ? sign : 0;
    m_done += entry.status == statusDone() ? sign : 0;
    m_fileErrors += entry.status == statusFileError() ? sign : 0;
  }
}

void BatchEntries::change(RowChange change, RowRange rows, const std::function<void()>& make) {
  if (change != RowChange::Added) {
    countIn(rows, -1);
  }
  const auto makeAndCount = [&] {
    make();
    if (change == RowChange::Added || change == RowChange::Changed) {
      countIn(rows, +1);
    }
  };
  m_watcher ? m_watcher->onChange(change, rows, makeAndCount) : makeAndCount();
}

void BatchEntries::setStatus(int row, const QString& status) {
  if (has(row)) {
    change(RowChange::Changed, {row, row},
           [&] { m_entries[static_cast<std::size_t>(row)].status = status; });
  }
}

void BatchEntries::showRow(int row) {
  if (m_watcher && has(row)) {
    m_watcher->showRow(row);
  }
}

void BatchEntries::append(std::vector<BatchEntry> entries) {
  if (!entries.empty()) {
    change(RowChange::Added, {count(), count() + static_cast<int>(entries.size()) - 1}, [&] {
      m_entries.insert(m_entries.end(), std::make_move_iterator(entries.begin()),
                       std::make_move_iterator(entries.end()));
    });
  }
}

void BatchEntries::clear() {
  remove({{0, count() - 1}});
}

void BatchEntries::remove(const std::vector<RowRange>& ranges) {
  const std::vector<RowRange> gone = merged(ranges, count());
  if (gone.empty()) {
    return;
  }
  // Views walk all their rows for each range that goes, so many ranges are one change to them.
  const RowChange kind = gone.size() > 1 ? RowChange::RemovedAllOver : RowChange::Removed;
  const RowRange touched = {gone.front().first, gone.size() > 1 ? count() - 1 : gone.front().last};
  change(kind, touched, [&] {
    auto kept = m_entries.begin() + gone.front().first;
    for (std::size_t i = 0; i < gone.size(); ++i) {
      const auto from = m_entries.begin() + gone[i].last + 1;
      const auto to = i + 1 < gone.size() ? m_entries.begin() + gone[i + 1].first : m_entries.end();
      kept = std::move(from, to, kept);
    }
    m_entries.erase(kept, m_entries.end());
    if (kind == RowChange::RemovedAllOver) {
      countIn({touched.first, count() - 1}, +1);
    }
  });
}

void BatchEntries::swapWithNext(int row) {
  change(RowChange::Changed, {row, row + 1},
         [&] { std::iter_swap(m_entries.begin() + row, m_entries.begin() + row + 1); });
}

int BatchEntries::moveUp(int row) {
  if (!has(row) || row < 1) {
    return -1;
  }
  swapWithNext(row - 1);
  return row - 1;
}

int BatchEntries::moveDown(int row) {
  if (!has(row) || !has(row + 1)) {
    return -1;
  }
  swapWithNext(row);
  return row + 1;
}

void BatchEntries::toggleUse(RowRange rows) {
  const RowRange there = {std::max(rows.first, 0), std::min(rows.last, count() - 1)};
  if (there.first > there.last) {
    return;
  }
  change(RowChange::Changed, there, [&] {
    for (int row = there.first; row <= there.last; ++row) {
      QString& flag = m_entries[static_cast<std::size_t>(row)].useFlag;
      flag = flag.isEmpty() || flag == useNo() ? useYes() : useNo();
    }
  });
}

} // namespace folivex
