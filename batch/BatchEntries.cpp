#include "batch/BatchEntries.h"

#include <algorithm>
#include <iterator>

namespace folivex {

const BatchEntry& BatchEntries::at(int row) const {
  static const BatchEntry none;
  return has(row) ? m_entries[static_cast<std::size_t>(row)] : none;
}

void BatchEntries::countIn(RowRange rows, int sign) {
  for (int row = rows.first; row <= rows.last; ++row) {
    const BatchEntry& entry = at(row);
    m_inUse += entry.useFlag == useYes ? sign : 0;
    m_done += entry.status == statusDone ? sign : 0;
    m_fileErrors += entry.status == statusFileError ? sign : 0;
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

void BatchEntries::setStatus(int row, const QString& status, const QString& result) {
  if (has(row)) {
    change(RowChange::Changed, {row, row}, [&] {
      BatchEntry& entry = m_entries[static_cast<std::size_t>(row)];
      entry.status = status;
      entry.result = result;
    });
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
  std::vector<bool> isGone(m_entries.size());
  for (const RowRange& range : ranges) {
    for (int row = std::max(range.first, 0); row <= std::min(range.last, count() - 1); ++row) {
      isGone[static_cast<std::size_t>(row)] = true;
    }
  }
  const auto first = std::ranges::find(isGone, true);
  if (first == isGone.end()) {
    return;
  }
  const auto behind = std::find(first, isGone.end(), false);
  const bool isOneRange = std::find(behind, isGone.end(), true) == isGone.end();
  const RowRange touched = {
      static_cast<int>(first - isGone.begin()),
      static_cast<int>((isOneRange ? behind : isGone.end()) - isGone.begin()) - 1};
  // Views walk all their rows for each range that goes, so many ranges are one change to them.
  change(isOneRange ? RowChange::Removed : RowChange::AllOver, touched, [&] {
    std::vector<RemovedRow> removed;
    std::vector<BatchEntry> kept;
    kept.reserve(m_entries.size());
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
      if (isGone[row]) {
        removed.push_back({static_cast<int>(row), std::move(m_entries[row])});
      } else {
        kept.push_back(std::move(m_entries[row]));
      }
    }
    m_entries = std::move(kept);
    m_removed.push_back(std::move(removed));
    if (!isOneRange) {
      countIn({touched.first, count() - 1}, +1);
    }
  });
}

void BatchEntries::bringBack() {
  if (m_removed.empty()) {
    return;
  }
  change(RowChange::AllOver, {0, count() - 1}, [&] {
    std::vector<BatchEntry> all;
    all.reserve(m_entries.size() + m_removed.back().size());
    auto next = m_entries.begin();
    for (RemovedRow& removed : m_removed.back()) {
      while (next != m_entries.end() && static_cast<int>(all.size()) < removed.row) {
        all.push_back(std::move(*next++));
      }
      all.push_back(std::move(removed.entry));
    }
    std::move(next, m_entries.end(), std::back_inserter(all));
    m_entries = std::move(all);
    m_removed.pop_back();
    countIn({0, count() - 1}, +1);
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
      flag = flag.isEmpty() || flag == useNo ? useYes : useNo;
    }
  });
}

} // namespace folivex
