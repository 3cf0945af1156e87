#ifndef MELDER_UPDATE_H
#define MELDER_UPDATE_H

#include "dict_text.h"
#include "disk_file.h"
#include "xref_chain.h"

#include <string>
#include <string_view>
#include <vector>

namespace melder {

/**
 * One incremental update: objects, then the cross-reference section and trailer that make them part
 * of the file. Written to the end of `file` as it grows; only a buffer is held in memory.
 */
class Update {
public:
  /** `nextNumber` is the first object number that the file does not use. */
  Update(const DiskFile& file, XrefKind kind, int nextNumber);

  [[nodiscard]] QPDFObjGen reserve();
  void put(QPDFObjGen id, std::string_view body);
  /** `dictionary` without /Length; `data` as it is to lie in the file. */
  void putStream(QPDFObjGen id, DictText dictionary, std::string_view data);
  QPDFObjGen add(std::string_view body);

  /** `trailer` holds /Root and what else lasts. The update is complete, though not synced, after.
   */
  void finish(const DictText& trailer, XrefChain& chain);

  [[nodiscard]] int nextNumber() const { return m_next; }
  /** Bytes of the file before and behind the update. */
  [[nodiscard]] uint64_t start() const { return m_start; }
  [[nodiscard]] uint64_t end() const { return m_flushed + m_buffer.size(); }

private:
  void emit(std::string_view bytes);
  void flush();
  void open(QPDFObjGen id);
  void flushPacked();
  void writeTable(const XrefChain::Section& section);
  void writeStream(XrefChain::Section section, QPDFObjGen id, DictText trailer);

  const DiskFile& m_file;
  XrefKind m_kind;
  int m_next;
  uint64_t m_start;
  uint64_t m_flushed;
  std::string m_buffer;
  std::vector<XrefEntry> m_entries;
  /** Small objects that wait to be compressed together. */
  std::vector<std::pair<int, std::string>> m_packed;
};

} // namespace melder

#endif
