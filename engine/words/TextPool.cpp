#include "engine/words/TextPool.h"

#include <QHash>

#include <algorithm>

namespace folivex {

namespace {

constexpr unsigned chunkShift = 16;
constexpr std::size_t mostChunks = std::size_t{1} << chunkShift;
constexpr std::size_t fewestSlots = 1024;

} // namespace

TextPool::TextPool(std::size_t mostBytes)
    : m_chunks(
          std::clamp(mostBytes / (chunkLength * sizeof(char16_t)), std::size_t{1}, mostChunks)),
      m_slots(fewestSlots, 0) {}

TextPool::Number TextPool::add(QStringView text) {
  std::size_t slot = slotOf(text);
  if (m_slots[slot] != 0) {
    return m_slots[slot];
  }
  const Number number = append(text);
  if (number == 0) {
    return 0;
  }
  m_slots[slot] = number;
  if (++m_count * 4 > m_slots.size() * 3) {
    growSlots();
  }
  return number;
}

/// Where the text's number stands, or the free slot that it belongs to.
std::size_t TextPool::slotOf(QStringView wanted) const {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t slot = qHash(wanted) & mask;
  while (m_slots[slot] != 0 && text(m_slots[slot]) != wanted) {
    slot = (slot + 1) & mask;
  }
  return slot;
}

void TextPool::growSlots() {
  std::vector<Number> old(m_slots.size() * 2, 0);
  old.swap(m_slots);
  for (const Number number : old) {
    if (number != 0) {
      m_slots[slotOf(text(number))] = number;
    }
  }
}

TextPool::Number TextPool::append(QStringView text) {
  const auto length = static_cast<std::size_t>(text.size());
  if (m_used + 1 + length > chunkLength) {
    if (m_chunkCount == m_chunks.size()) {
      return 0;
    }
    m_chunks[m_chunkCount++] = std::make_unique<char16_t[]>(chunkLength);
    m_used = m_chunkCount == 1 ? 1 : 0; // 0 is the number of no text
  }
  char16_t* place = m_chunks[m_chunkCount - 1].get() + m_used;
  *place = static_cast<char16_t>(length);
  std::copy_n(text.utf16(), length, place + 1);
  const std::size_t number = ((m_chunkCount - 1) << chunkShift) + m_used;
  m_used += 1 + length;
  return static_cast<Number>(number);
}

void TextPool::close() {
  m_slots = {};
}

QStringView TextPool::text(Number number) const {
  const char16_t* place = m_chunks[number >> chunkShift].get() + (number & (chunkLength - 1));
  return {place + 1, static_cast<qsizetype>(*place)};
}

std::size_t TextPool::bytes() const {
  return m_chunkCount * chunkLength * sizeof(char16_t) + m_slots.capacity() * sizeof(Number) +
         m_chunks.capacity() * sizeof(m_chunks[0]);
}

} // namespace folivex
