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

void BatchEntries::countIn(const BatchEntry& entry, int sign) {
  m_inUse += entry.useFlag == useYes() ? sign : 0;
  m_done += entry.status == statusDone() ? sign : 0;
  m_fileErrors += entry.status == statusFileError() ? sign : 0;
}

void BatchEntries::recount() {
  m_inUse = m_done = m_fileErrors = 0;
  for (const BatchEntry& entry : m_entries) {
    countIn(entry, +1);
  }
}

void BatchEntries::setStatus(int row, const QString& status) {
  if (!has(row)) {
    return;
  }
  BatchEntry& entry = m_entries[static_cast<std::size_t>(row)];
  countIn(entry, -1);
  entry.status = status;
  countIn(entry, +1);
  if (m_watcher) {
    m_watcher->rowsChanged({row, row});
  }
}

void BatchEntries::showRow(int row) {
  if (m_watcher && has(row)) {
    m_watcher->showRow(row);
  }
}

void BatchEntries::append(std::vector<BatchEntry> entries) {
  if (entries.empty()) {
    return;
  }
  const int first = count();
  if (m_watcher) {
    m_watcher->rowsAboutToBeAdded({first, first + static_cast<int>(entries.size()) - 1});
  }
  for (const BatchEntry& entry : entries) {
    countIn(entry, +1);
  }
  m_entries.insert(m_entries.end(), std::make_move_iterator(entries.begin()),
                   std::make_move_iterator(entries.end()));
  if (m_watcher) {
    m_watcher->rowsAdded();
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
  const bool atOnce = gone.size() > 1;
  if (m_watcher) {
    atOnce ? m_watcher->aboutToReset() : m_watcher->rowsAboutToBeRemoved(gone.front());
  }
  auto kept = m_entries.begin() + gone.front().first;
  for (std::size_t i = 0; i < gone.size(); ++i) {
    const auto from = m_entries.begin() + gone[i].last + 1;
    const auto to = i + 1 < gone.size() ? m_entries.begin() + gone[i + 1].first : m_entries.end();
    kept = std::move(from, to, kept);
  }
  m_entries.erase(kept, m_entries.end());
  recount();
  if (m_watcher) {
    atOnce ? m_watcher->wasReset() : m_watcher->rowsRemoved();
  }
}

void BatchEntries::swapWithNext(int row) {
  const auto upper = m_entries.begin() + row;
  std::iter_swap(upper, upper + 1);
  if (m_watcher) {
    m_watcher->rowsChanged({row, row + 1});
  }
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
  for (int row = there.first; row <= there.last; ++row) {
    BatchEntry& entry = m_entries[static_cast<std::size_t>(row)];
    countIn(entry, -1);
    const bool unused = entry.useFlag.isEmpty() || entry.useFlag == useNo();
    entry.useFlag = unused ? useYes() : useNo();
    countIn(entry, +1);
  }
  if (m_watcher) {
    m_watcher->rowsChanged(there);
  }
}

} // namespace folivex
