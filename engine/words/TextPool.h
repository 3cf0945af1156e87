// TextPool: distinct texts, each kept once.
#pragma once

#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace folivex {

/// Hands out a number for each distinct text. Adding belongs to one thread at a time; any number of
/// threads may read the texts whose numbers they were given, while others are added.
class TextPool {
public:
  using Number = std::uint32_t;

  /// Holds at most about this many bytes, and never more than four thousand million.
  explicit TextPool(std::size_t mostBytes);

  /// Number of a text of at most 255 characters, which need not outlive the call. 0 when there is
  /// no room for it.
  Number add(QStringView text);
  /// No text will be added any more: what finds a text's number is let go.
  void close();

  QStringView text(Number number) const;
  std::size_t bytes() const;

private:
  static constexpr std::size_t chunkLength = std::size_t{1} << 16U;

  Number append(QStringView text);
  void growSlots();
  std::size_t slotOf(QStringView text) const;

  // Never moves, so that readers need no lock. A number is the chunk and the place in it, where the
  // text's length stands before the text.
  std::vector<std::unique_ptr<char16_t[]>> m_chunks;
  std::size_t m_chunkCount = 0;
  std::size_t m_used = chunkLength; ///< of the last chunk

  std::vector<Number> m_slots; ///< open addressing; 0 is free
  std::size_t m_count = 0;
};

} // namespace folivex
