#include "xref_chain.h"

#include <algorithm>
#include <iterator>

namespace melder {

namespace {

/** So many sections of one tier become one of the next. */
constexpr size_t kPerTier = 8;

/** Both ordered by number; where both have an entry, the newer one counts. */
std::vector<XrefEntry> merged(const std::vector<XrefEntry>& newer,
                              const std::vector<XrefEntry>& older) {
  std::vector<XrefEntry> result;
  result.reserve(newer.size() + older.size());
  std::set_union(newer.begin(), newer.end(), older.begin(), older.end(), std::back_inserter(result),
                 [](const XrefEntry& a, const XrefEntry& b) { return a.number < b.number; });
  return result;
}

} // namespace

void XrefChain::startAt(uint64_t offset, int depth) {
  *this = XrefChain();
  m_base = offset;
  m_baseDepth = depth;
}

void XrefChain::startWhole(std::vector<XrefEntry> all) {
  *this = XrefChain();
  m_wholeDue = true;
  m_whole = std::move(all);
  std::ranges::sort(m_whole, {}, &XrefEntry::number);
}

XrefChain::Section XrefChain::next(std::vector<XrefEntry> fresh) {
  std::ranges::sort(fresh, {}, &XrefEntry::number);
  if (m_wholeDue) {
    auto all = merged(fresh, m_whole);
    m_whole = {};
    m_levels.push_back({});
    return {.entries = std::move(all), .previous = 0};
  }
  int tier = 0;
  while (m_levels.size() >= kPerTier - 1 &&
         std::all_of(m_levels.end() - (kPerTier - 1), m_levels.end(),
                     [tier](const Level& level) { return level.tier == tier; })) {
    for (size_t i = 1; i < kPerTier; ++i) {
      fresh = merged(fresh, m_levels.back().entries);
      m_levels.pop_back();
    }
    ++tier;
  }
  const uint64_t previous = m_levels.empty() ? m_base : m_levels.back().offset;
  m_levels.push_back({.entries = fresh, .offset = 0, .tier = tier});
  return {.entries = std::move(fresh), .previous = previous};
}

void XrefChain::placed(uint64_t offset) {
  m_levels.back().offset = offset;
  if (m_wholeDue) {
    startAt(offset, 1);
  }
}

int XrefChain::depth() const {
  return m_baseDepth + static_cast<int>(m_levels.size());
}

} // namespace melder
