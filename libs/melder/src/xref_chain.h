#ifndef MELDER_XREF_CHAIN_H
#define MELDER_XREF_CHAIN_H

#include <cstdint>
#include <vector>

namespace melder {

enum class XrefKind { Table, Stream };

/** Where one object lies. */
struct XrefEntry {
  int number = 0;
  int generation = 0;
  uint64_t where = 0; ///< byte offset, or the number of the object stream that holds it
  int index = -1;     ///< place in that object stream; -1 for an object of its own
};

/**
 * The cross-reference sections that appends have added. One section an append would make a chain
 * as long as the number of appends, which every reader walks from end to start; so a new section
 * takes over the entries of its latest neighbours once there are enough of one size, and skips
 * them. The chain grows with the logarithm of the number of appends, and each entry is written
 * again only that often.
 */
class XrefChain {
public:
  /** What the next section has to hold, ordered by number, and the section that it follows. */
  struct Section {
    std::vector<XrefEntry> entries;
    uint64_t previous = 0; ///< 0: none, the section is the whole table
  };

  /** `offset` is the section a reader starts from; `depth` how many of ours are behind it. */
  void startAt(uint64_t offset, int depth);
  /** The next section will hold the whole table; `all` is what is in the file now. */
  void startWhole(std::vector<XrefEntry> all);

  [[nodiscard]] Section next(std::vector<XrefEntry> fresh);
  /** The section that `next` gave stands at `offset` now. */
  void placed(uint64_t offset);
  /** Sections that were added by appends and are still part of the chain, the next one included. */
  [[nodiscard]] int depth() const;

private:
  struct Level {
    std::vector<XrefEntry> entries;
    uint64_t offset = 0;
    int tier = 0;
  };
  uint64_t m_base = 0;
  int m_baseDepth = 0;
  bool m_wholeDue = false;
  std::vector<XrefEntry> m_whole;
  std::vector<Level> m_levels;
};

} // namespace melder

#endif
